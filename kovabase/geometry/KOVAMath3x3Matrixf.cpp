#include "kovabase/geometry/KOVAMath3x3Matrixf.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr float kZero = 0.0F;

// 9.9999998245167e-15.
constexpr double kSingular = static_cast<double>(1e-14F);

// A product of three floats neither overflows nor underflows in double precision. Transposing
// commutes with the adjugate, so that the order of the entries does not matter.
double computeAdjugate(const float* entries, double adjugate[9]) {
  double m[9];
  std::copy(entries, entries + 9, m);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      const int rows[2] = {(j + 1) % 3, (j + 2) % 3};
      const int columns[2] = {(i + 1) % 3, (i + 2) % 3};
      adjugate[3 * i + j] = m[3 * rows[0] + columns[0]] * m[3 * rows[1] + columns[1]] -
                            m[3 * rows[0] + columns[1]] * m[3 * rows[1] + columns[0]];
    }
  }
  return m[0] * adjugate[0] + m[1] * adjugate[3] + m[2] * adjugate[6];
}

}  // namespace

KOVAMath3x3Matrixf::KOVAMath3x3Matrixf(const float* entries) {
  if (entries == nullptr) return;
  if (!std::equal(entries, entries + 9, _entries)) _kind = kGeneral;
  std::copy(entries, entries + 9, _entries);
}

KOVAMath3x3Matrixf& KOVAMath3x3Matrixf::operator=(const KOVAMath3x3Matrixf& other) {
  if (this == &other) return *this;
  std::copy(other._entries, other._entries + 9, _entries);
  if (_kind != kShared) _kind = other._kind;
  return *this;
}

const float& KOVAMath3x3Matrixf::operator[](int index) const {
  return index >= 0 && index < 9 ? _entries[index] : kZero;
}

float& KOVAMath3x3Matrixf::operator[](int index) {
  if (index >= 0 && index < 9) {
    _kind = kShared;
    return _entries[index];
  }
  thread_local float scratch;
  scratch = 0.0F;
  return scratch;
}

KOVAMath3x3Matrixf KOVAMath3x3Matrixf::operator*(const KOVAMath3x3Matrixf& right) const {
  if (_kind == kIdentity) return right;
  if (right._kind == kIdentity) return *this;
  KOVAMath3x3Matrixf product;
  for (int column = 0; column < 3; ++column) {
    for (int row = 0; row < 3; ++row) {
      product._entries[3 * column + row] = _entries[row] * right._entries[3 * column] +
                                           _entries[3 + row] * right._entries[3 * column + 1] +
                                           _entries[6 + row] * right._entries[3 * column + 2];
    }
  }
  product._kind = kGeneral;
  return product;
}

KOVAMath3x3Matrixf& KOVAMath3x3Matrixf::operator*=(const KOVAMath3x3Matrixf& right) {
  return *this = *this * right;
}

KOVAMath3x3Matrixf KOVAMath3x3Matrixf::operator*(float factor) const {
  KOVAMath3x3Matrixf product(*this);
  product *= factor;
  return product;
}

KOVAMath3x3Matrixf& KOVAMath3x3Matrixf::operator*=(float factor) {
  for (float& entry : _entries) entry *= factor;
  if (_kind != kShared) _kind = kGeneral;
  return *this;
}

KOVAVectorf KOVAMath3x3Matrixf::operator*(const KOVAVectorf& vector) const {
  if (_kind == kIdentity) return vector;
  const float* const m = _entries;
  return {m[0] * vector[0] + m[3] * vector[1] + m[6] * vector[2],
          m[1] * vector[0] + m[4] * vector[1] + m[7] * vector[2],
          m[2] * vector[0] + m[5] * vector[1] + m[8] * vector[2]};
}

float KOVAMath3x3Matrixf::Determinant() const {
  double adjugate[9];
  return static_cast<float>(computeAdjugate(_entries, adjugate));
}

KOVAMath3x3Matrixf KOVAMath3x3Matrixf::Transpose() const {
  KOVAMath3x3Matrixf transpose(*this);
  for (int row = 1; row < 3; ++row) {
    for (int column = 0; column < row; ++column) {
      std::swap(transpose._entries[3 * row + column], transpose._entries[3 * column + row]);
    }
  }
  return transpose;
}

bool KOVAMath3x3Matrixf::Inverse(KOVAMath3x3Matrixf& inverse) const {
  double adjugate[9];
  const double determinant = computeAdjugate(_entries, adjugate);
  if (!(std::fabs(determinant) > kSingular)) return false;
  const double reciprocal = 1.0 / determinant;
  for (int i = 0; i < 9; ++i) {
    inverse._entries[i] = static_cast<float>(adjugate[i] * reciprocal);
  }
  if (inverse._kind != kShared) inverse._kind = _kind == kIdentity ? kIdentity : kGeneral;
  return true;
}

KOVAMath3x3Matrixf KOVAMath3x3Matrixf::Inverse() const {
  KOVAMath3x3Matrixf inverse(*this);
  Inverse(inverse);
  return inverse;
}
