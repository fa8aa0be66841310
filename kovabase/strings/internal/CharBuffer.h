#pragma once

#include "kovabase/foundation/internal/Heap.h"

#include <cstddef>
#include <memory>

namespace kova::internal {

struct HeapRelease {
  void operator()(void* block) const noexcept { release(block); }
};

/// Characters on the library's heap, until an object of the library or the caller takes them over.
template <typename Unit>
using CharBuffer = std::unique_ptr<Unit[], HeapRelease>;

/// `count` characters, uninitialised.
template <typename Unit>
CharBuffer<Unit> makeCharBuffer(std::size_t count) {
  return CharBuffer<Unit>(static_cast<Unit*>(allocate(count * sizeof(Unit))));
}

}  // namespace kova::internal
