#include "kovabase/foundation/KOVAMemoryBound.h"

#include "kovabase/foundation/internal/HeaderWord.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace kova::internal;

constexpr std::uintptr_t kFailed = 4;

constinit KOVAMemoryBoundCounters g_counters;

}  // namespace

void* KOVAMemoryBoundAllocate(unsigned size) noexcept {
  void* const block = std::malloc(size + kHeaderBytes);
  if (block == nullptr) return reinterpret_cast<void*>(kFailed);
  ++g_counters.allocations;
  g_counters.allocatedBytes += size;
  g_counters.heldBytes += size;
  g_counters.peakBytes = std::max(g_counters.peakBytes, g_counters.heldBytes);
  return setHeaderWord(block, size);
}

void KOVAMemoryBoundFree(void* block) noexcept {
  if (block == nullptr || block == reinterpret_cast<void*>(kFailed)) return;
  const unsigned size = headerWord(block);
  ++g_counters.frees;
  g_counters.freedBytes += size;
  g_counters.heldBytes -= size;
  std::free(blockStart(block));
}

const KOVAMemoryBoundCounters& KOVAMemoryBoundGetCounters() noexcept { return g_counters; }
