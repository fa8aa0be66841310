#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// What the memory-bound functions have handed out and taken back in this process, in blocks and in
/// bytes as they were asked for.
struct KOVAMemoryBoundCounters {
  unsigned long long allocations = 0;
  unsigned long long frees = 0;
  unsigned long long allocatedBytes = 0;
  unsigned long long freedBytes = 0;
  /// Bytes in the hands of users now, and the most there ever were.
  unsigned long long heldBytes = 0;
  unsigned long long peakBytes = 0;
};

// A heap that counts, for work that must stay within a bound of memory. The counters are plain
// integers: all calls belong to one thread at a time.

/// `size` bytes, aligned to 16, for `KOVAMemoryBoundFree`. When they cannot be had the answer is
/// the address 4, not null, and nothing is counted; kept. Where that matters this is not the
/// function to call.
KOVABASE_API void* KOVAMemoryBoundAllocate(unsigned size) noexcept;

/// Takes a block back; ignores null and what a failed allocation gave.
KOVABASE_API void KOVAMemoryBoundFree(void* block) noexcept;

/// The counters of the process, which go on counting.
KOVABASE_API const KOVAMemoryBoundCounters& KOVAMemoryBoundGetCounters() noexcept;
