#include "kovabase/geometry/KOVAPointArrays.h"

#include "kovabase/geometry/KOVA4x4Matrix.h"
#include "kovabase/geometry/KOVAAffine.h"
#include "kovabase/geometry/KOVAMorph.h"
#include "kovabase/geometry/KOVAPoint.h"
#include "kovabase/geometry/internal/PointKernels.h"

#include <algorithm>
#include <cstring>
#include <functional>

// The kernels are compiled twice, for every x86-64 processor and for those with AVX2. Neither has
// fused operations, so that both give the same bits.
#if defined(__x86_64__)
#define KOVA_AVX2_KERNELS 1
#else
#define KOVA_AVX2_KERNELS 0
#endif

using kova::internal::Kind;
using kova::internal::Parts;
using kova::internal::transformInLanes;
using kova::internal::transformOneByOne;

namespace {

#if KOVA_AVX2_KERNELS
template <Kind kind, typename T, typename Coordinate>
__attribute__((target("avx2"))) void transformWithAvx2(const Parts<T>& parts,
                                                       const Coordinate* points, Coordinate* result,
                                                       std::size_t count) {
  transformInLanes<kind, 32 / sizeof(T)>(parts, points, result, count);
}

bool hasAvx2() { return __builtin_cpu_supports("avx2") != 0; }
#endif

template <Kind kind, typename T, typename Coordinate>
void transformSpace(const Parts<T>& parts, const Coordinate* points, Coordinate* result,
                    std::size_t count) {
#if KOVA_AVX2_KERNELS
  if (hasAvx2()) return transformWithAvx2<kind>(parts, points, result, count);
#endif
  transformInLanes<kind, 16 / sizeof(Coordinate)>(parts, points, result, count);
}

template <Kind kind, typename T, typename Coordinate>
void transformPlane(const Parts<T>& parts, const Coordinate* points, Coordinate* result,
                    std::size_t count) {
  transformOneByOne<kind, 2>(parts, points, result, count);
}

// Groups of points are loaded before they are stored, so that in place needs no care. Other
// overlaps become that.
template <typename Coordinate>
const Coordinate* moveOverlap(const Coordinate* points, Coordinate* result, std::size_t values) {
  const std::less<const Coordinate*> isBelow;
  if (points == result || !isBelow(points, result + values) || !isBelow(result, points + values)) {
    return points;
  }
  std::memmove(result, points, values * sizeof(Coordinate));
  return result;
}

template <typename Coordinate>
void transformByMorph(const Coordinate* points, Coordinate* result, std::size_t count,
                      const KOVAMorph& morph, bool noTranslation) {
  if (points == nullptr || result == nullptr || count == 0) return;
  const int dimension = morph.GetDimension();
  const std::size_t values = count * static_cast<std::size_t>(dimension);
  const bool isTranslation = !noTranslation && morph.isTranslation();
  if (!morph.isAffine() && !morph.isScale() && !isTranslation) {
    if (points != result) std::memmove(result, points, values * sizeof(Coordinate));
    return;
  }
  points = moveOverlap(points, result, values);
  Parts<double> parts;
  std::copy_n(morph.GetAffine().GetElements(), dimension * dimension, parts.matrix);
  parts.scale = morph.GetScale();
  if (isTranslation) {
    std::copy_n(morph.GetTranslation().GetStoredCoordinates(), dimension, parts.translation);
  }
  const auto run = [&]<Kind kind>() {
    if (dimension == 2) {
      transformPlane<kind>(parts, points, result, count);
    } else {
      transformSpace<kind>(parts, points, result, count);
    }
  };
  if (!morph.isAffine()) {
    run.template operator()<Kind::kScaleAndTranslation>();
  } else if (!morph.isScale()) {
    run.template operator()<Kind::kLinear>();
  } else {
    run.template operator()<Kind::kScaledLinear>();
  }
}

template <typename Coordinate>
void transformByAffine(const Coordinate* points, Coordinate* result, std::size_t count,
                       const KOVAAffine& affine) {
  if (points == nullptr || result == nullptr || count == 0) return;
  const int dimension = affine.GetDimension();
  points = moveOverlap(points, result, count * static_cast<std::size_t>(dimension));
  Parts<double> parts;
  std::copy_n(affine.GetElements(), dimension * dimension, parts.matrix);
  if (dimension == 2) {
    transformPlane<Kind::kLinear>(parts, points, result, count);
  } else {
    transformSpace<Kind::kLinear>(parts, points, result, count);
  }
}

// Computes in the precision of the coordinates.
template <typename Coordinate>
void transformByMatrix(const Coordinate* points, Coordinate* result, std::size_t count,
                       const KOVA4x4Matrix& matrix, bool noTranslation) {
  if (points == nullptr || result == nullptr || count == 0) return;
  points = moveOverlap(points, result, 3 * count);
  Parts<Coordinate> parts;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      parts.matrix[3 * column + row] = matrix[4 * column + row];
    }
    if (!noTranslation) parts.translation[row] = matrix[12 + row];
  }
  transformSpace<Kind::kLinear>(parts, points, result, count);
}

}  // namespace

void KOVATransformPoints(const double* points, double* result, std::size_t count,
                         const KOVAMorph& morph, bool noTranslation) {
  transformByMorph(points, result, count, morph, noTranslation);
}

void KOVATransformPoints(const float* points, float* result, std::size_t count,
                         const KOVAMorph& morph, bool noTranslation) {
  transformByMorph(points, result, count, morph, noTranslation);
}

void KOVATransformPoints(const double* points, double* result, std::size_t count,
                         const KOVAAffine& affine) {
  transformByAffine(points, result, count, affine);
}

void KOVATransformPoints(const float* points, float* result, std::size_t count,
                         const KOVAAffine& affine) {
  transformByAffine(points, result, count, affine);
}

void KOVATransformPoints(const double* points, double* result, std::size_t count,
                         const KOVA4x4Matrix& matrix, bool noTranslation) {
  transformByMatrix(points, result, count, matrix, noTranslation);
}

void KOVATransformPoints(const float* points, float* result, std::size_t count,
                         const KOVA4x4Matrix& matrix, bool noTranslation) {
  transformByMatrix(points, result, count, matrix, noTranslation);
}
