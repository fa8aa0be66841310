#include "kovabase/containers/KOVAArrayHeader.h"

#include "kovabase/foundation/internal/Heap.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

const float KOVAARRAY_SIZE_GROW_FACTOR = 1.5F;

KOVAArrayFreeCallback::~KOVAArrayFreeCallback() = default;

namespace {

using kova::internal::allocate;
using kova::internal::allocateZeroed;
using kova::internal::reallocate;
using kova::internal::release;

// A header brings room for a few slots with it, so that a short array is one heap block. The sum is
// what the heap hands out for 88 bytes anyway. Every header has the room, used or not: a data
// pointer that equals it can then be no other block.
constexpr std::size_t kInlineOffset = 32;
constexpr std::size_t kInlineBytes = 56;
static_assert(kInlineOffset >= sizeof(KOVAArrayHeader) &&
              kInlineOffset % alignof(std::max_align_t) == 0);

void* inlineData(KOVAArrayHeader* header) {
  return reinterpret_cast<std::byte*>(header) + kInlineOffset;
}

std::size_t slotBytes(const KOVAArrayHeader& header, int slots) {
  return static_cast<std::size_t>(slots) * static_cast<std::size_t>(header.elementSize);
}

std::byte* slotAt(const KOVAArrayHeader& header, int index) {
  return static_cast<std::byte*>(header.data) + slotBytes(header, index);
}

bool isUsed(const KOVAArrayHeader* header, int index) {
  return header != nullptr && index >= 0 && index < header->count;
}

[[gnu::noinline]] void moveData(KOVAArrayHeader& header, std::size_t newBytes) {
  const std::size_t oldBytes = slotBytes(header, header.capacity);
  const bool isInline = header.data == inlineData(&header);
  if (isInline || newBytes - oldBytes > oldBytes) {
    // Zeroed pages of the system cost nothing until they are used.
    void* const data = allocateZeroed(1, newBytes);
    std::memcpy(data, header.data, oldBytes);
    if (!isInline) release(header.data);
    header.data = data;
  } else {
    header.data = reallocate(header.data, newBytes);
    std::memset(static_cast<std::byte*>(header.data) + oldBytes, 0, newBytes - oldBytes);
  }
}

void setCapacity(KOVAArrayHeader& header, int capacity) {
  const std::size_t newBytes = slotBytes(header, capacity);
  // The room that comes with the header was zeroed with it.
  if (header.data != inlineData(&header) || newBytes > kInlineBytes) moveData(header, newBytes);
  header.capacity = capacity;
}

// To capacity * 1.5 + 1, the factor KOVAARRAY_SIZE_GROW_FACTOR, in integers: a short array grows
// often enough to feel the conversions.
void grow(KOVAArrayHeader& header) {
  constexpr unsigned kMost = std::numeric_limits<int>::max();
  const auto capacity = static_cast<unsigned>(header.capacity);
  if (capacity == kMost) kova::internal::throwAllocException();
  setCapacity(header, static_cast<int>(std::min(capacity + capacity / 2 + 1, kMost)));
}

}  // namespace

KOVAArrayHeader* kovaArrayAllocate(int capacity, int elementSize) {
  if (capacity < 1 || elementSize < 1) return nullptr;
  void* const block = allocate(kInlineOffset + kInlineBytes);
  auto* const header = ::new (block) KOVAArrayHeader{capacity, 0, elementSize, 1, nullptr};
  std::memset(inlineData(header), 0, kInlineBytes);
  if (slotBytes(*header, capacity) <= kInlineBytes) {
    header->data = inlineData(header);
    return header;
  }
  try {
    header->data =
        allocateZeroed(static_cast<std::size_t>(capacity), static_cast<std::size_t>(elementSize));
  } catch (...) {
    release(block);
    throw;
  }
  return header;
}

int kovaArrayAdd(KOVAArrayHeader*& header, const void* /*element*/) {
  if (header == nullptr) return 0;
  if (header->count >= header->capacity) grow(*header);
  ++header->count;
  return 1;
}

int kovaArrayInsertAt(KOVAArrayHeader*& header, int index, const void* element) {
  if (header == nullptr || index < 0) return 0;
  if (index > header->count) return kovaArrayAdd(header, element);
  if (header->count >= header->capacity - 1) grow(*header);
  std::byte* const slot = slotAt(*header, index);
  std::memmove(slot + header->elementSize, slot, slotBytes(*header, header->count - index));
  ++header->count;
  return 1;
}

int kovaArraySetAt(KOVAArrayHeader*& header, int index, const void* element) {
  if (!isUsed(header, index) || element == nullptr) return 0;
  std::memmove(slotAt(*header, index), element, slotBytes(*header, 1));
  return 1;
}

int kovaArrayRemoveAt(KOVAArrayHeader*& header, int index) {
  if (!isUsed(header, index)) return 0;
  std::byte* const slot = slotAt(*header, index);
  std::memmove(slot, slot + header->elementSize, slotBytes(*header, header->count - 1 - index));
  --header->count;
  return 1;
}

int kovaArrayClear(KOVAArrayHeader*& header) {
  if (header == nullptr) return 0;
  header->count = 0;
  return 1;
}

int kovaArrayCount(const KOVAArrayHeader* header) { return header != nullptr ? header->count : 0; }

int kovaArrayCheck(KOVAArrayHeader* const& header) { return header != nullptr ? 1 : 0; }

KOVAArrayHeader* kovaArrayCopy(KOVAArrayHeader* header) {
  if (header != nullptr) header->holders.AtomicIncrement();
  return header;
}

void kovaArrayFree(KOVAArrayHeader*& header, KOVAArrayFreeCallback* callback) {
  if (header == nullptr) return;
  // Nobody can take up the block that only the caller holds: no interlocking is needed to end it.
  if (header->holders.GetCount() != 1 && header->holders.AtomicDecrement() != 0) return;
  if (callback != nullptr) callback->Callback();
  if (header->data != inlineData(header)) release(header->data);
  header->~KOVAArrayHeader();
  release(header);
  header = nullptr;
}

int kovaArrayRealloc(KOVAArrayHeader*& header) {
  if (header == nullptr) return 0;
  grow(*header);
  return 1;
}

int kovaArrayReallocSize(KOVAArrayHeader*& header, int newCapacity) {
  if (header == nullptr || newCapacity < header->capacity) return 0;
  setCapacity(*header, newCapacity);
  return 1;
}

int kovaArrayAppend(KOVAArrayHeader*& destination, const KOVAArrayHeader* source) {
  if (destination == nullptr || source == nullptr ||
      destination->elementSize != source->elementSize) {
    return 0;
  }
  const int added = source->count;
  if (added > std::numeric_limits<int>::max() - destination->count) {
    kova::internal::throwAllocException();
  }
  while (destination->capacity < destination->count + added) grow(*destination);
  std::memmove(slotAt(*destination, destination->count), destination->data,
               slotBytes(*destination, added));
  destination->count += added;
  return 1;
}
