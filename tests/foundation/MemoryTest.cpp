#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/foundation/KOVAMemoryBound.h"
#include "kovabase/foundation/KOVAMemoryManager.h"
#include "kovabase/foundation/KOVANewHandler.h"
#include "tests/support/AllocationFailure.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <new>

namespace {

using kova::test::FailingAllocation;
using kova::test::kCanFailAllocations;

unsigned wordBefore(const void* block) {
  unsigned word = 0;
  std::memcpy(&word, static_cast<const char*>(block) - 4, 4);
  return word;
}

bool isAligned(const void* block) { return reinterpret_cast<std::uintptr_t>(block) % 16 == 0; }

TEST(KOVAMemoryManagerTest, MarksHeapBlocksAndThrowsWithoutMemory) {
  KOVAMemoryManager::Initialize(KOVAMemoryManager::kKernel);
  void* const block = KOVAMemoryManager::Allocate(100);
  EXPECT_TRUE(isAligned(block));
  EXPECT_EQ(wordBefore(block), 0xFFFFFFFFU);
  std::memset(block, 1, 100);
  KOVAMemoryManager::Deallocate(block);
  KOVAMemoryManager::Deallocate(nullptr);
  for (const auto type : {KOVAMemoryManager::kHeap, KOVAMemoryManager::kKernel}) {
    KOVAMemoryManager::SetAllocType(type);
    EXPECT_TRUE(kova::test::survivesFailingAllocations([] {
      KOVAMemoryManager::Deallocate(KOVAMemoryManager::Allocate(100));
      return true;
    }));
  }
  KOVAMemoryManager::SetAllocType(KOVAMemoryManager::kHeap);
}

TEST(KOVAMemoryBoundTest, CountsWhatIsHeld) {
  const KOVAMemoryBoundCounters& counters = KOVAMemoryBoundGetCounters();
  void* const first = KOVAMemoryBoundAllocate(1000);
  void* const second = KOVAMemoryBoundAllocate(24);
  EXPECT_TRUE(isAligned(first));
  EXPECT_EQ(wordBefore(second), 24U);
  KOVAMemoryBoundFree(first);
  KOVAMemoryBoundFree(nullptr);
  EXPECT_EQ(counters.allocations, 2U);
  EXPECT_EQ(counters.allocatedBytes, 1024U);
  EXPECT_EQ(counters.frees, 1U);
  EXPECT_EQ(counters.freedBytes, 1000U);
  EXPECT_EQ(counters.heldBytes, 24U);
  EXPECT_EQ(counters.peakBytes, 1024U);
  KOVAMemoryBoundFree(second);

  if (!kCanFailAllocations) return;
  void* failed = nullptr;
  {
    const FailingAllocation shortage(1);
    failed = KOVAMemoryBoundAllocate(8);
  }
  EXPECT_EQ(failed, reinterpret_cast<void*>(4));
  KOVAMemoryBoundFree(failed);
  EXPECT_EQ(counters.allocations, 2U);
  EXPECT_EQ(counters.frees, 2U);
}

TEST(KOVANewHandlerTest, TurnsAFailingNewIntoTheLibrarysException) {
  if (!kCanFailAllocations) GTEST_SKIP() << "the sanitizer keeps malloc to itself";
  const std::new_handler before = std::get_new_handler();
  {
    const KOVANewHandler outer;
    {
      KOVANewHandler inner;
      inner.Reset();
      inner.Reset();
    }
    // The inner object has gone twice over, and the reserve is still held for the outer one.
    int released = 0;
    bool isThrown = false;
    {
      const FailingAllocation shortage(1);
      try {
        ::operator delete(::operator new(100));
      } catch (const KOVAAllocException&) {
        isThrown = true;
      }
      released = -shortage.blocksHeld();
    }
    EXPECT_TRUE(isThrown);
    EXPECT_EQ(released, 1);
  }
  EXPECT_EQ(std::get_new_handler(), before);
}

}  // namespace
