#include "kovabase/events/internal/ChunkMemory.h"

#include <atomic>
#include <cstdint>
#include <new>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace kova::internal {

namespace {

constexpr std::size_t kChunkBytes = 64 * 1024;
constexpr std::size_t kLargestBlock = 4 * 1024;
constexpr std::size_t kAlignment = 16;

// Stands for the blocks that the owning thread may still hand out.
constexpr std::int32_t kOwned = 1 << 24;

// Lies at the start of its chunk. Chunks are aligned to their size, so that the address of a block
// gives its chunk. A cache line of its own: other threads write it.
struct alignas(64) Chunk {
  std::atomic<std::int32_t> liveBlocks{kOwned};
};

struct ThreadChunk {
  char* next = nullptr;
  char* end = nullptr;
  Chunk* chunk = nullptr;
  std::int32_t handedOut = 0;
  bool isThreadEnding = false;
};

constinit thread_local ThreadChunk t_current{};

std::size_t roundUp(std::size_t bytes) { return (bytes + kAlignment - 1) & ~(kAlignment - 1); }

Chunk* makeChunk() {
  void* const memory = ::operator new (kChunkBytes, std::align_val_t{kChunkBytes});
  Chunk* const chunk = ::new (memory) Chunk;
  ASAN_POISON_MEMORY_REGION(chunk + 1, kChunkBytes - sizeof(Chunk));
  return chunk;
}

void dropBlocks(Chunk* chunk, std::int32_t count) noexcept {
  if (chunk->liveBlocks.fetch_sub(count, std::memory_order_acq_rel) != count) return;
  ASAN_UNPOISON_MEMORY_REGION(chunk, kChunkBytes);
  ::operator delete (chunk, std::align_val_t{kChunkBytes});
}

void leaveChunk() noexcept {
  if (t_current.chunk != nullptr) dropBlocks(t_current.chunk, kOwned - t_current.handedOut);
  const bool isThreadEnding = t_current.isThreadEnding;
  t_current = ThreadChunk{};
  t_current.isThreadEnding = isThreadEnding;
}

// Apart from ThreadChunk, so that the fast path meets no guard of a destructor.
struct ThreadEnd {
  void notice() noexcept {}
  ~ThreadEnd() {
    leaveChunk();
    t_current.isThreadEnding = true;
  }
};

void takeNewChunk() {
  thread_local ThreadEnd threadEnd;
  threadEnd.notice();
  Chunk* const chunk = makeChunk();
  leaveChunk();
  t_current.chunk = chunk;
  t_current.next = reinterpret_cast<char*>(chunk + 1);
  t_current.end = reinterpret_cast<char*>(chunk) + kChunkBytes;
}

}  // namespace

void* allocateBlock(std::size_t bytes) {
  if (bytes > kLargestBlock) return ::operator new(bytes);
  const std::size_t rounded = roundUp(bytes);
  if (static_cast<std::size_t>(t_current.end - t_current.next) < rounded) takeNewChunk();
  char* const block = t_current.next;
  t_current.next += rounded;
  ++t_current.handedOut;
  ASAN_UNPOISON_MEMORY_REGION(block, bytes);
  // After the end of the thread's own objects nobody is left to leave the chunk later.
  if (t_current.isThreadEnding) leaveChunk();
  return block;
}

void freeBlock(void* block, std::size_t bytes) noexcept {
  if (bytes > kLargestBlock) {
    ::operator delete(block);
    return;
  }
  ASAN_POISON_MEMORY_REGION(block, bytes);
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  dropBlocks(reinterpret_cast<Chunk*>(address & ~(std::uintptr_t{kChunkBytes} - 1)), 1);
}

}  // namespace kova::internal
