#include "kovabase/foundation/KOVAMemoryManager.h"

#include "kovabase/foundation/internal/HeaderWord.h"
#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/kernel/Kernel.h"

constinit KOVAMemoryManager::AllocationType KOVAMemoryManager::_allocType =
    KOVAMemoryManager::kHeap;

namespace {

using namespace kova;
using internal::kHeaderBytes;

/// Marks a block of the runtime's heap; those of the kernel carry their size.
constexpr unsigned kFromHeap = 0xFFFFFFFFU;
constexpr unsigned kHeaderWordBytes = 4;

}  // namespace

void KOVAMemoryManager::SetAllocType(AllocationType type) noexcept { _allocType = type; }

void* KOVAMemoryManager::Allocate(unsigned size) {
  if (_allocType != kKernel) return internal::allocate(size);
  const std::size_t bytes = size + kHeaderBytes;
  // A size whose header word would read as the heap's mark, or is too large for one, stays there.
  if (kernel::isReadyForUse() && size < kFromHeap - kHeaderWordBytes) {
    void* const block = kernel::allocate(bytes);
    if (block == nullptr) internal::throwAllocException();
    return internal::setHeaderWord(block, size + kHeaderWordBytes);
  }
  return internal::setHeaderWord(internal::allocate(bytes), kFromHeap);
}

void KOVAMemoryManager::Deallocate(void* block) noexcept {
  if (_allocType != kKernel) return internal::release(block);
  if (block == nullptr) return;
  if (internal::headerWord(block) == kFromHeap) {
    internal::release(internal::blockStart(block));
  } else {
    kernel::release(internal::blockStart(block));
  }
}
