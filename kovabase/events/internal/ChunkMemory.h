#pragma once

#include <cstddef>

/// Memory for what is made on one thread and soon freed on another: queued events and their texts.
///
/// Each thread cuts blocks off a chunk of its own, so that making one takes no lock and no atomic
/// operation. A chunk goes back to the heap when its thread has left it and its last block is
/// freed, on whichever thread that happens.
namespace kova::internal {

/// @return a block aligned for every ordinary type; `std::bad_alloc` when there is no memory.
void* allocateBlock(std::size_t bytes);

/// @param bytes  as given to `allocateBlock`.
void freeBlock(void* block, std::size_t bytes) noexcept;

}  // namespace kova::internal
