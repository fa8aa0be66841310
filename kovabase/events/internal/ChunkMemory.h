#pragma once

#include <cstddef>

/// Memory for what is made on one thread and soon freed on another: queued events and their texts.
///
/// Each thread cuts blocks off a chunk of its own, so that making one takes no lock and no atomic
/// operation. A chunk is reused when its thread has left it and its last block is freed, on
/// whichever thread that happens.
namespace kova::internal {

/// @return a block aligned for every ordinary type; `std::bad_alloc` when there is no memory.
void* allocateBlock(std::size_t bytes);

/// A thread that frees blocks may hold back the last chunk that it has freed from until it frees
/// from another one, settles or ends.
/// @param bytes  as given to `allocateBlock`.
void freeBlock(void* block, std::size_t bytes) noexcept;

/// Accounts for all blocks that the calling thread has freed.
void settleFrees() noexcept;

/// Lets the system have the memory of the chunks that nobody has needed since the last call. At
/// most 256 MiB are kept for reuse at all.
void offerIdleMemory() noexcept;

}  // namespace kova::internal
