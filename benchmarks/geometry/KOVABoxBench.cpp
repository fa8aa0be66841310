// The bounding box of many points in space, all at once and point by point; a copy of the same
// bytes as the floor.

#include "kovabase/geometry/KOVABox.h"

#ifdef KOVA_HAS_EIGEN
#include <Eigen/Geometry>
#endif
#ifdef KOVA_HAS_OCCT
#include <Bnd_Box.hxx>
#include <gp_Pnt.hxx>
#endif

#include <benchmark/benchmark.h>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

template <class T>
std::vector<T> makeCoordinates(std::size_t points) {
  std::mt19937 random(1);
  std::uniform_real_distribution<T> any(T(-1000), T(1000));
  std::vector<T> coordinates(3 * points);
  for (T& coordinate : coordinates) coordinate = any(random);
  return coordinates;
}

template <class T>
void boxOfAll(benchmark::State& state, std::size_t points) {
  const std::vector<T> coordinates = makeCoordinates<T>(points);
  for (auto _ : state) {
    KOVABox3D box;
    box.Extend(coordinates.data(), points);
    benchmark::DoNotOptimize(box);
  }
}

template <class T>
void copyOfAll(benchmark::State& state, std::size_t points) {
  const std::vector<T> coordinates = makeCoordinates<T>(points);
  std::vector<T> copy(coordinates.size());
  for (auto _ : state) {
    std::memcpy(copy.data(), coordinates.data(), coordinates.size() * sizeof(T));
    benchmark::ClobberMemory();
  }
}

void boxOfEach(benchmark::State& state, std::size_t count) {
  const std::vector<double> coordinates = makeCoordinates<double>(count);
  std::vector<KOVAPoint3D> points;
  for (std::size_t i = 0; i < count; ++i) points.emplace_back(&coordinates[3 * i]);
  for (auto _ : state) {
    KOVABox3D box;
    for (const KOVAPoint3D& point : points) box.Extend(point);
    benchmark::DoNotOptimize(box);
  }
}

#ifdef KOVA_HAS_EIGEN
template <class T>
void eigenReduction(benchmark::State& state, std::size_t points) {
  const std::vector<T> coordinates = makeCoordinates<T>(points);
  const Eigen::Map<const Eigen::Matrix<T, 3, Eigen::Dynamic>> map(
      coordinates.data(), 3, static_cast<Eigen::Index>(points));
  for (auto _ : state) {
    Eigen::AlignedBox<T, 3> box(map.rowwise().minCoeff(), map.rowwise().maxCoeff());
    benchmark::DoNotOptimize(box);
  }
}

template <class T>
void eigenExtend(benchmark::State& state, std::size_t count) {
  const std::vector<T> coordinates = makeCoordinates<T>(count);
  std::vector<Eigen::Matrix<T, 3, 1>> points;
  for (std::size_t i = 0; i < count; ++i) {
    points.emplace_back(Eigen::Map<const Eigen::Matrix<T, 3, 1>>(&coordinates[3 * i]));
  }
  for (auto _ : state) {
    Eigen::AlignedBox<T, 3> box;
    for (const auto& point : points) box.extend(point);
    benchmark::DoNotOptimize(box);
  }
}
#endif

#ifdef KOVA_HAS_OCCT
void occtAdd(benchmark::State& state, std::size_t count) {
  const std::vector<double> coordinates = makeCoordinates<double>(count);
  std::vector<gp_Pnt> points;
  for (std::size_t i = 0; i < count; ++i) {
    points.emplace_back(coordinates[3 * i], coordinates[3 * i + 1], coordinates[3 * i + 2]);
  }
  for (auto _ : state) {
    Bnd_Box box;
    for (const gp_Pnt& point : points) box.Add(point);
    benchmark::DoNotOptimize(box);
  }
}
#endif

void addAll(std::size_t points, const std::string& size) {
  const auto add = [points](const std::string& name, auto* function) {
    benchmark::RegisterBenchmark(name.c_str(), function, points);
  };
  const std::string doubles = "box of " + size + " points, double/";
  add(doubles + "KOVABox3D", boxOfAll<double>);
  add("copy of " + size + " points, double/memcpy", copyOfAll<double>);
  const std::string floats = "box of " + size + " points, float/";
  add(floats + "KOVABox3D", boxOfAll<float>);
  add("copy of " + size + " points, float/memcpy", copyOfAll<float>);
  const std::string single = "box point by point, " + size + "/";
  add(single + "KOVABox3D", boxOfEach);
#ifdef KOVA_HAS_EIGEN
  add(doubles + "Eigen minCoeff", eigenReduction<double>);
  add(doubles + "Eigen AlignedBox", eigenExtend<double>);
  add(floats + "Eigen minCoeff", eigenReduction<float>);
  add(floats + "Eigen AlignedBox", eigenExtend<float>);
  add(single + "Eigen AlignedBox", eigenExtend<double>);
#endif
#ifdef KOVA_HAS_OCCT
  add(doubles + "Bnd_Box", occtAdd);
  add(single + "Bnd_Box", occtAdd);
#endif
}

}  // namespace

int main(int argc, char** argv) {
  addAll(1000, "1k");
  addAll(1000000, "1M");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
