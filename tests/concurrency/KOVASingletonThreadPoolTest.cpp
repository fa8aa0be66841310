#include "kovabase/concurrency/KOVAMProcSystemBase.h"
#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/concurrency/KOVAThreadJob.h"
#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAException.h"
#include "tests/events/EventRecorder.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <stdexcept>
#include <sys/resource.h>
#include <thread>

using Pool = KOVASingletonThreadPool;
using Texts = std::vector<std::string>;

namespace {

// A thread that waits for another gives up after this: a deadlock then fails instead of hanging.
constexpr auto kTooLong = std::chrono::seconds(20);

template <typename Condition>
bool becomesTrue(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + kTooLong;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::yield();
  }
  return true;
}

// Sets the two variables (null removes) and shuts the pool down at the end.
class KOVASingletonThreadPoolTest : public testing::Test {
 protected:
  KOVASingletonThreadPoolTest() { setVariables("2", nullptr); }
  ~KOVASingletonThreadPoolTest() override {
    while (Pool::IsReadyForUse()) Pool::Shutdown();
  }

  static void setVariables(const char* threads, const char* forceNone) {
    set("VEX_NUM_THREADS", threads);
    set("VEX_FORCE_NO_ORLA_THREADS", forceNone);
  }

 private:
  static void set(const char* name, const char* value) {
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  }
};

template <typename Function>
struct FunctionJob : KOVAThreadJob {
  explicit FunctionJob(Function f) : function(f) {}
  void Work(void* data) override { function(data); }
  Function function;
};

int processors() { return static_cast<int>(std::max(1U, std::thread::hardware_concurrency())); }

}  // namespace

TEST_F(KOVASingletonThreadPoolTest, TheEnvironmentDecidesAboutWorkers) {
  struct {
    const char* threads;
    const char* forceNone;
    bool wanted;
    bool isEnabled;
    int count;
  } const cases[] = {
      {"3", nullptr, true, true, 3},
      {"3", nullptr, false, false, 3},
      {"3", "1", true, false, 3},
      {"3", "Yes", true, false, 3},
      {"3", "true", true, false, 3},
      {"3", "no", true, true, 3},
      {"3", "", true, true, 3},
      {"0", nullptr, true, true, processors()},
      {"", nullptr, true, true, processors()},
      {"many", nullptr, true, true, processors()},
      {nullptr, nullptr, true, true, processors()},
      {" 4x", nullptr, true, true, 4},
      {"-3", nullptr, true, true, -3},
  };
  EXPECT_EQ(Pool::GetThreadCount(), 0);
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.threads != nullptr ? c.threads : "unset") + " / " +
                 (c.forceNone != nullptr ? c.forceNone : "unset"));
    setVariables(c.threads, c.forceNone);
    Pool::Initialize(c.wanted);
    EXPECT_TRUE(Pool::IsReadyForUse());
    EXPECT_EQ(Pool::IsMTEnabled(), c.isEnabled);
    EXPECT_EQ(Pool::GetThreadCount(), c.count);
    // With workers a job runs on one of them, without at once and here.
    const auto caller = std::this_thread::get_id();
    std::atomic<int> ranOnCaller{-1};
    FunctionJob job([&](void*) { ranOnCaller = std::this_thread::get_id() == caller ? 1 : 0; });
    Pool::Enqueue(&job, nullptr);
    const bool hasWorkers = c.isEnabled && c.count > 0;
    if (!hasWorkers) {
      EXPECT_EQ(ranOnCaller, 1);
    }
    Pool::WaitForAllCurrentJobs();
    EXPECT_EQ(ranOnCaller, hasWorkers ? 0 : 1);
    Pool::Shutdown();
    EXPECT_FALSE(Pool::IsReadyForUse());
    EXPECT_FALSE(Pool::IsMTEnabled());
    EXPECT_EQ(Pool::GetThreadCount(), 0);
  }
}

TEST_F(KOVASingletonThreadPoolTest, InitializeAndShutdownAreCounted) {
  Pool::Shutdown();  // without a match: nothing
  Pool::Initialize(true);
  setVariables("5", nullptr);
  Pool::Initialize(false);
  EXPECT_TRUE(Pool::IsMTEnabled());
  EXPECT_EQ(Pool::GetThreadCount(), 2);
  Pool::Shutdown();
  EXPECT_TRUE(Pool::IsReadyForUse());
  Pool::Shutdown();
  Pool::Shutdown();
  EXPECT_FALSE(Pool::IsReadyForUse());
  Pool::Initialize(true);
  EXPECT_EQ(Pool::GetThreadCount(), 5);
}

TEST_F(KOVASingletonThreadPoolTest, JobsStartInOrderWithTheirData) {
  setVariables("1", nullptr);
  Pool::Initialize(true);
  std::vector<int> order;  // written by the one worker
  FunctionJob job([&](void* data) { order.push_back(*static_cast<int*>(data)); });
  std::vector<int> data(5000);
  for (int i = 0; i < 5000; ++i) {
    data[static_cast<std::size_t>(i)] = i;
    Pool::Enqueue(&job, &data[static_cast<std::size_t>(i)]);
  }
  Pool::Enqueue(nullptr, nullptr);
  Pool::WaitForAllCurrentJobs();
  EXPECT_EQ(order, data);
}

TEST_F(KOVASingletonThreadPoolTest, EveryWorkerWorksAndHasAnIdOfItsOwn) {
  setVariables("4", nullptr);
  for (int round = 0; round < 3; ++round) {
    Pool::Initialize(true);
    std::atomic<int> inside{0};
    std::mutex mutex;
    std::set<int> ids;
    // Each job waits for the other three: they end only when all workers run at once.
    FunctionJob job([&](void*) {
      ++inside;
      EXPECT_TRUE(becomesTrue([&] { return inside == 4; }));
      const std::lock_guard guard(mutex);
      ids.insert(Pool::GetCurrentThreadID());
      *Pool::GetThreadValue(Pool::GetCurrentThreadID()) = &inside;
    });
    for (int i = 0; i < 4; ++i) Pool::Enqueue(&job, nullptr);
    Pool::WaitForAllCurrentJobs();
    EXPECT_EQ(ids, (std::set<int>{1, 2, 3, 4}));
    EXPECT_EQ(Pool::GetCurrentThreadID(), 0);
    EXPECT_EQ(*Pool::GetThreadValue(0), nullptr);
    EXPECT_EQ(*Pool::GetThreadValue(4), &inside);
    EXPECT_EQ(Pool::GetThreadValue(5), nullptr);
    EXPECT_EQ(Pool::GetThreadValue(-1), nullptr);
    Pool::Shutdown();
  }
  EXPECT_EQ(Pool::GetThreadValue(0), nullptr);
}

TEST_F(KOVASingletonThreadPoolTest, ShutdownRunsWhatIsQueuedAndWhatJobsQueueMeanwhile) {
  Pool::Initialize(true);
  std::atomic<int> count{0};
  FunctionJob child([&](void*) { ++count; });
  FunctionJob parent([&](void*) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    Pool::Enqueue(&child, nullptr);
    ++count;
  });
  for (int i = 0; i < 20; ++i) Pool::Enqueue(&parent, nullptr);
  Pool::Shutdown();
  EXPECT_EQ(count, 40);
}

TEST_F(KOVASingletonThreadPoolTest, NothingThatAJobCallsDeadlocks) {
  struct Callback : Pool::ThreadInitializerCallback_t {
    void ThreadStart() override {}
    void ThreadEnd() override { ++ends; }
    std::atomic<int> ends{0};
  } callback;
  Pool::Initialize(true);
  FunctionJob job([&](void*) {
    Pool::WaitForAllCurrentJobs();
    Pool::AddInitializerCallback(&callback);
    Pool::RemoveInitializerCallback(&callback);
    Pool::Shutdown();
    Pool::Initialize(true);
    EXPECT_TRUE(Pool::IsReadyForUse());
  });
  Pool::Enqueue(&job, nullptr);
  Pool::WaitForAllCurrentJobs();
  EXPECT_TRUE(Pool::IsReadyForUse());
  Pool::Shutdown();
  EXPECT_FALSE(Pool::IsReadyForUse());
  EXPECT_EQ(callback.ends, 2);  // the removal has left the workers' own lists
}

TEST_F(KOVASingletonThreadPoolTest, WaitingCoversJobsThatOtherThreadsQueue) {
  Pool::Initialize(true);
  std::atomic<int> count{0};
  FunctionJob job([&](void*) { ++count; });
  std::vector<std::thread> senders;
  for (int i = 0; i < 3; ++i) {
    senders.emplace_back([&] {
      for (int n = 0; n < 2000; ++n) {
        Pool::Enqueue(&job, nullptr);
        if (n % 100 == 0) Pool::WaitForAllCurrentJobs();
      }
    });
  }
  for (std::thread& sender : senders) sender.join();
  Pool::WaitForAllCurrentJobs();
  EXPECT_EQ(count, 6000);
}

TEST_F(KOVASingletonThreadPoolTest, AThrowingJobIsReportedAndItsWorkerLivesOn) {
  setVariables("1", nullptr);
  Pool::Initialize(true);
  kova::test::EventRecorder recorder;
  int which = 0;
  FunctionJob job([&](void*) {
    switch (which) {
      case 0: throw std::runtime_error("bad face 7");
      case 1: throw KOVAAbortException();
      case 2: throw Gk_Exception("no schema", KOVAResult(KOVAResultCode::kFailure));
      case 3: throw KOVAException("Reading.", "Edge lost.", "", 1, "", "");
      case 4: throw std::bad_alloc();
      case 5: throw 17;
      default: break;
    }
  });
  for (which = 0; which < 7; ++which) {
    Pool::Enqueue(&job, nullptr);
    Pool::WaitForAllCurrentJobs();
  }
  const std::string prefix = "Error : KOVASingletonThreadPool: a job ended with an exception: ";
  const Texts expected{prefix + "bad face 7\n", prefix + "no schema\n",
                       prefix + "Reading. Edge lost.\n", prefix + "out of memory\n",
                       prefix + "unknown type\n"};
  EXPECT_EQ(recorder.texts, expected);

  // The same on the caller, when there are no workers.
  Pool::Shutdown();
  which = 0;
  Pool::Enqueue(&job, nullptr);
  EXPECT_EQ(recorder.texts.back(), expected.front());
  EXPECT_EQ(recorder.texts.size(), 6U);
}

TEST_F(KOVASingletonThreadPoolTest, CallbacksRunOnTheWorkersInOrder) {
  static std::mutex mutex;
  static Texts calls;
  struct Callback : Pool::ThreadInitializerCallback_t {
    explicit Callback(const char* n) : name(n) {}
    void note(const char* what) const {
      const std::lock_guard guard(mutex);
      calls.push_back(name + what + std::to_string(Pool::GetCurrentThreadID()));
    }
    void ThreadStart() override { note("+"); }
    void ThreadEnd() override {
      note("-");
      if (name == "b") throw std::runtime_error("b gives up");
    }
    std::string name;
  } a("a"), b("b"), late("late");
  setVariables("1", nullptr);
  Pool::AddInitializerCallback(&a);
  Pool::AddInitializerCallback(nullptr);
  Pool::AddInitializerCallback(&b);
  Pool::Initialize(true);
  {
    // Initialize has waited for the worker's start.
    const std::lock_guard guard(mutex);
    EXPECT_EQ(calls, (Texts{"a+1", "b+1"}));
  }
  Pool::AddInitializerCallback(&late);
  Pool::RemoveInitializerCallback(&a);
  Pool::RemoveInitializerCallback(&a);
  kova::test::EventRecorder recorder;
  Pool::Shutdown();
  // One that came late ends twice: from the worker's list and from the registry.
  EXPECT_EQ(calls, (Texts{"a+1", "b+1", "late-1", "b-1", "late-1"}));
  EXPECT_EQ(recorder.texts, Texts{"Error : KOVASingletonThreadPool: a thread-end callback ended "
                                  "with an exception: b gives up\n"});
  Pool::RemoveInitializerCallback(&b);
  Pool::RemoveInitializerCallback(&late);
}

TEST_F(KOVASingletonThreadPoolTest, TheKernelStartsOnlyOnceInAProcess) {
  EXPECT_FALSE(Pool::HasKernelBeenInitialized());
  Pool::InitializeKernel();
  Pool::InitializeKernel();
  Pool::ShutdownKernel();
  Pool::InitializeKernel();
  Pool::ShutdownKernel();
  Pool::ShutdownKernel();
  EXPECT_THROW(Pool::InitializeKernel(), KOVAAbortException);
}

TEST_F(KOVASingletonThreadPoolTest, MultiProcessSwitchesNeedTheirUnlocking) {
  using System = KOVAMProcSystemBase;
  System::SetMultiProcessMode(true);
  System::SetNumberOfProcessorsToUseRequested(6);
  EXPECT_FALSE(System::IsMultiProcessAllowed());
  EXPECT_EQ(System::GetNumberOfProcessorsToUseRequested(), 0U);
  System::AllowNonWindowsPlatform();
  System::SetMultiProcessMode(true);
  System::SetNumberOfProcessorsToUseRequested(6);
  EXPECT_TRUE(System::IsMultiProcessAllowed());
  EXPECT_EQ(System::GetNumberOfProcessorsToUseRequested(), 6U);
  EXPECT_FALSE(System::IsSlaveProcess());
  System::SetAsSlaveProcess();
  EXPECT_TRUE(System::IsSlaveProcess());
  System::SetAsMasterProcess();
  EXPECT_FALSE(System::IsSlaveProcess());
  EXPECT_FALSE(System::IsDebugInSingleProcess());
}

// Sanitizers need the address space for themselves.
#ifndef KOVA_TEST_SANITIZED
TEST_F(KOVASingletonThreadPoolTest, AHugeCountKeepsTheWorkersThatCouldBeMade) {
  // Stacks take address space: with little of it only some workers can be had.
  rlimit limit{};
  getrlimit(RLIMIT_AS, &limit);
  const rlim_t before = limit.rlim_cur;
  limit.rlim_cur = 512UL * 1024 * 1024;
  ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
  setVariables("2147483647", nullptr);
  Pool::Initialize(true);
  limit.rlim_cur = before;
  setrlimit(RLIMIT_AS, &limit);
  EXPECT_GT(Pool::GetThreadCount(), 1);
  EXPECT_LT(Pool::GetThreadCount(), 1000);
  std::atomic<int> count{0};
  FunctionJob job([&](void*) { ++count; });
  for (int i = 0; i < 1000; ++i) Pool::Enqueue(&job, nullptr);
  Pool::Shutdown();
  EXPECT_EQ(count, 1000);
}
#endif

TEST(KOVASingletonThreadPoolDeathTest, AProcessMayEndWithWorkersAtWork) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  setenv("VEX_NUM_THREADS", "2", 1);
  // By the main thread, while one job runs and others are queued.
  EXPECT_EXIT(
      {
        Pool::Initialize(true);
        static FunctionJob job(
            [](void*) { std::this_thread::sleep_for(std::chrono::milliseconds(30)); });
        for (int i = 0; i < 1000; ++i) Pool::Enqueue(&job, nullptr);
        std::exit(3);
      },
      testing::ExitedWithCode(3), "^$");
  // By a job.
  EXPECT_EXIT(
      {
        Pool::Initialize(true);
        static FunctionJob job([](void*) { std::exit(4); });
        Pool::Enqueue(&job, nullptr);
        std::this_thread::sleep_for(kTooLong);
      },
      testing::ExitedWithCode(4), "^$");
  // With a job that never ends.
  EXPECT_EXIT(
      {
        Pool::Initialize(true);
        static std::atomic<bool> isRunning{false};
        static FunctionJob job([](void*) {
          isRunning = true;
          for (;;) std::this_thread::sleep_for(std::chrono::seconds(1));
        });
        Pool::Enqueue(&job, nullptr);
        becomesTrue([] { return isRunning.load(); });
        std::exit(5);
      },
      testing::ExitedWithCode(5), "^$");
}
