#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAVectorf.h"

/// A 3 by 3 matrix in single precision. It has 9 entries in column order: row r, column c is entry
/// 3c + r. Vectors are columns: the matrix takes v to matrix * v.
///
/// A matrix that is known to be the identity is marked, and products with it, its transpose and
/// its inverse copy. Writing to an entry and products with numbers drop the mark.
class KOVABASE_API KOVAMath3x3Matrixf {
 public:
  /// The identity.
  KOVAMath3x3Matrixf() = default;
  /// @param entries  9 floats in column order; null gives the identity.
  explicit KOVAMath3x3Matrixf(const float* entries);
  KOVAMath3x3Matrixf(const KOVAMath3x3Matrixf& other) = default;
  KOVAMath3x3Matrixf& operator=(const KOVAMath3x3Matrixf& other);

  /// Entry `index`, 0 to 8, in an array of all of them; a 0 when out of range.
  const float& operator[](int index) const;
  /// Out of range it is a scratch value of the calling thread that reads 0 after each such call.
  float& operator[](int index);

  /// this * right, the matrix that applies `right` first.
  KOVAMath3x3Matrixf operator*(const KOVAMath3x3Matrixf& right) const;
  KOVAMath3x3Matrixf& operator*=(const KOVAMath3x3Matrixf& right);
  KOVAMath3x3Matrixf operator*(float factor) const;
  KOVAMath3x3Matrixf& operator*=(float factor);
  friend KOVAMath3x3Matrixf operator*(float factor, const KOVAMath3x3Matrixf& matrix) {
    return matrix * factor;
  }
  KOVAVectorf operator*(const KOVAVectorf& vector) const;

  /// Computed in double precision and rounded once.
  float Determinant() const;
  KOVAMath3x3Matrixf Transpose() const;
  /// The adjugate times the reciprocal of the determinant, in double precision, rounded once.
  /// @param inverse  may be this matrix.
  /// @return false, `inverse` untouched, when the determinant is at most 1e-14 (the
  ///   single-precision value, widened) either side of 0, or a NaN.
  bool Inverse(KOVAMath3x3Matrixf& inverse) const;
  /// A copy of this matrix when it has no inverse by the rule above.
  KOVAMath3x3Matrixf Inverse() const;

 private:
  enum Kind : int {
    kGeneral,
    kIdentity,
    /// Someone may hold a reference to an entry: nothing is known, and nothing will be.
    kShared
  };

  float _entries[9] = {1.0F, 0.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F, 1.0F};
  int _kind = kIdentity;
};
