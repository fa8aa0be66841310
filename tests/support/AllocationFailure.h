#pragma once

#include <functional>
#include <gtest/gtest.h>

/// Lets allocations fail on purpose. The test program links `kova_allocation_failure`, which takes
/// the place of malloc and operator new for the whole program, libraries included. Only the calling
/// thread is affected.
namespace kova::test {

/// False where the sanitizer does not let go of malloc (threads); work then runs without failures.
extern const bool kCanFailAllocations;

enum class Shortage {
  /// One allocation fails and the next ones succeed.
  kOneFails,
  /// From one allocation on all of them fail.
  kAllFailFromThere,
};

/// Runs `work` again and again: in the first run its first allocation fails, in the second its
/// second, until a run has none left to fail. Each run must end in true or KOVAAllocException and
/// give back what it has allocated. A run without failures goes ahead, so that caches are filled.
///
/// `work` answers whether it ended as its contract says, in success or in the failure that is
/// stated for a lack of memory. It should not use assertions, whose own texts need memory.
::testing::AssertionResult survivesFailingAllocations(const std::function<bool()>& work,
                                                      Shortage shortage = Shortage::kOneFails);

/// Within its life the n-th allocation from now on (1 is the next) fails on this thread, and with
/// kAllFailFromThere all later ones too.
class FailingAllocation {
 public:
  explicit FailingAllocation(int which, Shortage shortage = Shortage::kOneFails) noexcept;
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();

  /// Allocations that were asked for so far, the failed ones included.
  int allocations() const noexcept;
  bool hasFailed() const noexcept;
  /// Blocks allocated less blocks released.
  int blocksHeld() const noexcept;
};

}  // namespace kova::test
