// The locks beside those of the standard library: take one and give it back.

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/concurrency/KOVAReadersWritersLock.h"

#include <benchmark/benchmark.h>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace {

template <class Mutex>
void lockAndUnlock(benchmark::State& state) {
  static Mutex mutex;
  for (auto _ : state) {
    const std::lock_guard guard(mutex);
    benchmark::ClobberMemory();
  }
}

void acquireAndRelease(benchmark::State& state) {
  static KOVAMutex mutex;
  for (auto _ : state) {
    const KOVAMutex::LockGuard_t guard(mutex);
    benchmark::ClobberMemory();
  }
}

void readLock(benchmark::State& state) {
  static KOVAReadersWritersLock lock;
  for (auto _ : state) {
    const KOVAReadersWritersLock::ReaderGuard_t guard(lock);
    benchmark::ClobberMemory();
  }
}

void writeLock(benchmark::State& state) {
  static KOVAReadersWritersLock lock;
  for (auto _ : state) {
    const KOVAReadersWritersLock::WriterGuard_t guard(lock);
    benchmark::ClobberMemory();
  }
}

void sharedLock(benchmark::State& state) {
  static std::shared_mutex lock;
  for (auto _ : state) {
    const std::shared_lock guard(lock);
    benchmark::ClobberMemory();
  }
}

BENCHMARK(acquireAndRelease)->Name("mutex/KOVAMutex");
BENCHMARK(lockAndUnlock<std::recursive_mutex>)->Name("mutex/std::recursive_mutex");
BENCHMARK(lockAndUnlock<std::mutex>)->Name("mutex/std::mutex");
BENCHMARK(acquireAndRelease)->Name("contended mutex/KOVAMutex")->Threads(2)->UseRealTime();
BENCHMARK(lockAndUnlock<std::recursive_mutex>)
    ->Name("contended mutex/std::recursive_mutex")
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(readLock)->Name("read lock/KOVAReadersWritersLock");
BENCHMARK(sharedLock)->Name("read lock/std::shared_mutex");
BENCHMARK(readLock)->Name("read lock of two/KOVAReadersWritersLock")->Threads(2)->UseRealTime();
BENCHMARK(sharedLock)->Name("read lock of two/std::shared_mutex")->Threads(2)->UseRealTime();
BENCHMARK(writeLock)->Name("write lock/KOVAReadersWritersLock");
BENCHMARK(lockAndUnlock<std::shared_mutex>)->Name("write lock/std::shared_mutex");

}  // namespace

int main(int count, char** arguments) {
  // Until a process has had a second thread, the runtime's mutexes leave their interlocking out.
  std::thread([] {}).join();
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
