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

TEST(KOVAMemoryManagerTest, MarksHeapBlocksWhereTheKernelIsAskedFor) {
  KOVAMemoryManager::Initialize(KOVAMemoryManager::kKernel);
  for (const unsigned size : {0U, 1U, 4096U}) {
    void* const block = KOVAMemoryManager::Allocate(size);
    EXPECT_TRUE(isAligned(block));
    EXPECT_EQ(wordBefore(block), 0xFFFFFFFFU);
    std::memset(block, 1, size);
    KOVAMemoryManager::Deallocate(block);
  }
  KOVAMemoryManager::Deallocate(nullptr);
  KOVAMemoryManager::Shutdown();
  KOVAMemoryManager::SetAllocType(KOVAMemoryManager::kHeap);
  KOVAMemoryManager::Deallocate(KOVAMemoryManager::Allocate(100));
}

TEST(KOVAMemoryManagerTest, ThrowsWhatItsNameSays) {
  if (!kCanFailAllocations) GTEST_SKIP() << "the sanitizer keeps malloc to itself";
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
  void* const third = KOVAMemoryBoundAllocate(100);
  EXPECT_EQ(counters.allocations, 3U);
  EXPECT_EQ(counters.allocatedBytes, 1124U);
  EXPECT_EQ(counters.frees, 1U);
  EXPECT_EQ(counters.freedBytes, 1000U);
  EXPECT_EQ(counters.heldBytes, 124U);
  EXPECT_EQ(counters.peakBytes, 1024U);
  KOVAMemoryBoundFree(second);
  KOVAMemoryBoundFree(third);
  EXPECT_EQ(counters.heldBytes, 0U);

  if (!kCanFailAllocations) return;
  void* failed = nullptr;
  {
    const FailingAllocation shortage(1);
    failed = KOVAMemoryBoundAllocate(8);
  }
  EXPECT_EQ(failed, reinterpret_cast<void*>(4));
  KOVAMemoryBoundFree(failed);
  EXPECT_EQ(counters.allocations, 3U);
  EXPECT_EQ(counters.frees, 3U);
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
    bool isNull = false;
    {
      const FailingAllocation shortage(1);
      isNull = ::operator new(100, std::nothrow) == nullptr;
    }
    EXPECT_TRUE(isNull);
  }
  EXPECT_EQ(std::get_new_handler(), before);
}

TEST(KOVANewHandlerTest, GivesTheReserveBackWithTheLastObject) {
  if (!kCanFailAllocations) GTEST_SKIP() << "the sanitizer keeps malloc to itself";
  const FailingAllocation watch(-1);
  {
    const KOVANewHandler outer;
    const KOVANewHandler inner;
    KOVANewHandler::ReserveBuffer();
    EXPECT_EQ(watch.blocksHeld(), 1);
    KOVANewHandler::ReleaseBuffer();
    EXPECT_EQ(watch.blocksHeld(), 0);
    KOVANewHandler::ReserveBuffer();
  }
  EXPECT_EQ(watch.blocksHeld(), 0);
}

}  // namespace
