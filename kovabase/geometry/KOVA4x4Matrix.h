#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVADirectionf.h"
#include "kovabase/geometry/KOVAPoint3D.h"
#include "kovabase/geometry/KOVAPointf.h"
#include "kovabase/geometry/KOVAVectorf.h"

/// A homogeneous matrix of tessellated data and display, in single precision. It has 16 entries in
/// column order: row r, column c is entry 4c + r, and entries 12 to 14 are the translation. Points
/// are columns: the matrix takes p to matrix * p. The fourth row takes no part in products with
/// points and vectors: nothing is divided by w.
class KOVABASE_API KOVA4x4Matrix {
 public:
  /// The identity.
  KOVA4x4Matrix() = default;
  /// @param entries  16 floats in column order; null gives the identity.
  explicit KOVA4x4Matrix(const float* entries);
  KOVA4x4Matrix(const KOVA4x4Matrix&) = default;
  KOVA4x4Matrix& operator=(const KOVA4x4Matrix& other);

  /// Entry `index`, 0 to 15, in an array of all of them; a 0 when out of range.
  const float& operator[](int index) const;
  /// Out of range it is a scratch value of the calling thread that reads 0 after each such call.
  /// From the first call on the determinant is computed whenever it is asked for, because the
  /// entries may change through the reference.
  float& operator[](int index);

  /// this * right, the matrix that applies `right` first.
  KOVA4x4Matrix operator*(const KOVA4x4Matrix& right) const;
  KOVA4x4Matrix& operator*=(const KOVA4x4Matrix& right);

  /// With the translation. The first form computes in double precision.
  KOVAPoint3D operator*(const KOVAPoint3D& point) const;
  KOVAPointf operator*(const KOVAPointf& point) const;
  /// Without the translation; a direction is not normalised.
  KOVAVectorf operator*(const KOVAVectorf& vector) const;
  KOVADirectionf operator*(const KOVADirectionf& direction) const;

  /// Exact.
  bool IsIdentity() const;
  /// Of all 16 entries, computed in double precision and rounded once.
  float GetDeterminant() const;

  /// What the plane z = 0 becomes, as (a, b, c, d) of the plane ax + by + cz + d = 0 with a unit
  /// normal: the third column of the inverse transpose, divided by the length of its first three
  /// entries. It is (0, 0, 0, 1) when the determinant, in double precision, is exactly 0, or that
  /// length is. A null array does nothing.
  void ComputeInverseTransposeThirdColumnNormalized(float plane[4]) const;

 private:
  void ComputeDeterminant();

  float _entries[16] = {1.0F, 0.0F, 0.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F,
                        0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F, 0.0F, 1.0F};
  float _determinant = 1.0F;
  // Someone may hold a reference to an entry, so that the cached determinant means nothing.
  bool _isShared = false;
};
