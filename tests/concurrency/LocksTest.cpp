#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/concurrency/KOVAReadersWritersLock.h"
#include "tests/support/AllocationFailure.h"

#include <chrono>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

using ReaderGuard = KOVAReadersWritersLock::ReaderGuard_t;
using WriterGuard = KOVAReadersWritersLock::WriterGuard_t;

/// Runs a step on a thread of its own and tells whether it is through.
class Elsewhere {
 public:
  explicit Elsewhere(std::function<void()> step)
      : _done(std::async(std::launch::async, std::move(step))) {}

  bool isBlocked() const { return _done.wait_for(50ms) == std::future_status::timeout; }
  bool isDone() const { return _done.wait_for(10s) == std::future_status::ready; }

 private:
  std::future<void> _done;
};

TEST(KOVAMutexTest, IsFreeAfterAsManyReleases) {
  KOVAMutex mutex;
  mutex.Acquire();
  { const KOVAMutex::LockGuard_t again(mutex); }
  Elsewhere other([&] { const KOVAMutex::LockGuard_t guard(mutex); });
  EXPECT_TRUE(other.isBlocked());
  mutex.Release();
  EXPECT_TRUE(other.isDone());
}

TEST(KOVAReadersWritersLockTest, AWriterWaitsForAllReadersAndTheyDoNotWaitForIt) {
  KOVAReadersWritersLock lock;
  lock.AcquireReadLock();
  lock.AcquireReadLock();
  Elsewhere writer([&] { const WriterGuard guard(lock); });
  EXPECT_TRUE(writer.isBlocked());
  Elsewhere lateReader([&] { const ReaderGuard guard(lock); });
  EXPECT_TRUE(lateReader.isDone());
  lock.ReleaseReadLock();
  EXPECT_TRUE(writer.isBlocked());
  // Nobody is recorded as an owner: the last read lock goes on another thread.
  Elsewhere([&] { lock.ReleaseReadLock(); }).isDone();
  EXPECT_TRUE(writer.isDone());
}

TEST(KOVAReadersWritersLockTest, AWriterKeepsEverybodyOut) {
  KOVAReadersWritersLock lock;
  lock.ReleaseWriteLock();  // of a lock that nobody holds: makes no room for a second writer
  lock.AcquireWriteLock();
  Elsewhere first([&] { const ReaderGuard guard(lock); });
  Elsewhere second([&] { const ReaderGuard guard(lock); });
  Elsewhere writer([&] { const WriterGuard guard(lock); });
  EXPECT_TRUE(first.isBlocked() && second.isBlocked() && writer.isBlocked());
  Elsewhere([&] { lock.ReleaseWriteLock(); }).isDone();
  EXPECT_TRUE(first.isDone() && second.isDone() && writer.isDone());
}

// Every thread sleeps and is woken many times over; a wake-up that is lost hangs the test, and the
// thread sanitizer sees what the lock does not order.
TEST(KOVAReadersWritersLockTest, ReadersSeeWholeWritesOnly) {
  KOVAReadersWritersLock lock;
  int first = 0;
  int second = 0;
  int torn = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 3000; ++round) {
        const WriterGuard guard(lock);
        ++first;
        if (round % 100 == 0) std::this_thread::sleep_for(100us);
        ++second;
      }
    });
    threads.emplace_back([&] {
      for (int round = 0; round < 3000; ++round) {
        bool isTorn = false;
        {
          const ReaderGuard guard(lock);
          isTorn = first != second;
          if (round % 100 == 0) std::this_thread::sleep_for(100us);
        }
        if (isTorn) {
          const WriterGuard guard(lock);
          ++torn;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(torn, 0);
  EXPECT_EQ(first, 6000);
}

TEST(LocksTest, DoNothingWithoutMemory) {
  if (!kova::test::kCanFailAllocations) GTEST_SKIP() << "the sanitizer keeps malloc to itself";
  const kova::test::FailingAllocation shortage(1, kova::test::Shortage::kAllFailFromThere);
  KOVAMutex mutex;
  mutex.Acquire();
  mutex.Release();
  KOVAReadersWritersLock lock;
  const WriterGuard one(lock);
  const WriterGuard another(lock);
  const ReaderGuard reader(lock);
}

}  // namespace
