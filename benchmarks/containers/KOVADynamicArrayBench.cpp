// The array beside std::vector and QList: the same elements, one after the other.

#include "kovabase/containers/KOVADynamicArray.h"

#include <benchmark/benchmark.h>
#ifdef KOVA_HAS_QT
#include <QList>
#endif

#include <vector>

namespace {

constexpr int kMany = 1'000'000;

struct Point {
  explicit Point(int i) : x(i), y(i + 1), z(i + 2) {}
  double x, y, z;
};
static_assert(sizeof(Point) == 24);

void add(KOVADynamicArray<int>& array, int value) { array.add(value); }
void add(KOVADynamicArray<Point>& array, int value) { array.add(Point(value)); }

template <class Container>
void add(Container& container, int value) {
  container.push_back(typename Container::value_type(value));
}

template <class Container, int count>
void addElements(benchmark::State& state) {
  for (auto _ : state) {
    Container container;
    for (int i = 0; i < count; ++i) add(container, i);
    benchmark::DoNotOptimize(&container);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * count);
}

template <class Container>
void iterate(benchmark::State& state) {
  Container container;
  for (int i = 0; i < kMany; ++i) add(container, i);
  const Container& elements = container;
  for (auto _ : state) {
    int sum = 0;
    for (const int element : elements) sum += element & 7;
    benchmark::DoNotOptimize(sum);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kMany);
}

BENCHMARK(addElements<KOVADynamicArray<int>, kMany>)->Name("add 1M ints/KOVADynamicArray");
BENCHMARK(addElements<std::vector<int>, kMany>)->Name("add 1M ints/std::vector");
BENCHMARK(addElements<KOVADynamicArray<Point>, kMany>)->Name("add 1M of 24 bytes/KOVADynamicArray");
BENCHMARK(addElements<std::vector<Point>, kMany>)->Name("add 1M of 24 bytes/std::vector");
BENCHMARK(addElements<KOVADynamicArray<int>, 10>)->Name("add 10 ints/KOVADynamicArray");
BENCHMARK(addElements<std::vector<int>, 10>)->Name("add 10 ints/std::vector");
BENCHMARK(iterate<KOVADynamicArray<int>>)->Name("iterate 1M ints/KOVADynamicArray");
BENCHMARK(iterate<std::vector<int>>)->Name("iterate 1M ints/std::vector");
#ifdef KOVA_HAS_QT
BENCHMARK(addElements<QList<int>, kMany>)->Name("add 1M ints/QList");
BENCHMARK(addElements<QList<Point>, kMany>)->Name("add 1M of 24 bytes/QList");
BENCHMARK(addElements<QList<int>, 10>)->Name("add 10 ints/QList");
BENCHMARK(iterate<QList<int>>)->Name("iterate 1M ints/QList");
#endif

}  // namespace

BENCHMARK_MAIN();
