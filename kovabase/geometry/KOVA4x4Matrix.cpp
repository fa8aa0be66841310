#include "kovabase/geometry/KOVA4x4Matrix.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kZero = 0.0F;

// A product of four floats neither overflows nor underflows in double precision.
void computeThirdColumnCofactors(const float* entries, double cofactors[4]) {
  const float* const a = entries;
  const float* const b = entries + 4;
  const double d[4] = {entries[12], entries[13], entries[14], entries[15]};
  const auto minor = [a, b](int i, int j) {
    return static_cast<double>(a[i]) * b[j] - static_cast<double>(a[j]) * b[i];
  };
  const double minor01 = minor(0, 1);
  const double minor02 = minor(0, 2);
  const double minor03 = minor(0, 3);
  const double minor12 = minor(1, 2);
  const double minor13 = minor(1, 3);
  const double minor23 = minor(2, 3);
  cofactors[0] = d[1] * minor23 - d[2] * minor13 + d[3] * minor12;
  cofactors[1] = -(d[0] * minor23 - d[2] * minor03 + d[3] * minor02);
  cofactors[2] = d[0] * minor13 - d[1] * minor03 + d[3] * minor01;
  cofactors[3] = -(d[0] * minor12 - d[1] * minor02 + d[2] * minor01);
}

double expandThirdColumn(const float* entries, const double cofactors[4]) {
  return entries[8] * cofactors[0] + entries[9] * cofactors[1] + entries[10] * cofactors[2] +
         entries[11] * cofactors[3];
}

}  // namespace

KOVA4x4Matrix::KOVA4x4Matrix(const float* entries) {
  if (entries == nullptr) return;
  std::copy(entries, entries + 16, _entries);
  ComputeDeterminant();
}

KOVA4x4Matrix& KOVA4x4Matrix::operator=(const KOVA4x4Matrix& other) {
  if (this == &other) return *this;
  std::copy(other._entries, other._entries + 16, _entries);
  _determinant = other._determinant;
  _isShared = _isShared || other._isShared;
  return *this;
}

const float& KOVA4x4Matrix::operator[](int index) const {
  return index >= 0 && index < 16 ? _entries[index] : kZero;
}

float& KOVA4x4Matrix::operator[](int index) {
  if (index >= 0 && index < 16) {
    _isShared = true;
    return _entries[index];
  }
  thread_local float scratch;
  scratch = 0.0F;
  return scratch;
}

KOVA4x4Matrix KOVA4x4Matrix::operator*(const KOVA4x4Matrix& right) const {
  KOVA4x4Matrix product;
  for (int column = 0; column < 4; ++column) {
    for (int row = 0; row < 4; ++row) {
      float sum = _entries[row] * right._entries[4 * column];
      for (int k = 1; k < 4; ++k) sum += _entries[4 * k + row] * right._entries[4 * column + k];
      product._entries[4 * column + row] = sum;
    }
  }
  product.ComputeDeterminant();
  return product;
}

KOVA4x4Matrix& KOVA4x4Matrix::operator*=(const KOVA4x4Matrix& right) {
  return *this = *this * right;
}

KOVAPoint3D KOVA4x4Matrix::operator*(const KOVAPoint3D& point) const {
  const float* const m = _entries;
  const double x = point[0];
  const double y = point[1];
  const double z = point[2];
  return {m[0] * x + m[4] * y + m[8] * z + m[12], m[1] * x + m[5] * y + m[9] * z + m[13],
          m[2] * x + m[6] * y + m[10] * z + m[14]};
}

KOVAPointf KOVA4x4Matrix::operator*(const KOVAPointf& point) const {
  const float* const m = _entries;
  const float x = point[0];
  const float y = point[1];
  const float z = point[2];
  return {m[0] * x + m[4] * y + m[8] * z + m[12], m[1] * x + m[5] * y + m[9] * z + m[13],
          m[2] * x + m[6] * y + m[10] * z + m[14]};
}

KOVAVectorf KOVA4x4Matrix::operator*(const KOVAVectorf& vector) const {
  const float* const m = _entries;
  const float x = vector[0];
  const float y = vector[1];
  const float z = vector[2];
  return {m[0] * x + m[4] * y + m[8] * z, m[1] * x + m[5] * y + m[9] * z,
          m[2] * x + m[6] * y + m[10] * z};
}

KOVADirectionf KOVA4x4Matrix::operator*(const KOVADirectionf& direction) const {
  const KOVAVectorf product = *this * KOVAVectorf(direction[0], direction[1], direction[2]);
  return {product[0], product[1], product[2]};
}

bool KOVA4x4Matrix::IsIdentity() const {
  for (int i = 0; i < 16; ++i) {
    if (_entries[i] != (i % 5 == 0 ? 1.0F : 0.0F)) return false;
  }
  return true;
}

float KOVA4x4Matrix::GetDeterminant() const {
  if (!_isShared) return _determinant;
  double cofactors[4];
  computeThirdColumnCofactors(_entries, cofactors);
  return static_cast<float>(expandThirdColumn(_entries, cofactors));
}

void KOVA4x4Matrix::ComputeDeterminant() {
  double cofactors[4];
  computeThirdColumnCofactors(_entries, cofactors);
  _determinant = static_cast<float>(expandThirdColumn(_entries, cofactors));
}

void KOVA4x4Matrix::ComputeInverseTransposeThirdColumnNormalized(float plane[4]) const {
  if (plane == nullptr) return;
  double column[4];
  computeThirdColumnCofactors(_entries, column);
  const double determinant = expandThirdColumn(_entries, column);
  double square = 0.0;
  if (determinant != 0.0) {
    for (double& entry : column) entry /= determinant;
    square = column[0] * column[0] + column[1] * column[1] + column[2] * column[2];
  }
  for (int i = 0; i < 4; ++i) {
    plane[i] =
        square != 0.0 ? static_cast<float>(column[i] / std::sqrt(square)) : (i == 3 ? 1.0F : 0.0F);
  }
}
