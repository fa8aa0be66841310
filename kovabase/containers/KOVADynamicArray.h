#pragma once

#include "kovabase/containers/KOVAArrayHeader.h"
#include "kovabase/containers/KOVAIsByteMovable.h"
#include "kovabase/foundation/KOVAExport.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

// The accessor's null reference is its answer, not a slip. Sanitizers are told so, there and
// nowhere else. It is always inlined, because a compiler may take what a call returns by reference
// for an object, even under -fno-delete-null-pointer-checks.
#define KOVAARRAY_NULL_REFERENCE __attribute__((always_inline, no_sanitize("null", "alignment")))

/// The growable array of the library. Copying an array shares its block: elements that are added,
/// changed or removed through one holder are seen by all of them, and the last holder destroys
/// them. `copy()` is the one deep copy.
///
/// Elements move as raw bytes when the block grows and when slots open and close: `T` may hold no
/// pointer into itself (so no std::string member), and KOVAIsByteMovable refuses what is known to.
/// References and pointers to elements are good until the next change of the array.
///
/// Bad indices and counts are answered softly; KOVAAllocException is thrown when memory cannot be
/// had, what an element's constructor throws is passed on, and both leave the elements as they
/// were. Arrays that share a block may be copied and destroyed on different threads; all else
/// belongs to one thread at a time.
template <class T>
class KOVABASE_API KOVADynamicArray : public KOVAArrayFreeCallback {
 public:
  KOVADynamicArray() : _header(allocateBlock(1)) {}

  /// `count` copies of `value`; empty for a count below 1.
  KOVADynamicArray(int count, const T& value) : KOVADynamicArray(Capacity{count < 1 ? 1 : count}) {
    for (int i = 0; i < count; ++i) add(value);
  }

  /// Shares the other's block.
  KOVADynamicArray(const KOVADynamicArray& other) : _header(kovaArrayCopy(other._header)) {}

  /// Shares the other's block; its own is freed.
  KOVADynamicArray& operator=(const KOVADynamicArray& other) {
    if (this != &other) {
      // Taken up first: the other array may be part of an element of this one.
      KOVAArrayHeader* const header = kovaArrayCopy(other._header);
      release();
      _header = header;
    }
    return *this;
  }

  ~KOVADynamicArray() override { release(); }

  /// Destroys all elements, for `kovaArrayFree`.
  void Callback() override { clear(); }

  /// True when both share one block: identity, not equality of the elements.
  bool operator==(const KOVADynamicArray& other) const noexcept { return _header == other._header; }

  /// Equal for the arrays that share a block; the low 32 bits of its address.
  unsigned getHash() const noexcept {
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(_header));
  }

  int size() const noexcept { return _header->count; }

  /// Whether there is an element at `index`.
  bool isValidIndex(int index) const noexcept {
    return static_cast<unsigned>(index) < static_cast<unsigned>(_header->count);
  }

  /// The element; for an index out of range a null reference, which may be asked for its address
  /// and for nothing else: `&a[i] == nullptr`. `isValidIndex` asks the same before.
  KOVAARRAY_NULL_REFERENCE T& operator[](int index) noexcept { return *slotOrNull(index); }
  KOVAARRAY_NULL_REFERENCE const T& operator[](int index) const noexcept {
    return *slotOrNull(index);
  }

  /// First element and one behind the last; null for an empty array.
  T* begin() noexcept { return getArray(); }
  const T* begin() const noexcept { return getArray(); }
  T* end() noexcept { return endOfArray(); }
  const T* end() const noexcept { return endOfArray(); }

  /// The elements, one behind the other; null for an empty array.
  T* getArray() noexcept { return _header->count != 0 ? slot(0) : nullptr; }
  const T* getArray() const noexcept { return _header->count != 0 ? slot(0) : nullptr; }

  /// `element` may be one of this array.
  void add(const T& element) {
    const int count = _header->count;
    if (count < _header->capacity) [[likely]] {
      ::new (static_cast<void*>(slot(count))) T(element);
      _header->count = count + 1;
    } else {
      addGrowing(element);
    }
  }

  /// Makes `element`, which may be one of this array, element `index`; at the end when the index is
  /// above the count. Does nothing for a negative index.
  void insert(int index, const T& element) {
    if (index < 0) return;
    Detached copy(element);
    const int position = index < size() ? index : size();
    kovaArrayInsertAt(_header, position, nullptr);
    copy.attach(slot(position));
  }

  /// Adds copies of the other's elements; the other may be this array or share its block.
  void append(const KOVADynamicArray& other) {
    const int count = other.size();
    if (count >= _header->capacity) kovaArrayReallocSize(_header, count);
    for (int i = 0; i < count; ++i) add(*other.slot(i));
  }

  /// An array of its own with copies of the elements.
  KOVADynamicArray copy() const {
    KOVADynamicArray result;
    if (size() >= 1) kovaArrayReallocSize(result._header, size());
    for (const T& element : *this) result.add(element);
    return result;
  }

  /// Destroys the elements and keeps the storage.
  void clear() noexcept {
    destroySlots(0, size());
    kovaArrayClear(_header);
  }

  /// @return false for an index out of range.
  bool removeAt(int index) noexcept {
    if (!isValidIndex(index)) return false;
    destroySlots(index, 1);
    kovaArrayRemoveAt(_header, index);
    return true;
  }

  /// Adds `count` elements `T()` at the end: scalars are 0. @return true.
  bool endGrow(int count) {
    for (; count > 0; --count) {
      if (_header->count >= _header->capacity) kovaArrayRealloc(_header);
      ::new (static_cast<void*>(slot(_header->count))) T();
      ++_header->count;
    }
    return true;
  }

  /// Puts `count` elements `T()` before the first: scalars are 0. Each of them moves all that are
  /// there. @return true.
  bool frontGrow(int count) {
    for (; count > 0; --count) {
      Detached fresh;
      kovaArrayInsertAt(_header, 0, nullptr);
      fresh.attach(slot(0));
    }
    return true;
  }

  /// Removes the last `count` elements, or as many as there are. @return true.
  bool endShrink(int count) noexcept {
    if (count > 0) {
      const int left = count < size() ? size() - count : 0;
      destroySlots(left, size() - left);
      _header->count = left;
    }
    return true;
  }

  /// Removes the first `count` elements, or as many as there are. @return true.
  bool frontShrink(int count) noexcept {
    if (count > 0) {
      const int left = count < size() ? size() - count : 0;
      const int removed = size() - left;
      destroySlots(0, removed);
      std::memmove(_header->data, static_cast<const void*>(slot(removed)),
                   static_cast<std::size_t>(left) * sizeof(T));
      _header->count = left;
    }
    return true;
  }

  /// Grows or shrinks at the end until there are `count` elements; a negative count is 0.
  /// @return true.
  bool resize(int count) {
    if (count < 0) count = 0;
    return count < size() ? endShrink(size() - count) : endGrow(count - size());
  }

  /// Makes room for exactly `capacity` elements, unless there is more already. @return true.
  bool reserve(int capacity) {
    if (capacity < _header->capacity) return true;
    return kovaArrayReallocSize(_header, capacity) != 0;
  }

  /// Turns the order around.
  void reverse() {
    for (int i = 0, j = size() - 1; i < j; ++i, --j) {
      T element(*slot(i));
      *slot(i) = *slot(j);
      *slot(j) = element;
    }
  }

  /// Lets the block go and starts an empty one, which no other array shares.
  void purge() {
    KOVAArrayHeader* const header = allocateBlock(1);
    release();
    _header = header;
  }

 private:
  struct Capacity {
    int slots;
  };

  /// An element that waits for its slot: it is complete before anything moves, so that its source
  /// may be an element of the array and its constructor may throw.
  class Detached {
   public:
    template <class... Arguments>
    explicit Detached(const Arguments&... arguments) {
      ::new (static_cast<void*>(_bytes)) T(arguments...);
    }
    Detached(const Detached&) = delete;
    Detached& operator=(const Detached&) = delete;
    ~Detached() {
      if (!_isAttached) std::destroy_at(std::launder(reinterpret_cast<T*>(_bytes)));
    }

    void attach(T* slot) noexcept {
      std::memcpy(static_cast<void*>(slot), _bytes, sizeof(T));
      _isAttached = true;
    }

   private:
    alignas(T) std::byte _bytes[sizeof(T)];
    bool _isAttached = false;
  };

  explicit KOVADynamicArray(Capacity capacity) : _header(allocateBlock(capacity.slots)) {}

  static KOVAArrayHeader* allocateBlock(int capacity) {
    static_assert(KOVAIsByteMovable<T>,
                  "elements move as raw bytes, which this type does not survive: it points into "
                  "itself. Hold it by a pointer or a handle, or use another container.");
    static_assert(alignof(T) <= alignof(std::max_align_t), "slots are aligned to 16 bytes");
    return kovaArrayAllocate(capacity, static_cast<int>(sizeof(T)));
  }

  T* slot(int index) const noexcept { return static_cast<T*>(_header->data) + index; }

  T* endOfArray() const noexcept { return _header->count != 0 ? slot(_header->count) : nullptr; }

  T* slotOrNull(int index) const noexcept { return isValidIndex(index) ? slot(index) : nullptr; }

  [[gnu::noinline]] void addGrowing(const T& element) {
    Detached copy(element);
    const int position = size();
    kovaArrayAdd(_header, nullptr);
    copy.attach(slot(position));
  }

  void destroySlots(int first, int count) noexcept { std::destroy_n(slot(first), count); }

  void release() noexcept {
    kovaArrayFree(_header, this);
    _header = nullptr;
  }

  KOVAArrayHeader* _header;
};

#undef KOVAARRAY_NULL_REFERENCE
