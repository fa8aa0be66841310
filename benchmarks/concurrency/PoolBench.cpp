// The pool beside other pools: a million tiny jobs, a thousand of 100 microseconds, and one job
// that the caller waits for.

#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/concurrency/KOVAThreadJob.h"

#include <benchmark/benchmark.h>

#ifdef KOVA_HAS_TBB
#include <tbb/global_control.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>
#endif
#ifdef KOVA_HAS_BOOST
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#endif
#ifdef KOVA_HAS_QT
#include <QRunnable>
#include <QThreadPool>
#endif

#include <chrono>
#include <cstdlib>
#include <future>
#include <thread>
#include <vector>

namespace {

constexpr int kWorkers = 2;
constexpr int kTinyJobs = 1'000'000;
constexpr int kLongJobs = 1000;

void spin(long rounds) {
  for (long i = 0; i < rounds; ++i) benchmark::DoNotOptimize(i);
}

// Rounds that take 100 microseconds here.
long roundsOf100Microseconds() {
  static const long rounds = [] {
    constexpr long kTrial = 10'000'000;
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
      const auto start = std::chrono::steady_clock::now();
      spin(kTrial);
      const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
      best = std::min(best, taken.count());
    }
    return static_cast<long>(1e-4 / best * kTrial);
  }();
  return rounds;
}

struct Tiny {
  void operator()(void* data) const { ++*static_cast<char*>(data); }
};
struct Long {
  void operator()(void*) const { spin(roundsOf100Microseconds()); }
};

// Each pool offers: run a function of a pointer later, and wait for all of them.

template <typename Function>
class OurPool {
 public:
  OurPool() {
    setenv("VEX_NUM_THREADS", std::to_string(kWorkers).c_str(), 1);
    KOVASingletonThreadPool::Initialize(true);
  }
  ~OurPool() { KOVASingletonThreadPool::Shutdown(); }
  void run(void* data) { KOVASingletonThreadPool::Enqueue(&_job, data); }
  void wait() { KOVASingletonThreadPool::WaitForAllCurrentJobs(); }

 private:
  struct Job : KOVAThreadJob {
    void Work(void* data) override { Function()(data); }
  } _job;
};

#ifdef KOVA_HAS_TBB
template <typename Function>
class TbbPool {
 public:
  // The waiting thread works too, so that one worker of its own makes as many as elsewhere.
  void run(void* data) {
    _group.run([data] { Function()(data); });
  }
  void wait() { _group.wait(); }

 private:
  tbb::global_control _control{tbb::global_control::max_allowed_parallelism, kWorkers};
  tbb::task_group _group;
};
#endif

#ifdef KOVA_HAS_BOOST
template <typename Function>
class AsioPool {
 public:
  ~AsioPool() { _pool.join(); }
  void run(void* data) {
    _left.fetch_add(1, std::memory_order_relaxed);
    boost::asio::post(_pool, [this, data] {
      Function()(data);
      if (_left.fetch_sub(1, std::memory_order_acq_rel) == 1) _left.notify_all();
    });
  }
  void wait() {
    for (int left = _left.load(); left != 0; left = _left.load()) _left.wait(left);
  }

 private:
  std::atomic<int> _left{0};
  boost::asio::thread_pool _pool{kWorkers};
};
#endif

#ifdef KOVA_HAS_QT
template <typename Function>
class QtPool {
 public:
  QtPool() { _pool.setMaxThreadCount(kWorkers); }
  void run(void* data) {
    _pool.start([data] { Function()(data); });
  }
  void wait() { _pool.waitForDone(); }

 private:
  QThreadPool _pool;
};
#endif

template <template <typename> class Pool>
void tinyJobs(benchmark::State& state) {
  Pool<Tiny> pool;
  std::vector<char> data(kTinyJobs);
  for (auto _ : state) {
    for (char& byte : data) pool.run(&byte);
    pool.wait();
  }
  state.SetItemsProcessed(state.iterations() * kTinyJobs);
}

template <template <typename> class Pool>
void longJobs(benchmark::State& state) {
  roundsOf100Microseconds();
  Pool<Long> pool;
  for (auto _ : state) {
    for (int i = 0; i < kLongJobs; ++i) pool.run(nullptr);
    pool.wait();
  }
}

void longLoops(benchmark::State& state) {
  const long rounds = roundsOf100Microseconds();
  for (auto _ : state) {
    std::vector<std::thread> threads;
    for (int t = 0; t < kWorkers; ++t) {
      threads.emplace_back([rounds] {
        for (int i = 0; i < kLongJobs / kWorkers; ++i) spin(rounds);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
}

template <template <typename> class Pool>
void oneJob(benchmark::State& state) {
  Pool<Tiny> pool;
  char byte = 0;
  for (auto _ : state) {
    pool.run(&byte);
    pool.wait();
  }
}

// The same after the workers have had time to fall asleep.
template <template <typename> class Pool>
void oneJobAfterSleep(benchmark::State& state) {
  Pool<Tiny> pool;
  char byte = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::this_thread::sleep_for(std::chrono::microseconds(500));
    state.ResumeTiming();
    pool.run(&byte);
    pool.wait();
  }
}

template <template <typename> class Pool>
void addBenchmarks(const char* name) {
  const std::string suffix = std::string("/") + name;
  benchmark::RegisterBenchmark(("1M tiny jobs" + suffix).c_str(), tinyJobs<Pool>)
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark(("1,000 jobs of 100 us" + suffix).c_str(), longJobs<Pool>)
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

template <template <typename> class Pool>
void addWaitBenchmarks(const char* name) {
  const std::string suffix = std::string("/") + name;
  benchmark::RegisterBenchmark(("one job and wait" + suffix).c_str(), oneJob<Pool>)->UseRealTime();
  benchmark::RegisterBenchmark(("one job after a sleep" + suffix).c_str(), oneJobAfterSleep<Pool>)
      ->UseRealTime()
      ->Iterations(500);
}

}  // namespace

int main(int count, char** arguments) {
  addBenchmarks<OurPool>("KOVASingletonThreadPool");
  addWaitBenchmarks<OurPool>("KOVASingletonThreadPool");
#ifdef KOVA_HAS_TBB
  // Its wait runs the job on the waiting thread: that is other work than waiting for a worker.
  addBenchmarks<TbbPool>("tbb");
#endif
#ifdef KOVA_HAS_BOOST
  addBenchmarks<AsioPool>("boost::asio::thread_pool");
  addWaitBenchmarks<AsioPool>("boost::asio::thread_pool");
#endif
#ifdef KOVA_HAS_QT
  addBenchmarks<QtPool>("QThreadPool");
  addWaitBenchmarks<QtPool>("QThreadPool");
#endif
  benchmark::RegisterBenchmark("1,000 jobs of 100 us/two plain loops", longLoops)
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
