#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/concurrency/KOVAThreadJob.h"
#include "kovabase/events/KOVAMTEventBus.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVATaskEvents.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAError.h"
#include "tests/events/EventRecorder.h"

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

using kova::test::EventRecorder;
using Texts = std::vector<std::string>;

namespace {

constexpr const char* kAddRefused =
    "Error : LOGIC ERROR: AddListener called during multi-threaded processing. All listener "
    "registration should occur during single-threaded execution.\n";
constexpr const char* kRemoveRefused =
    "Error : LOGIC ERROR: RemoveListener called during multi-threaded processing. All listener "
    "registration should occur during single-threaded execution.\n";

KOVCEventBus& bus() { return KOVCEventBus::GetEventBus(); }

void debug(const char* text) { KOVADebugEvent::Fire("%s", text); }

// A pool of two workers for the time of a test.
class TwoWorkers {
 public:
  TwoWorkers() {
    setenv("VEX_NUM_THREADS", "2", 1);
    KOVASingletonThreadPool::Initialize(true);
  }
  ~TwoWorkers() { KOVASingletonThreadPool::Shutdown(); }
};

template <typename Function>
struct FunctionJob : KOVAThreadJob {
  explicit FunctionJob(Function f) : function(f) {}
  void Work(void* data) override { function(data); }
  Function function;
};

// Listens from load time on, when this file may come before the bus's.
struct LoadTimeListener : KOVCEventListener {
  LoadTimeListener() {
    KOVAMTEventBus::_eventBus.AddListener(this);
    debug("at load time");
  }
  void HandleEvent(KOVCEvent&) override { ++count; }
  // Other threads send, too.
  std::atomic<int> count{0};
} loadTimeListener;

}  // namespace

TEST(EventBusTest, WorksInLoadTimeConstructors) {
  EXPECT_GE(loadTimeListener.count, 1);
  EXPECT_EQ(&bus(), &KOVAMTEventBus::_eventBus);
}

TEST(EventBusTest, DeliversAtOnceInTheOrderOfRegistration) {
  Texts order;
  EventRecorder first;
  first.onEvent = [&](KOVCEvent&) { order.push_back("first"); };
  EventRecorder second;
  second.onEvent = [&](KOVCEvent&) { order.push_back("second"); };
  bus().AddListener(nullptr);
  bus().RemoveListener(nullptr);
  debug("a");
  {
    EventRecorder unknownLater;
    bus().RemoveListener(&unknownLater);
  }
  debug("b");
  EXPECT_EQ(order, (Texts{"first", "second", "first", "second"}));
  EXPECT_EQ(second.texts, (Texts{"a\n", "b\n"}));
}

TEST(EventBusTest, AListenerMayChangeTheListenersWhileItHandlesAnEvent) {
  EventRecorder first;
  auto removedInside = std::make_unique<EventRecorder>();
  EventRecorder last;
  std::unique_ptr<EventRecorder> addedInside;
  first.onEvent = [&](KOVCEvent&) {
    // Not only taken out of the list but gone.
    removedInside.reset();
    if (addedInside == nullptr) addedInside = std::make_unique<EventRecorder>();
  };
  debug("a");
  debug("b");
  EXPECT_EQ(last.texts, (Texts{"a\n", "b\n"}));
  EXPECT_EQ(addedInside->texts, Texts{"b\n"});
}

TEST(EventBusTest, AnEventFiredByAListenerIsDeliveredInside) {
  EventRecorder recorder;
  recorder.onEvent = [&](KOVCEvent& event) {
    if (event.GetLevel() == KOVAEventLevels::kWarning) debug("follows");
  };
  KOVAWarningEvent::Fire("trouble");
  EXPECT_EQ(recorder.texts, (Texts{"Warning : trouble\n", "follows\n"}));
}

TEST(EventBusTest, WhatAListenerThrowsReachesTheSender) {
  EventRecorder recorder;
  recorder.onEvent = [](KOVCEvent&) { throw KOVAAbortException(); };
  EXPECT_THROW(debug("a"), KOVAAbortException);
  recorder.onEvent = nullptr;
  debug("b");
  EXPECT_EQ(recorder.texts, (Texts{"a\n", "b\n"}));
}

TEST(EventBusTest, QueuedEventsComeInTheOneOrderOfTheirSending) {
  const TwoWorkers pool;
  EventRecorder recorder;
  KOVAMTEventBus::SetParallelMode();
  // Two jobs take turns, with the main thread and a thread of the host's in between.
  std::atomic<int> turn{0};
  FunctionJob job([&](void* data) {
    const int self = static_cast<int>(reinterpret_cast<std::intptr_t>(data));
    for (int i = 0; i < 3; ++i) {
      while (turn.load() != self + 4 * i) std::this_thread::yield();
      KOVADebugEvent::Fire("%d of worker job %d", i, self);
      ++turn;
    }
  });
  KOVASingletonThreadPool::Enqueue(&job, reinterpret_cast<void*>(0));
  KOVASingletonThreadPool::Enqueue(&job, reinterpret_cast<void*>(1));
  std::thread guest([&] {
    for (int i = 0; i < 3; ++i) {
      while (turn.load() != 2 + 4 * i) std::this_thread::yield();
      KOVADebugEvent::Fire("%d of a guest", i);
      ++turn;
    }
  });
  for (int i = 0; i < 3; ++i) {
    while (turn.load() != 3 + 4 * i) std::this_thread::yield();
    KOVADebugEvent::Fire("%d of main", i);
    ++turn;
  }
  guest.join();
  KOVASingletonThreadPool::WaitForAllCurrentJobs();
  EXPECT_EQ(recorder.texts, Texts{});
  KOVAMTEventBus::SetSingleThreadedMode();
  EXPECT_EQ(recorder.texts,
            (Texts{"0 of worker job 0\n", "0 of worker job 1\n", "0 of a guest\n", "0 of main\n",
                   "1 of worker job 0\n", "1 of worker job 1\n", "1 of a guest\n", "1 of main\n",
                   "2 of worker job 0\n", "2 of worker job 1\n", "2 of a guest\n", "2 of main\n"}));
  debug("at once");
  EXPECT_EQ(recorder.texts.size(), 13U);
}

TEST(EventBusTest, TaskEventsAreStampedWhenTheyAreQueued) {
  EventRecorder recorder;
  std::int64_t time = 0;
  long clock = 0;
  recorder.onEvent = [&](KOVCEvent& event) {
    event.GetTime(time);
    event.GetClock(clock);
  };
  KOVCConversionTaskEvent::Fire();
  EXPECT_EQ(time, 0);

  const auto before = static_cast<std::int64_t>(std::time(nullptr));
  const long clockBefore = static_cast<long>(std::clock());
  KOVAMTEventBus::SetParallelMode();
  KOVCConversionTaskEvent::Fire();
  const auto after = static_cast<std::int64_t>(std::time(nullptr));
  const long clockAfter = static_cast<long>(std::clock());
  while (static_cast<long>(std::clock()) <= clockAfter) {
  }
  KOVAMTEventBus::SetSingleThreadedMode();
  EXPECT_LE(before, time);
  EXPECT_LE(time, after);
  EXPECT_LE(clockBefore, clock);
  EXPECT_LE(clock, clockAfter);
}

TEST(EventBusTest, ListenerChangesAreRefusedInTheParallelMode) {
  EventRecorder recorder;
  EventRecorder late;
  bus().RemoveListener(&late);
  KOVAMTEventBus::SetParallelMode();
  bus().AddListener(&late);
  bus().RemoveListener(&recorder);
  debug("a");
  bool isFirst = true;
  recorder.onEvent = [&](KOVCEvent&) {
    if (isFirst) bus().AddListener(&late);
    isFirst = false;
  };
  KOVAMTEventBus::SetSingleThreadedMode();
  EXPECT_EQ(recorder.texts, (Texts{kAddRefused, kRemoveRefused, "a\n", kAddRefused}));
  EXPECT_EQ(late.texts, Texts{});
}

TEST(EventBusTest, AListenerMayFireAndTryToChangeTheModeInsideTheFlush) {
  EventRecorder recorder;
  recorder.onEvent = [&](KOVCEvent& event) {
    if (event.GetLevel() != KOVAEventLevels::kWarning) return;
    debug("follows");
    KOVAMTEventBus::SetParallelMode();
    KOVAMTEventBus::SetSingleThreadedMode();
  };
  KOVAMTEventBus::SetParallelMode();
  KOVAWarningEvent::Fire("one");
  KOVAWarningEvent::Fire("two");
  KOVAMTEventBus::SetSingleThreadedMode();
  EXPECT_EQ(recorder.texts,
            (Texts{"Warning : one\n", "Warning : two\n", "follows\n", "follows\n"}));
}

TEST(EventBusTest, AThrowingListenerLosesNoQueuedEventAndLeavesTheParallelMode) {
  EventRecorder recorder;
  recorder.onEvent = [](KOVCEvent& event) {
    if (event.GetLevel() == KOVAEventLevels::kWarning) throw std::runtime_error("disk full");
    if (event.GetLevel() == KOVAEventLevels::kError) throw KOVAAbortException();
  };
  KOVAMTEventBus::SetParallelMode();
  KOVAWarningEvent::Fire("w");
  KOVAErrorEvent::Fire("e");
  debug("d");
  EXPECT_THROW(KOVAMTEventBus::SetSingleThreadedMode(), std::runtime_error);
  EXPECT_EQ(recorder.texts, (Texts{"Warning : w\n", "Error : e\n", "d\n"}));
  debug("at once");
  EXPECT_EQ(recorder.texts.size(), 4U);
}

TEST(EventBusTest, EnteringTheParallelModeAgainDiscardsWhatIsQueued) {
  EventRecorder recorder;
  KOVAMTEventBus::SetParallelMode();
  debug("lost");
  std::thread([] { debug("lost, of a guest"); }).join();
  KOVAMTEventBus::SetParallelMode();
  debug("kept");
  KOVAMTEventBus::SetSingleThreadedMode();
  KOVAMTEventBus::SetSingleThreadedMode();
  EXPECT_EQ(recorder.texts, Texts{"kept\n"});
}

TEST(EventBusTest, WorkersWithoutAQueueAreNotHeard) {
  EventRecorder recorder;
  KOVAMTEventBus::SetParallelMode();
  {
    const TwoWorkers pool;  // started after the mode
    FunctionJob job([](void*) { debug("unheard"); });
    KOVASingletonThreadPool::Enqueue(&job, nullptr);
    KOVASingletonThreadPool::WaitForAllCurrentJobs();
  }
  KOVAMTEventBus::SetSingleThreadedMode();
  EXPECT_EQ(recorder.texts, Texts{});
}

TEST(EventBusTest, ANegativeThreadCountLeavesTheMainThreadItsQueue) {
  setenv("VEX_NUM_THREADS", "-3", 1);
  KOVASingletonThreadPool::Initialize(true);
  EventRecorder recorder;
  KOVAMTEventBus::SetParallelMode();
  debug("main");
  KOVAMTEventBus::SetSingleThreadedMode();
  KOVASingletonThreadPool::Shutdown();
  EXPECT_EQ(recorder.texts, Texts{"main\n"});
}

TEST(EventBusTest, AHostsOwnBusIsNotThrownOut) {
  struct HostBus : KOVCEventBus {
    void Send(KOVCEvent& event) override {
      ++sent;
      KOVCEventBus::Send(event);
    }
    int sent = 0;
  };
  EXPECT_EQ(&KOVAMTEventBus::GetEventBus(), &KOVAMTEventBus::_eventBus);
  {
    HostBus host;
    KOVCEventBus::RegisterEventBus(&host);
    const KOVCConversionTaskEvent event;
    KOVAMTEventBus::_eventBus.Send(const_cast<KOVCConversionTaskEvent&>(event));
    KOVAMTEventBus::SetParallelMode();
    KOVAMTEventBus::SetSingleThreadedMode();
    EXPECT_EQ(&KOVAMTEventBus::GetEventBus(), &host);
    EventRecorder recorder;
    debug("to the host");
    EXPECT_EQ(host.sent, 1);
    EXPECT_EQ(recorder.texts, Texts{"to the host\n"});
  }
  // The bus is gone; the default one steps in.
  EXPECT_EQ(&bus(), &KOVAMTEventBus::_eventBus);
  KOVCEventBus::RegisterEventBus(nullptr);
  EXPECT_EQ(&bus(), &KOVAMTEventBus::_eventBus);
}

// For the thread sanitizer above all: workers, the main thread and threads of the host report at
// once, the host's also while the mode changes.
TEST(EventBusTest, UnderStressNothingIsLostAndEachSendersOrderIsKept) {
  constexpr int kRounds = 20;
  constexpr int kJobs = 50;
  constexpr int kEventsPerJob = 20;
  const TwoWorkers pool;
  // The last number of each sender; listeners of a single-threaded phase may run side by side.
  struct Checker : KOVCEventListener {
    void HandleEvent(KOVCEvent& event) override {
      int sender = 0;
      int number = 0;
      const char* const message = dynamic_cast<KOVATextEvent&>(event).GetMessage();
      ASSERT_EQ(std::sscanf(message, "%d %d", &sender, &number), 2);
      const std::lock_guard guard(mutex);
      int& last = lastOf[sender];
      EXPECT_EQ(number, last + 1) << "of sender " << sender;
      last = number;
      ++count;
    }
    std::mutex mutex;
    std::map<int, int> lastOf;
    int count = 0;
  } checker;
  bus().AddListener(&checker);

  std::atomic<bool> isOver{false};
  std::atomic<int> guestEvents{0};
  std::vector<std::thread> guests;
  for (int guest = 0; guest < 2; ++guest) {
    guests.emplace_back([&, guest] {
      for (int number = 1; !isOver; ++number) {
        KOVADebugEvent::Fire("%d %d", -1 - guest, number);
        ++guestEvents;
        if (number % 16 == 0) std::this_thread::yield();
      }
    });
  }
  int mainEvents = 0;
  FunctionJob job([](void* data) {
    for (int number = 1; number <= kEventsPerJob; ++number) {
      KOVADebugEvent::Fire("%d %d", static_cast<int>(reinterpret_cast<std::intptr_t>(data)),
                           number);
    }
  });
  for (int round = 0; round < kRounds; ++round) {
    KOVAMTEventBus::SetParallelMode();
    for (int i = 0; i < kJobs; ++i) {
      KOVASingletonThreadPool::Enqueue(&job, reinterpret_cast<void*>(1L + round * kJobs + i));
      KOVADebugEvent::Fire("0 %d", ++mainEvents);
    }
    KOVASingletonThreadPool::WaitForAllCurrentJobs();
    KOVAMTEventBus::SetSingleThreadedMode();
    KOVADebugEvent::Fire("0 %d", ++mainEvents);
  }
  isOver = true;
  for (std::thread& guest : guests) guest.join();
  bus().RemoveListener(&checker);
  EXPECT_EQ(checker.count, kRounds * kJobs * kEventsPerJob + mainEvents + guestEvents);
}

TEST(EventBusDeathTest, AProcessMayEndInTheParallelModeWithEventsQueuedAndJobsRunning) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        setenv("VEX_NUM_THREADS", "2", 1);
        KOVASingletonThreadPool::Initialize(true);
        KOVAMTEventBus::SetParallelMode();
        static FunctionJob job([](void*) {
          for (int i = 0; i < 1000; ++i) debug("never told");
        });
        for (int i = 0; i < 100; ++i) KOVASingletonThreadPool::Enqueue(&job, nullptr);
        debug("never told");
        // Events that hold more than a text.
        KOVAError error(KOVAResultCode::kFailure, KOVAString(std::string(100, 'x').c_str()));
        KOVAErrorEvent::Fire(error);
        KOVAMessageEvent::Fire(std::string(50000, 'x').c_str(), true, true);
        std::exit(0);
      },
      testing::ExitedWithCode(0), "^$");
}
