#pragma once

#include <cmath>

/// The arithmetic that affines, morphs and arrays of points share. Matrices are n by n doubles, row
/// by row. Every result is computed by the same operations in the same order wherever it is
/// asked for, so that single and batch forms agree bit for bit.
namespace kova::internal {

/// Exact.
template <int n>
inline bool isIdentityMatrix(const double* matrix) {
  for (int i = 0; i < n * n; ++i) {
    if (matrix[i] != (i % (n + 1) == 0 ? 1.0 : 0.0)) return false;
  }
  return true;
}

/// product = left * right; `product` is neither of them.
template <int n>
inline void multiplyMatrices(const double* left, const double* right, double* product) {
  for (int row = 0; row < n; ++row) {
    for (int column = 0; column < n; ++column) {
      double sum = left[row * n] * right[column];
      for (int k = 1; k < n; ++k) sum += left[row * n + k] * right[k * n + column];
      product[row * n + column] = sum;
    }
  }
}

/// product = matrix * vector; `product` may be `vector`.
template <int n, typename T>
inline void multiplyVector(const T* matrix, const T* vector, T* product) {
  T sums[3];
  for (int row = 0; row < n; ++row) {
    sums[row] = matrix[row * n] * vector[0];
    for (int k = 1; k < n; ++k) sums[row] += matrix[row * n + k] * vector[k];
  }
  for (int row = 0; row < n; ++row) product[row] = sums[row];
}

/// Fills the transposed cofactors; `adjugate` is not `matrix`.
/// @return the determinant.
template <int n>
inline double computeAdjugate(const double* matrix, double* adjugate) {
  const double* const m = matrix;
  if constexpr (n == 2) {
    adjugate[0] = m[3];
    adjugate[1] = -m[1];
    adjugate[2] = -m[2];
    adjugate[3] = m[0];
    return m[0] * m[3] - m[1] * m[2];
  } else {
    static_assert(n == 3);
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

/// @return false, `inverse` undefined, when the determinant is 0 or not finite.
template <int n>
inline bool invertMatrix(const double* matrix, double* inverse) {
  const double determinant = computeAdjugate<n>(matrix, inverse);
  if (determinant == 0.0 || !std::isfinite(determinant)) return false;
  for (int i = 0; i < n * n; ++i) inverse[i] /= determinant;
  return true;
}

/// Linear part, then scale, then translation times `weight`, each only when the morph has it.
template <int n, bool isWeighted, class Morph>
inline void transformCoordinates(const Morph& morph, double* coordinates, bool noTranslation,
                                 double weight) {
  if (morph.isIdentity()) return;
  if (morph.isAffine()) {
    multiplyVector<n>(morph.GetAffine().GetElements(), coordinates, coordinates);
  }
  if (morph.isScale()) {
    for (int i = 0; i < n; ++i) coordinates[i] *= morph.GetScale();
  }
  if (!noTranslation && morph.isTranslation()) {
    const double* const translation = morph.GetTranslation().GetStoredCoordinates();
    for (int i = 0; i < n; ++i) {
      if constexpr (isWeighted) {
        coordinates[i] += weight * translation[i];
      } else {
        coordinates[i] += translation[i];
      }
    }
  }
}

}  // namespace kova::internal
