#pragma once

#include <cmath>

/// The arithmetic that affines, morphs and arrays of points share. Matrices are n by n doubles in
/// column order: row r, column c is entry n * c + r. Every result is computed by the same
/// operations in the same order wherever it is asked for, so that single and batch forms agree bit
/// for bit.
namespace kova::internal {

/// Written out, here and below, because arrays whose indices are constants stay in registers.
template <int n>
inline void copyMatrix(const double* matrix, double* copy) {
  copy[0] = matrix[0];
  copy[1] = matrix[1];
  copy[2] = matrix[2];
  copy[3] = matrix[3];
  if constexpr (n == 3) {
    copy[4] = matrix[4];
    copy[5] = matrix[5];
    copy[6] = matrix[6];
    copy[7] = matrix[7];
    copy[8] = matrix[8];
  }
}

/// Exact. A loop that leaves at the first difference, which is mostly the first element.
template <int n>
inline bool isIdentityMatrix(const double* matrix) {
  for (int i = 0; i < n * n; ++i) {
    if (matrix[i] != (i % (n + 1) == 0 ? 1.0 : 0.0)) return false;
  }
  return true;
}

/// product = matrix * vector; `product` may be `vector`.
template <int n>
inline void multiplyVector(const double* matrix, const double* vector, double* product) {
  const double* const m = matrix;
  const double x = vector[0];
  const double y = vector[1];
  if constexpr (n == 2) {
    product[0] = m[0] * x + m[2] * y;
    product[1] = m[1] * x + m[3] * y;
  } else {
    const double z = vector[2];
    const double sums[3] = {m[0] * x + m[3] * y + m[6] * z, m[1] * x + m[4] * y + m[7] * z,
                            m[2] * x + m[5] * y + m[8] * z};
    product[0] = sums[0];
    product[1] = sums[1];
    product[2] = sums[2];
  }
}

/// product = left * right; `product` is neither of them.
template <int n>
inline void multiplyMatrices(const double* left, const double* right, double* product) {
  for (int column = 0; column < n; ++column) {
    multiplyVector<n>(left, right + n * column, product + n * column);
  }
}

/// Fills the transposed cofactors; `adjugate` is not `matrix`.
/// @return the determinant.
template <int n>
inline double computeAdjugate(const double* matrix, double* adjugate) {
  const double* const m = matrix;
  if constexpr (n == 2) {
    adjugate[0] = m[3];
    adjugate[1] = 0.0 - m[1];  // Not -0 for 0.
    adjugate[2] = 0.0 - m[2];
    adjugate[3] = m[0];
    return m[0] * m[3] - m[1] * m[2];
  } else {
    adjugate[0] = m[4] * m[8] - m[5] * m[7];
    adjugate[1] = m[2] * m[7] - m[1] * m[8];
    adjugate[2] = m[1] * m[5] - m[2] * m[4];
    adjugate[3] = m[5] * m[6] - m[3] * m[8];
    adjugate[4] = m[0] * m[8] - m[2] * m[6];
    adjugate[5] = m[2] * m[3] - m[0] * m[5];
    adjugate[6] = m[3] * m[7] - m[4] * m[6];
    adjugate[7] = m[1] * m[6] - m[0] * m[7];
    adjugate[8] = m[0] * m[4] - m[1] * m[3];
    return m[0] * adjugate[0] + m[1] * adjugate[3] + m[2] * adjugate[6];
  }
}

/// Two divisions for the time of one: the compiler does not see it by itself.
inline void dividePair(const double* values, double divisor, double* quotients) {
  typedef double Pair __attribute__((vector_size(16)));
  const Pair pair = Pair{values[0], values[1]} / Pair{divisor, divisor};
  quotients[0] = pair[0];
  quotients[1] = pair[1];
}

/// @param inverse  not `matrix`.
/// @return false, `inverse` undefined, when the determinant is 0 or not finite.
template <int n>
inline bool invertMatrix(const double* matrix, double* inverse) {
  double adjugate[9];
  const double determinant = computeAdjugate<n>(matrix, adjugate);
  if (determinant == 0.0 || !std::isfinite(determinant)) return false;
  dividePair(adjugate, determinant, inverse);
  dividePair(adjugate + 2, determinant, inverse + 2);
  if constexpr (n == 3) {
    dividePair(adjugate + 4, determinant, inverse + 4);
    dividePair(adjugate + 6, determinant, inverse + 6);
    inverse[8] = adjugate[8] / determinant;
  }
  return true;
}

/// Scale, then translation times `weight`. The scale is 1 when the morph has none, and changes
/// nothing then.
template <int n, bool isWeighted, class Morph>
inline void scaleAndTranslate(const Morph& morph, const double* point, double* result,
                              bool noTranslation, double weight) {
  const double scale = morph.GetScale();
  if (noTranslation || !morph.isTranslation()) {
    for (int i = 0; i < n; ++i) result[i] = point[i] * scale;
    return;
  }
  const double* const translation = morph.GetTranslation().GetStoredCoordinates();
  double sums[3];
  for (int i = 0; i < n; ++i) {
    sums[i] = point[i] * scale + (isWeighted ? weight * translation[i] : translation[i]);
  }
  for (int i = 0; i < n; ++i) result[i] = sums[i];
}

/// Linear part, then scale, then translation times `weight`, each only when the morph has it.
template <int n, bool isWeighted, class Morph>
inline void transformCoordinates(const Morph& morph, double* coordinates, bool noTranslation,
                                 double weight) {
  if (morph.isIdentity()) return;
  if (morph.isAffine()) {
    double point[3];
    multiplyVector<n>(morph.GetAffine().GetElements(), coordinates, point);
    scaleAndTranslate<n, isWeighted>(morph, point, coordinates, noTranslation, weight);
  } else {
    scaleAndTranslate<n, isWeighted>(morph, coordinates, coordinates, noTranslation, weight);
  }
}

}  // namespace kova::internal
