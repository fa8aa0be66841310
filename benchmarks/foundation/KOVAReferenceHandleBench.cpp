// A counted handle beside other counted pointers: copy it and destroy the copy.

#include "kovabase/foundation/KOVAReferenceHandle.h"

#include <benchmark/benchmark.h>
#ifdef KOVA_HAS_BOOST
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#endif

#include <memory>
#include <thread>

namespace {

struct Target : KOVAReferenceCount {
  int value = 0;
};

struct PlainTarget {
  int value = 0;
};

#ifdef KOVA_HAS_BOOST
struct BoostTarget : boost::intrusive_ref_counter<BoostTarget, boost::thread_safe_counter> {
  virtual ~BoostTarget() = default;
  int value = 0;
};
#endif

template <class Handle>
void copyAndDestroy(benchmark::State& state, const Handle& handle) {
  for (auto _ : state) {
    const Handle copy(handle);
    benchmark::DoNotOptimize(&copy);
  }
}

template <class Handle>
void assign(benchmark::State& state, const Handle& first, const Handle& second) {
  Handle handle(first);
  for (auto _ : state) {
    handle = second;
    benchmark::DoNotOptimize(&handle);
    handle = first;
    benchmark::DoNotOptimize(&handle);
  }
}

using Handle = KOVATypedHandle<Target>;

void copyHandle(benchmark::State& state) { copyAndDestroy(state, Handle(new Target)); }
void copyShared(benchmark::State& state) { copyAndDestroy(state, std::make_shared<PlainTarget>()); }
void assignHandle(benchmark::State& state) {
  assign(state, Handle(new Target), Handle(new Target));
}
void assignShared(benchmark::State& state) {
  assign(state, std::make_shared<PlainTarget>(), std::make_shared<PlainTarget>());
}

BENCHMARK(copyHandle)->Name("copy and destroy/KOVATypedHandle");
BENCHMARK(copyShared)->Name("copy and destroy/std::shared_ptr");
BENCHMARK(assignHandle)->Name("assign/KOVATypedHandle");
BENCHMARK(assignShared)->Name("assign/std::shared_ptr");

#ifdef KOVA_HAS_BOOST
using BoostHandle = boost::intrusive_ptr<BoostTarget>;

void copyBoost(benchmark::State& state) { copyAndDestroy(state, BoostHandle(new BoostTarget)); }
void assignBoost(benchmark::State& state) {
  assign(state, BoostHandle(new BoostTarget), BoostHandle(new BoostTarget));
}

BENCHMARK(copyBoost)->Name("copy and destroy/boost::intrusive_ptr");
BENCHMARK(assignBoost)->Name("assign/boost::intrusive_ptr");
#endif

}  // namespace

int main(int count, char** arguments) {
  // std::shared_ptr counts without interlocking until the process has had a second thread.
  std::thread([] {}).join();
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
