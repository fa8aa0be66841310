#include "kovabase/events/internal/ChunkMemory.h"

#include "kovabase/foundation/internal/StaticThreadLocal.h"
#include "kovabase/platform/Memory.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <utility>

#if defined(__has_feature)
#define KOVA_HAS_ASAN __has_feature(address_sanitizer)
#elif defined(__SANITIZE_ADDRESS__)
#define KOVA_HAS_ASAN 1
#else
#define KOVA_HAS_ASAN 0
#endif
#if KOVA_HAS_ASAN
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#endif

namespace kova::internal {

namespace {

// Only what is touched costs memory. One lock is taken for each chunk: some eight thousand events.
constexpr std::size_t kChunkBytes = 1024 * 1024;
constexpr std::size_t kLargestBlock = 16 * 1024;
constexpr std::size_t kAlignment = 16;
constexpr int kMostSpareChunks = 256;
// The first page of a spare chunk links it to the next one.
constexpr std::size_t kPageBytes = 4096;

// Stands for the blocks that the owning thread may still hand out.
constexpr std::int32_t kOwned = 1 << 24;

// The address sanitizer is told which parts of a chunk may be touched, and that pointers in a chunk
// keep what they point to from being a leak.
#if KOVA_HAS_ASAN
void forbid(void* begin, std::size_t bytes) { ASAN_POISON_MEMORY_REGION(begin, bytes); }
void allow(void* begin, std::size_t bytes) { ASAN_UNPOISON_MEMORY_REGION(begin, bytes); }
void announce(void* chunk) { __lsan_register_root_region(chunk, kChunkBytes); }
void revoke(void* chunk) { __lsan_unregister_root_region(chunk, kChunkBytes); }
#else
void forbid(void* /*begin*/, std::size_t /*bytes*/) {}
void allow(void* /*begin*/, std::size_t /*bytes*/) {}
void announce(void* /*chunk*/) {}
void revoke(void* /*chunk*/) {}
#endif

// Lies at the start of its chunk. Chunks are aligned to their size, so that the address of a block
// gives its chunk. A cache line of its own: other threads write it.
struct alignas(64) Chunk {
  std::atomic<std::int32_t> liveBlocks{kOwned};
  // Only while the chunk is spare.
  Chunk* nextSpare = nullptr;
  bool isOffered = false;
};

// A stack, so that chunks that are not needed any more sink to its bottom.
struct SpareChunks {
  std::mutex mutex;
  Chunk* top = nullptr;
  int count = 0;
  int lowestCount = 0;
};

constinit SpareChunks g_spares;

Chunk* takeChunk() {
  void* memory = nullptr;
  {
    const std::lock_guard guard(g_spares.mutex);
    if (g_spares.top != nullptr) {
      memory = std::exchange(g_spares.top, g_spares.top->nextSpare);
      g_spares.lowestCount = std::min(g_spares.lowestCount, --g_spares.count);
    }
  }
  if (memory == nullptr) {
    memory = platform::mapPages(kChunkBytes, kChunkBytes);
    if (memory == nullptr) throw std::bad_alloc();
    announce(memory);
  }
  Chunk* const chunk = ::new (memory) Chunk;
  forbid(chunk + 1, kChunkBytes - sizeof(Chunk));
  return chunk;
}

void giveBackChunk(Chunk* chunk) noexcept {
  allow(chunk, kChunkBytes);
  {
    const std::lock_guard guard(g_spares.mutex);
    if (g_spares.count < kMostSpareChunks) {
      chunk->nextSpare = std::exchange(g_spares.top, chunk);
      ++g_spares.count;
      return;
    }
  }
  revoke(chunk);
  platform::unmapPages(chunk, kChunkBytes);
}

void dropBlocks(Chunk* chunk, std::int32_t count) noexcept {
  if (chunk->liveBlocks.fetch_sub(count, std::memory_order_acq_rel) == count) giveBackChunk(chunk);
}

// What one thread makes and frees.
struct ThreadChunks {
  char* next = nullptr;
  char* end = nullptr;
  Chunk* current = nullptr;
  std::int32_t handedOut = 0;
  // Blocks freed from one chunk that it does not know of yet.
  std::int32_t freed = 0;
  Chunk* freedFrom = nullptr;
  bool isThreadEnding = false;
};

KOVABASE_STATIC_THREAD_LOCAL ThreadChunks t_chunks{};

void leaveChunk() noexcept {
  if (t_chunks.current != nullptr) dropBlocks(t_chunks.current, kOwned - t_chunks.handedOut);
  t_chunks.next = t_chunks.end = nullptr;
  t_chunks.current = nullptr;
  t_chunks.handedOut = 0;
}

// Apart from ThreadChunks, so that the fast paths meet no guard of a destructor.
struct ThreadEnd {
  void notice() noexcept {}
  ~ThreadEnd() {
    leaveChunk();
    settleFrees();
    t_chunks.isThreadEnding = true;
  }
};

void noticeThreadEnd() {
  thread_local ThreadEnd threadEnd;
  threadEnd.notice();
}

void startNewChunk() {
  noticeThreadEnd();
  Chunk* const chunk = takeChunk();
  leaveChunk();
  t_chunks.current = chunk;
  t_chunks.next = reinterpret_cast<char*>(chunk + 1);
  t_chunks.end = reinterpret_cast<char*>(chunk) + kChunkBytes;
}

}  // namespace

void offerIdleMemory() noexcept {
  const std::lock_guard guard(g_spares.mutex);
  int depth = 0;
  for (Chunk* chunk = g_spares.top; chunk != nullptr; chunk = chunk->nextSpare) {
    if (++depth <= g_spares.count - g_spares.lowestCount || chunk->isOffered) continue;
    platform::offerPages(reinterpret_cast<char*>(chunk) + kPageBytes, kChunkBytes - kPageBytes);
    chunk->isOffered = true;
  }
  g_spares.lowestCount = g_spares.count;
}

void* allocateBlock(std::size_t bytes) {
  if (bytes > kLargestBlock) return ::operator new(bytes);
  const std::size_t rounded = (bytes + kAlignment - 1) & ~(kAlignment - 1);
  if (static_cast<std::size_t>(t_chunks.end - t_chunks.next) < rounded) startNewChunk();
  char* const block = t_chunks.next;
  t_chunks.next += rounded;
  ++t_chunks.handedOut;
  allow(block, bytes);
  // After the end of the thread's own objects nobody is left to leave the chunk later.
  if (t_chunks.isThreadEnding) leaveChunk();
  return block;
}

void freeBlock(void* block, std::size_t bytes) noexcept {
  if (bytes > kLargestBlock) {
    ::operator delete(block);
    return;
  }
  forbid(block, bytes);
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  Chunk* const chunk = reinterpret_cast<Chunk*>(address & ~(std::uintptr_t{kChunkBytes} - 1));
  if (chunk != t_chunks.freedFrom) {
    settleFrees();
    noticeThreadEnd();
    t_chunks.freedFrom = chunk;
  }
  ++t_chunks.freed;
  if (t_chunks.isThreadEnding) settleFrees();
}

void settleFrees() noexcept {
  if (t_chunks.freedFrom != nullptr) dropBlocks(t_chunks.freedFrom, t_chunks.freed);
  t_chunks.freedFrom = nullptr;
  t_chunks.freed = 0;
}

}  // namespace kova::internal
