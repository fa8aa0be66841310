// Firing and queueing events beside the ways in which other programs report: a formatted message or
// a plain text to a number of listeners, and a million events of each thread in the parallel mode.

#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/concurrency/KOVAThreadJob.h"
#include "kovabase/events/KOVAMTEventBus.h"
#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVCEventListener.h"

#include <benchmark/benchmark.h>

#ifdef KOVA_HAS_SPDLOG
#include <spdlog/async.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>
#endif
#ifdef KOVA_HAS_QT
#include "benchmarks/events/QtSender.h"
#endif

#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr const char* kPlainText = "Reading the geometry of the second shell";
constexpr int kEvents = 1'000'000;

struct Counter : KOVCEventListener {
  void HandleEvent(KOVCEvent& event) override { total += event.GetLevel(); }
  long total = 0;
};

// Listeners on the bus for the time of a benchmark.
class Listening {
 public:
  explicit Listening(long count) : _counters(static_cast<std::size_t>(count)) {
    for (Counter& counter : _counters) KOVCEventBus::GetEventBus().AddListener(&counter);
  }
  ~Listening() {
    for (Counter& counter : _counters) KOVCEventBus::GetEventBus().RemoveListener(&counter);
  }

 private:
  std::vector<Counter> _counters;
};

// What the formatted messages are about; opaque, so that no compiler formats ahead.
struct Face {
  int index = 4711;
  const char* body = "Housing";
  double area = 12.34567;
};

Face opaqueFace() {
  Face face;
  benchmark::DoNotOptimize(face);
  return face;
}

void fireFormatted(benchmark::State& state) {
  const Listening listening(state.range(0));
  const Face face = opaqueFace();
  for (auto _ : state) {
    KOVAMessageEvent::Fire("Face %d of body %s has an area of %.3f", face.index, face.body,
                           face.area);
  }
}

void printfInfo(benchmark::State& state) {
  const Listening listening(state.range(0));
  const Face face = opaqueFace();
  for (auto _ : state) {
    KOVAInfo::Printf("Face %d of body %s has an area of %.3f", face.index, face.body, face.area);
  }
}

void snprintfAlone(benchmark::State& state) {
  const Face face = opaqueFace();
  char text[1024];
  for (auto _ : state) {
    std::snprintf(text, sizeof text, "Face %d of body %s has an area of %.3f", face.index,
                  face.body, face.area);
    benchmark::DoNotOptimize(text);
  }
}

void firePlain(benchmark::State& state) {
  const Listening listening(state.range(0));
  for (auto _ : state) KOVAMessageEvent::Fire(kPlainText);
}

#ifdef KOVA_HAS_SPDLOG
spdlog::logger makeLogger(long sinks) {
  std::vector<spdlog::sink_ptr> list;
  for (long i = 0; i < sinks; ++i) list.push_back(std::make_shared<spdlog::sinks::null_sink_mt>());
  return {"bench", list.begin(), list.end()};
}

void spdlogFormatted(benchmark::State& state) {
  spdlog::logger logger = makeLogger(state.range(0));
  const Face face = opaqueFace();
  for (auto _ : state) {
    logger.info("Face {} of body {} has an area of {:.3f}", face.index, face.body, face.area);
  }
}

void spdlogPlain(benchmark::State& state) {
  spdlog::logger logger = makeLogger(state.range(0));
  for (auto _ : state) logger.info(kPlainText);
}
#endif

#ifdef KOVA_HAS_QT
void qtPlain(benchmark::State& state) {
  QtSender sender;
  std::vector<std::unique_ptr<QtReceiver>> receivers;
  for (long i = 0; i < state.range(0); ++i) {
    receivers.push_back(std::make_unique<QtReceiver>());
    QObject::connect(&sender, &QtSender::reported, receivers.back().get(), &QtReceiver::receive,
                     Qt::DirectConnection);
  }
  for (auto _ : state) emit sender.reported(50, kPlainText);
}
#endif

// The parallel mode

template <typename Function>
struct FunctionJob : KOVAThreadJob {
  explicit FunctionJob(Function f) : function(f) {}
  void Work(void*) override { function(KOVASingletonThreadPool::GetCurrentThreadID()); }
  Function function;
};

// Runs the function once on each of the pool's workers.
template <typename Function>
void onEachWorker(long workers, Function function) {
  std::atomic<long> arrived{0};
  FunctionJob job([&](int id) {
    // One job for each worker: nobody takes two.
    ++arrived;
    while (arrived != workers) {
    }
    function(id);
  });
  for (long i = 0; i < workers; ++i) KOVASingletonThreadPool::Enqueue(&job, nullptr);
  KOVASingletonThreadPool::WaitForAllCurrentJobs();
}

class Workers {
 public:
  explicit Workers(long count) {
    setenv("VEX_NUM_THREADS", std::to_string(count).c_str(), 1);
    KOVASingletonThreadPool::Initialize(true);
  }
  ~Workers() { KOVASingletonThreadPool::Shutdown(); }
};

// The parts of an iteration that count.
enum class Timed { kQueueing, kAll };

template <typename Queueing, typename Rest>
void timeIteration(benchmark::State& state, Timed timed, Queueing queueing, Rest rest) {
  queueing();
  if (timed == Timed::kQueueing) state.PauseTiming();
  rest();
  if (timed == Timed::kQueueing) state.ResumeTiming();
}

void queueEvents(benchmark::State& state, Timed timed) {
  const long threads = state.range(0);
  const Workers workers(threads);
  const Listening listening(1);
  for (auto _ : state) {
    KOVAMTEventBus::SetParallelMode();
    timeIteration(
        state, timed,
        [&] {
          onEachWorker(threads, [](int) {
            for (int i = 0; i < kEvents; ++i) KOVAMessageEvent::Fire(kPlainText);
          });
        },
        [] { KOVAMTEventBus::SetSingleThreadedMode(); });
  }
  state.SetItemsProcessed(state.iterations() * threads * kEvents);
}

// The plain way: an event with a std::string, cloned into a vector of each thread.
struct PlainEvent {
  explicit PlainEvent(const char* message, int eventLevel) : text(message), level(eventLevel) {}
  virtual ~PlainEvent() = default;
  virtual std::unique_ptr<PlainEvent> clone() const { return std::make_unique<PlainEvent>(*this); }
  std::string text;
  int level;
  int sequence = 0;
};

struct PlainListener {
  virtual ~PlainListener() = default;
  virtual void handle(PlainEvent& event) { total += event.level; }
  long total = 0;
};

using PlainQueue = std::vector<std::unique_ptr<PlainEvent>>;

void deliverMerged(std::vector<PlainQueue>& queues, PlainListener& listener) {
  std::vector<std::size_t> next(queues.size(), 0);
  for (;;) {
    std::size_t oldest = queues.size();
    int sequence = INT_MAX;
    for (std::size_t q = 0; q < queues.size(); ++q) {
      if (next[q] == queues[q].size() || queues[q][next[q]]->sequence >= sequence) continue;
      sequence = queues[q][next[q]]->sequence;
      oldest = q;
    }
    if (oldest == queues.size()) break;
    listener.handle(*queues[oldest][next[oldest]]);
    queues[oldest][next[oldest]++].reset();
  }
}

void queueUniquePointers(benchmark::State& state, Timed timed) {
  const long threads = state.range(0);
  const Workers workers(threads);
  PlainListener listener;
  benchmark::DoNotOptimize(&listener);
  for (auto _ : state) {
    struct alignas(64) Slot {
      PlainQueue queue;
    };
    std::vector<Slot> perThread(static_cast<std::size_t>(threads));
    std::atomic<int> sequence{0};
    timeIteration(
        state, timed,
        [&] {
          onEachWorker(threads, [&](int id) {
            PlainQueue& queue = perThread[static_cast<std::size_t>(id - 1)].queue;
            for (int i = 0; i < kEvents; ++i) {
              const PlainEvent sent(kPlainText, 50);
              queue.push_back(sent.clone());
              queue.back()->sequence = sequence.fetch_add(1, std::memory_order_relaxed) + 1;
            }
          });
        },
        [&] {
          std::vector<PlainQueue> queues;
          for (Slot& slot : perThread) queues.push_back(std::move(slot.queue));
          deliverMerged(queues, listener);
        });
  }
  state.SetItemsProcessed(state.iterations() * threads * kEvents);
}

#ifdef KOVA_HAS_SPDLOG
void queueSpdlogAsync(benchmark::State& state) {
  const long threads = state.range(0);
  const Workers workers(threads);
  for (auto _ : state) {
    const auto backend = std::make_shared<spdlog::details::thread_pool>(8192, 1);
    const auto logger = std::make_shared<spdlog::async_logger>(
        "bench", std::make_shared<spdlog::sinks::null_sink_mt>(), backend,
        spdlog::async_overflow_policy::block);
    timeIteration(
        state, Timed::kQueueing,
        [&] {
          onEachWorker(threads, [&](int) {
            for (int i = 0; i < kEvents; ++i) logger->info(kPlainText);
          });
        },
        [] {});
  }
  state.SetItemsProcessed(state.iterations() * threads * kEvents);
}
BENCHMARK(spdlogFormatted)->Name("fire formatted/spdlog null sink")->Arg(1)->Arg(4);
BENCHMARK(spdlogPlain)->Name("fire plain/spdlog null sink")->Arg(1)->Arg(4);
BENCHMARK(queueSpdlogAsync)
    ->Name("queue 1M of each thread/spdlog async")
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
#endif

BENCHMARK(fireFormatted)->Name("fire formatted/KOVAMessageEvent")->Arg(1)->Arg(4);
BENCHMARK(printfInfo)->Name("fire formatted/KOVAInfo")->Arg(1)->Arg(4);
BENCHMARK(snprintfAlone)->Name("fire formatted/vsnprintf alone");
BENCHMARK(firePlain)->Name("fire plain/KOVAMessageEvent")->Arg(1)->Arg(4);
#ifdef KOVA_HAS_QT
BENCHMARK(qtPlain)->Name("fire plain/Qt signal")->Arg(1)->Arg(4);
#endif
BENCHMARK_CAPTURE(queueEvents, , Timed::kQueueing)
    ->Name("queue 1M of each thread/KOVAMTEventBus")
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(queueUniquePointers, , Timed::kQueueing)
    ->Name("queue 1M of each thread/vector of unique_ptr")
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(queueEvents, , Timed::kAll)
    ->Name("queue and flush 1M of each thread/KOVAMTEventBus")
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(queueUniquePointers, , Timed::kAll)
    ->Name("queue and flush 1M of each thread/vector of unique_ptr")
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
