#pragma once

#include "kovabase/containers/KOVADynamicArray.h"

namespace kova::internal {

/// Finds entries of an array by their hash: the entries stay in the caller's array, in its order,
/// and the index knows their positions. Entries are added and never taken out one by one.
class HashIndex {
 public:
  HashIndex() = default;
  HashIndex(const HashIndex&) = delete;
  HashIndex& operator=(const HashIndex&) = delete;

  /// @param matches  asked with a position whether the entry there is the sought one.
  /// @return the first position added under `hash` that matches, or -1.
  template <class Matches>
  int find(unsigned hash, const Matches& matches) const {
    if (_slots.size() == 0) return -1;
    const unsigned mask = static_cast<unsigned>(_slots.size()) - 1;
    const Slot* const slots = _slots.getArray();
    for (unsigned slot = mix(hash) & mask; slots[slot].entry != 0; slot = (slot + 1) & mask) {
      if (slots[slot].hash == hash && matches(slots[slot].entry - 1)) return slots[slot].entry - 1;
    }
    return -1;
  }

  void add(unsigned hash, int position) {
    if (_entries >= _slots.size() / 4 * 3) grow();
    place(hash, position);
    ++_entries;
  }

  int count() const { return _entries; }

  void clear() {
    _slots = KOVADynamicArray<Slot>();
    _entries = 0;
  }

 private:
  struct Slot {
    unsigned hash;
    int entry;  // one more than the position; 0 is an empty slot
  };

  // The low bits choose the slot, so the high ones have to take part in them.
  static unsigned mix(unsigned hash) { return (hash ^ (hash >> 15)) * 0x9E3779B1U >> 7; }

  void place(unsigned hash, int position) {
    const unsigned mask = static_cast<unsigned>(_slots.size()) - 1;
    Slot* const slots = _slots.getArray();
    unsigned slot = mix(hash) & mask;
    while (slots[slot].entry != 0) slot = (slot + 1) & mask;
    slots[slot] = Slot{hash, position + 1};
  }

  void grow() {
    const KOVADynamicArray<Slot> old = _slots;
    _slots = KOVADynamicArray<Slot>(old.size() == 0 ? 16 : 2 * old.size(), Slot{0, 0});
    // Going round from an empty slot keeps entries of one hash in the order of their adding.
    int start = 0;
    while (start < old.size() && old[start].entry != 0) ++start;
    for (int i = 0; i < old.size(); ++i) {
      const Slot& slot = old[(start + i) & (old.size() - 1)];
      if (slot.entry != 0) place(slot.hash, slot.entry - 1);
    }
  }

  KOVADynamicArray<Slot> _slots;
  int _entries = 0;
};

}  // namespace kova::internal
