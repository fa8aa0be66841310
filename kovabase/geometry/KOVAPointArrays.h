#pragma once

#include "kovabase/foundation/KOVAExport.h"

#include <cstddef>

class KOVA4x4Matrix;
class KOVAAffine;
class KOVAMorph;

/// Transforms of whole arrays of points, coordinates side by side: x y z x y z ... in space,
/// x y x y ... in a plane, as the dimension of the transform tells.
///
/// @param points  `count` points; null does nothing.
/// @param result  room for `count` points; null does nothing. It may be `points`, to transform in
///   place, and it may overlap it in any way: the points are then lost where it does.
///
/// Each result is bit for bit that of the form for one point, whatever the processor (the payload
/// of a NaN is left open): the same operations in the same order.

/// As `KOVAPoint2D::Transform` or `KOVAPoint3D::Transform`. Floats are widened, transformed and
/// rounded once.
KOVABASE_API void KOVATransformPoints(const double* points, double* result, std::size_t count,
                                      const KOVAMorph& morph, bool noTranslation = false);
KOVABASE_API void KOVATransformPoints(const float* points, float* result, std::size_t count,
                                      const KOVAMorph& morph, bool noTranslation = false);

/// As `KOVAPoint2D::Transform` or `KOVAPoint3D::Transform`. Floats are widened, transformed and
/// rounded once.
KOVABASE_API void KOVATransformPoints(const double* points, double* result, std::size_t count,
                                      const KOVAAffine& affine);
KOVABASE_API void KOVATransformPoints(const float* points, float* result, std::size_t count,
                                      const KOVAAffine& affine);

/// As the product with a KOVAPoint3D (in double precision) or a KOVAPointf (in single precision);
/// with `noTranslation` that of floats is the product with a KOVAVectorf.
KOVABASE_API void KOVATransformPoints(const double* points, double* result, std::size_t count,
                                      const KOVA4x4Matrix& matrix, bool noTranslation = false);
KOVABASE_API void KOVATransformPoints(const float* points, float* result, std::size_t count,
                                      const KOVA4x4Matrix& matrix, bool noTranslation = false);
