#include "kovabase/translation/KOVASelectionSet.h"

#include <cstdint>

namespace {

constexpr int kFirstSlots = 12;

// A table of n slots takes 3/4 n members.
bool isFull(int members, int slots) { return members > slots / 4 * 3; }

}  // namespace

void* KOVASelectionSet::Iterator_t::Next() {
  return _position < _set->_members.size() ? _set->_members[_position++] : nullptr;
}

KOVASelectionSet::KOVASelectionSet(const KOVAString& name, bool current)
    : _name(name), _current(current), _slots(kFirstSlots, 0) {}

KOVASelectionSet::KOVASelectionSet(const KOVASelectionSet& other)
    : _name(other._name),
      _current(other._current),
      _members(other._members.copy()),
      _slots(other._slots.copy()) {}

KOVASelectionSet& KOVASelectionSet::operator=(const KOVASelectionSet& other) {
  if (this == &other) return *this;
  const KOVASelectionSet copied(other);
  _name = copied._name;
  _current = copied._current;
  _members = copied._members;
  _slots = copied._slots;
  return *this;
}

KOVASelectionSet::~KOVASelectionSet() = default;

KOVAResult KOVASelectionSet::AddMember(void* object) {
  if (object == nullptr) return KOVAResultCode::kFailure;
  if (_slots[findSlot(object)] != 0) return KOVAResultCode::kSuccess;
  if (isFull(_members.size() + 1, _slots.size())) rehash(2 * _slots.size());
  _members.add(object);
  _slots[findSlot(object)] = _members.size();
  return KOVAResultCode::kSuccess;
}

bool KOVASelectionSet::IsMember(void* object) const {
  return object != nullptr && _slots[findSlot(object)] != 0;
}

int KOVASelectionSet::SelectionSetLength() const { return _members.size(); }

KOVAString KOVASelectionSet::GetName() const { return _name; }

bool KOVASelectionSet::IsCurrent() const { return _current; }

KOVASelectionSet::Iterator_t KOVASelectionSet::GetIterator() const { return Iterator_t(*this); }

int KOVASelectionSet::findSlot(const void* object) const {
  // Addresses are multiples of their alignment: multiply to bring their high bits into play.
  const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(object) * 0x9E3779B97F4A7C15U;
  const int slots = _slots.size();
  int slot = static_cast<int>((mixed >> 32) % static_cast<std::uint64_t>(slots));
  while (_slots[slot] != 0 && _members[_slots[slot] - 1] != object) {
    slot = slot + 1 < slots ? slot + 1 : 0;
  }
  return slot;
}

void KOVASelectionSet::rehash(int slots) {
  _slots = KOVADynamicArray<int>(slots, 0);
  for (int i = 0; i < _members.size(); ++i) _slots[findSlot(_members[i])] = i + 1;
}
