// Placements and matrices beside those of other libraries: points one by one and in arrays, and
// placements composed and inverted. The arrays of one work hold the same coordinates.

#include "kovabase/geometry/KOVA4x4Matrix.h"
#include "kovabase/geometry/KOVAAffine3D.h"
#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/geometry/KOVAPoint3D.h"
#include "kovabase/geometry/KOVAPointArrays.h"

#include <benchmark/benchmark.h>
#ifdef KOVA_HAS_EIGEN
#include <Eigen/Geometry>
#endif
#ifdef KOVA_HAS_GLM
#include <glm/glm.hpp>
#endif
#ifdef KOVA_HAS_OCCT
#include <gp_Ax1.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#endif
#ifdef KOVA_HAS_QT
#include <QMatrix4x4>
#include <QVector3D>
#endif

#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

constexpr int kPlacements = 1000;
constexpr double kScale = 25.4;

// A turn about the axis (2, 3, 6) / 7, row by row, and a shift that differs from call to call.
struct Placement {
  explicit Placement(int seed) {
    const double angle = 0.001 * (seed + 1);
    const double axis[3] = {2.0 / 7.0, 3.0 / 7.0, 6.0 / 7.0};
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    for (int row = 0; row < 3; ++row) {
      for (int column = 0; column < 3; ++column) {
        turn[3 * row + column] = (1.0 - c) * axis[row] * axis[column];
      }
      turn[4 * row] += c;
    }
    for (int row = 0; row < 3; ++row) {
      const int next = (row + 1) % 3;
      const int last = (row + 2) % 3;
      turn[3 * next + row] += s * axis[last];
      turn[3 * row + next] -= s * axis[last];
    }
    for (int i = 0; i < 3; ++i) shift[i] = 0.25 * (seed % 17 + i);
  }

  double turn[9];
  double shift[3];
};

template <typename T>
std::vector<T> makeCoordinates(std::size_t points) {
  std::vector<T> coordinates(3 * points);
  for (std::size_t i = 0; i < coordinates.size(); ++i) {
    coordinates[i] = static_cast<T>(static_cast<double>(i % 1009) * 0.37 - 150.0);
  }
  return coordinates;
}

KOVAMorph3D makeMorph(int seed, double scale) {
  const Placement placement(seed);
  KOVAAffine3D linear;
  for (int row = 0; row < 3; ++row) linear.SetRow(row, placement.turn + 3 * row);
  return KOVAMorph3D(linear, KOVAPoint3D(placement.shift), scale);
}

// Column order, as all display matrices have it.
template <typename T>
std::vector<T> makeMatrix() {
  const Placement placement(400);
  std::vector<T> matrix(16);
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      matrix[4 * column + row] = static_cast<T>(placement.turn[3 * row + column]);
    }
    matrix[12 + row] = static_cast<T>(placement.shift[row]);
  }
  matrix[15] = 1;
  return matrix;
}

// One point after another, in place. The transforms: a turn and a shift.

void onePointOurs(benchmark::State& state, std::size_t count) {
  const auto coordinates = makeCoordinates<double>(count);
  std::vector<KOVAPoint3D> points;
  for (std::size_t i = 0; i < coordinates.size(); i += 3) points.emplace_back(&coordinates[i]);
  const KOVAMorph3D morph = makeMorph(400, 1.0);
  for (auto _ : state) {
    for (KOVAPoint3D& point : points) point.Transform(morph);
    benchmark::ClobberMemory();
  }
}

void onePointLoose(benchmark::State& state, std::size_t count) {
  auto coordinates = makeCoordinates<double>(count);
  const KOVAMorph3D morph = makeMorph(400, 1.0);
  for (auto _ : state) {
    for (std::size_t i = 0; i < coordinates.size(); i += 3) {
      Transform(coordinates[i], coordinates[i + 1], coordinates[i + 2], morph);
    }
    benchmark::ClobberMemory();
  }
}

// Whole arrays, into another array.

template <typename T>
void arrayByMorph(benchmark::State& state, std::size_t count) {
  const auto points = makeCoordinates<T>(count);
  std::vector<T> result(points.size());
  const KOVAMorph3D morph = makeMorph(400, 1.0);
  for (auto _ : state) {
    KOVATransformPoints(points.data(), result.data(), count, morph);
    benchmark::ClobberMemory();
  }
}

void arrayByMorphInPlace(benchmark::State& state, std::size_t count) {
  auto points = makeCoordinates<double>(count);
  const KOVAMorph3D morph = makeMorph(400, 1.0);
  for (auto _ : state) {
    KOVATransformPoints(points.data(), points.data(), count, morph);
    benchmark::ClobberMemory();
  }
}

void arrayByMatrix(benchmark::State& state, std::size_t count) {
  const auto points = makeCoordinates<float>(count);
  std::vector<float> result(points.size());
  const KOVA4x4Matrix matrix(makeMatrix<float>().data());
  for (auto _ : state) {
    KOVATransformPoints(points.data(), result.data(), count, matrix);
    benchmark::ClobberMemory();
  }
}

template <typename T>
void copyArray(benchmark::State& state, std::size_t count) {
  const auto points = makeCoordinates<T>(count);
  std::vector<T> result(points.size());
  for (auto _ : state) {
    std::memcpy(result.data(), points.data(), points.size() * sizeof(T));
    benchmark::ClobberMemory();
  }
}

// Placements, into other placements: a turn, a scale and a shift.

std::vector<KOVAMorph3D> makeMorphs() {
  std::vector<KOVAMorph3D> morphs;
  for (int i = 0; i < kPlacements; ++i) morphs.push_back(makeMorph(i, kScale));
  return morphs;
}

void composeOurs(benchmark::State& state) {
  const std::vector<KOVAMorph3D> morphs = makeMorphs();
  const KOVAMorph3D other = makeMorph(400, kScale);
  std::vector<KOVAMorph3D> results(morphs.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < morphs.size(); ++i) morphs[i].Multiply(other, results[i]);
    benchmark::ClobberMemory();
  }
}

void composeOursByValue(benchmark::State& state) {
  const std::vector<KOVAMorph3D> morphs = makeMorphs();
  const KOVAMorph3D other = makeMorph(400, kScale);
  std::vector<KOVAMorph3D> results(morphs.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < morphs.size(); ++i) results[i] = morphs[i].multiply(other);
    benchmark::ClobberMemory();
  }
}

void invertOurs(benchmark::State& state) {
  const std::vector<KOVAMorph3D> morphs = makeMorphs();
  std::vector<KOVAMorph3D> results(morphs.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < morphs.size(); ++i) morphs[i].Inverse(results[i]);
    benchmark::ClobberMemory();
  }
}

void invertOursByValue(benchmark::State& state) {
  const std::vector<KOVAMorph3D> morphs = makeMorphs();
  std::vector<KOVAMorph3D> results(morphs.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < morphs.size(); ++i) results[i] = morphs[i].inverse();
    benchmark::ClobberMemory();
  }
}

#ifdef KOVA_HAS_OCCT
gp_Trsf makeTrsf(int seed, double scale) {
  const Placement placement(seed);
  gp_Trsf trsf;
  trsf.SetRotation(gp_Ax1(gp_Pnt(0.0, 0.0, 0.0), gp_Dir(2.0, 3.0, 6.0)), 0.001 * (seed + 1));
  trsf.SetTranslationPart(gp_Vec(placement.shift[0], placement.shift[1], placement.shift[2]));
  if (scale != 1.0) trsf.SetScaleFactor(scale);
  return trsf;
}

void onePointOcct(benchmark::State& state, std::size_t count) {
  const auto coordinates = makeCoordinates<double>(count);
  std::vector<gp_Pnt> points;
  for (std::size_t i = 0; i < coordinates.size(); i += 3) {
    points.emplace_back(coordinates[i], coordinates[i + 1], coordinates[i + 2]);
  }
  const gp_Trsf trsf = makeTrsf(400, 1.0);
  for (auto _ : state) {
    for (gp_Pnt& point : points) point.Transform(trsf);
    benchmark::ClobberMemory();
  }
}

std::vector<gp_Trsf> makeTrsfs() {
  std::vector<gp_Trsf> trsfs;
  for (int i = 0; i < kPlacements; ++i) trsfs.push_back(makeTrsf(i, kScale));
  return trsfs;
}

void composeOcct(benchmark::State& state) {
  const std::vector<gp_Trsf> trsfs = makeTrsfs();
  const gp_Trsf other = makeTrsf(400, kScale);
  std::vector<gp_Trsf> results(trsfs.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < trsfs.size(); ++i) results[i] = other * trsfs[i];
    benchmark::ClobberMemory();
  }
}

void invertOcct(benchmark::State& state) {
  const std::vector<gp_Trsf> trsfs = makeTrsfs();
  std::vector<gp_Trsf> results(trsfs.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < trsfs.size(); ++i) results[i] = trsfs[i].Inverted();
    benchmark::ClobberMemory();
  }
}
#endif

#ifdef KOVA_HAS_GLM
template <typename T>
using GlmMatrix = glm::mat<4, 4, T>;

template <typename T>
GlmMatrix<T> makeGlmMatrix() {
  const std::vector<T> entries = makeMatrix<T>();
  GlmMatrix<T> matrix;
  std::memcpy(static_cast<void*>(&matrix), entries.data(), sizeof(matrix));
  return matrix;
}

template <typename T>
void arrayGlm(benchmark::State& state, std::size_t count) {
  const auto coordinates = makeCoordinates<T>(count);
  std::vector<glm::vec<3, T>> points(count);
  std::memcpy(static_cast<void*>(points.data()), coordinates.data(), count * sizeof(points[0]));
  std::vector<glm::vec<3, T>> result(count);
  const GlmMatrix<T> matrix = makeGlmMatrix<T>();
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) {
      result[i] = glm::vec<3, T>(matrix * glm::vec<4, T>(points[i], T(1)));
    }
    benchmark::ClobberMemory();
  }
}
#endif

#ifdef KOVA_HAS_EIGEN
template <typename T>
Eigen::Transform<T, 3, Eigen::AffineCompact> makeEigenTransform(int seed, double scale) {
  const Placement placement(seed);
  Eigen::Transform<T, 3, Eigen::AffineCompact> transform;
  transform.linear() =
      (scale * Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(placement.turn))
          .template cast<T>();
  transform.translation() = Eigen::Map<const Eigen::Vector3d>(placement.shift).template cast<T>();
  return transform;
}

template <typename T>
void arrayEigen(benchmark::State& state, std::size_t count) {
  const auto coordinates = makeCoordinates<T>(count);
  std::vector<T> result(coordinates.size());
  const auto transform = makeEigenTransform<T>(400, 1.0);
  using Points = Eigen::Matrix<T, 3, Eigen::Dynamic>;
  const Eigen::Map<const Points> points(coordinates.data(), 3, static_cast<Eigen::Index>(count));
  Eigen::Map<Points> results(result.data(), 3, static_cast<Eigen::Index>(count));
  for (auto _ : state) {
    results.noalias() = transform.linear() * points;
    results.colwise() += transform.translation();
    benchmark::ClobberMemory();
  }
}

void composeEigen(benchmark::State& state) {
  using Transform = Eigen::Transform<double, 3, Eigen::AffineCompact>;
  std::vector<Transform> transforms;
  for (int i = 0; i < kPlacements; ++i) transforms.push_back(makeEigenTransform<double>(i, kScale));
  const Transform other = makeEigenTransform<double>(400, kScale);
  std::vector<Transform> results(transforms.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < transforms.size(); ++i) results[i] = other * transforms[i];
    benchmark::ClobberMemory();
  }
}

void invertEigen(benchmark::State& state) {
  using Transform = Eigen::Transform<double, 3, Eigen::AffineCompact>;
  std::vector<Transform> transforms;
  for (int i = 0; i < kPlacements; ++i) transforms.push_back(makeEigenTransform<double>(i, kScale));
  std::vector<Transform> results(transforms.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < transforms.size(); ++i) {
      results[i] = transforms[i].inverse(Eigen::Affine);
    }
    benchmark::ClobberMemory();
  }
}
#endif

#ifdef KOVA_HAS_QT
void arrayQt(benchmark::State& state, std::size_t count) {
  const auto coordinates = makeCoordinates<float>(count);
  std::vector<QVector3D> points(count);
  for (std::size_t i = 0; i < count; ++i) {
    points[i] = QVector3D(coordinates[3 * i], coordinates[3 * i + 1], coordinates[3 * i + 2]);
  }
  std::vector<QVector3D> result(count);
  const QMatrix4x4 matrix = QMatrix4x4(makeMatrix<float>().data()).transposed();
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) result[i] = matrix.map(points[i]);
    benchmark::ClobberMemory();
  }
}
#endif

using Function = void (*)(benchmark::State&, std::size_t);

// "<work>/<who>/1k" and "<work>/<who>/1M".
void addSizes(const std::string& name, Function function) {
  benchmark::RegisterBenchmark((name + "/1k").c_str(), function, 1000);
  benchmark::RegisterBenchmark((name + "/1M").c_str(), function, 1'000'000);
}

}  // namespace

int main(int argc, char** argv) {
  addSizes("transform one by one/KOVAPoint3D", onePointOurs);
  addSizes("transform one by one/KOVAMorph3D on loose coordinates", onePointLoose);
#ifdef KOVA_HAS_OCCT
  addSizes("transform one by one/gp_Pnt", onePointOcct);
#endif
  addSizes("transform doubles/KOVATransformPoints", arrayByMorph<double>);
  addSizes("transform doubles/KOVATransformPoints in place", arrayByMorphInPlace);
#ifdef KOVA_HAS_GLM
  addSizes("transform doubles/glm", arrayGlm<double>);
#endif
#ifdef KOVA_HAS_EIGEN
  addSizes("transform doubles/Eigen", arrayEigen<double>);
#endif
  addSizes("copy doubles/memcpy", copyArray<double>);
  addSizes("transform floats by 4x4/KOVATransformPoints", arrayByMatrix);
#ifdef KOVA_HAS_GLM
  addSizes("transform floats by 4x4/glm", arrayGlm<float>);
#endif
#ifdef KOVA_HAS_EIGEN
  addSizes("transform floats by 4x4/Eigen", arrayEigen<float>);
#endif
#ifdef KOVA_HAS_QT
  addSizes("transform floats by 4x4/QMatrix4x4", arrayQt);
#endif
  addSizes("copy floats/memcpy", copyArray<float>);
  addSizes("transform floats by a morph/KOVATransformPoints", arrayByMorph<float>);
  benchmark::RegisterBenchmark("compose placements/KOVAMorph3D::Multiply", composeOurs);
  benchmark::RegisterBenchmark("compose placements/KOVAMorph3D::multiply", composeOursByValue);
#ifdef KOVA_HAS_OCCT
  benchmark::RegisterBenchmark("compose placements/gp_Trsf", composeOcct);
#endif
#ifdef KOVA_HAS_EIGEN
  benchmark::RegisterBenchmark("compose placements/Eigen", composeEigen);
#endif
  benchmark::RegisterBenchmark("invert placements/KOVAMorph3D::Inverse", invertOurs);
  benchmark::RegisterBenchmark("invert placements/KOVAMorph3D::inverse", invertOursByValue);
#ifdef KOVA_HAS_OCCT
  benchmark::RegisterBenchmark("invert placements/gp_Trsf", invertOcct);
#endif
#ifdef KOVA_HAS_EIGEN
  benchmark::RegisterBenchmark("invert placements/Eigen", invertEigen);
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
