#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Memory for the blocks that translators hand around, from the runtime's heap or from that of the
/// solid-modeling kernel. The library's own objects always use the runtime's.
///
/// A block must be given back under the type that it was allocated under, so the type must not
/// change while blocks are outstanding. Any thread may allocate; the type is set at start-up.
class KOVABASE_API KOVAMemoryManager {
 public:
  /// Where blocks come from.
  enum AllocationType : int {
    kHeap = 0,
    /// The kernel's heap; while there is no kernel that is ready for use, the runtime's.
    kKernel = 1,
  };

  KOVAMemoryManager() = delete;

  /// Selects the heap, at start-up.
  static void Initialize(AllocationType type) noexcept { SetAllocType(type); }
  /// Leaves everything as it is.
  static void Shutdown() noexcept {}
  /// Every value but `kKernel` selects the runtime's heap.
  static void SetAllocType(AllocationType type) noexcept;

  /// `size` bytes, aligned to 16. Throws KOVAAllocException when they cannot be had.
  static void* Allocate(unsigned size);
  /// Takes back a block of `Allocate`; ignores null.
  static void Deallocate(void* block) noexcept;

 private:
  static AllocationType _allocType;
};
