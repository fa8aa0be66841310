#pragma once

#include "kovabase/geometry/Gk_Def.h"
#include "kovabase/geometry/Gk_Func.h"
#include "kovabase/geometry/KOVAPointf.h"

#include <cmath>

/// What the vectors and directions of tessellated data have in common: three floats and their
/// arithmetic. All is computed in single precision; lengths come from plain sums of squares, so
/// that they overflow and underflow as the squares do.
template <class Vector>
class KOVAVectorfArithmetic {
 public:
  /// Component `index`, counted from 0; 0 when out of range.
  float operator[](int index) const { return index >= 0 && index < 3 ? _components[index] : 0.0F; }
  /// Out of range it is a scratch value of the calling thread that reads 0 after each such call.
  float& operator[](int index) {
    return index >= 0 && index < 3 ? _components[index] : GetScratch();
  }

  /// The Euclidean length.
  float Norm() const { return std::sqrt(Self() * Self()); }

  /// Makes the vector 1 long. One whose squared length is at most 1e-14, or that holds a NaN,
  /// becomes (1, 0, 0). Here the squared length is tested, where KOVAVector tests the length; the
  /// difference is kept.
  /// @return a copy of the result.
  Vector Normalize() {
    const float square = Self() * Self();
    Self() = square > kShortest ? Self() * (1.0F / std::sqrt(square)) : Vector(1.0F, 0.0F, 0.0F);
    return Self();
  }

  /// The angle between the two in radians, from 0 to pi; 0 when one of them is at most 1e-14 long.
  float AngleTo(const Vector& vector) const {
    if (Norm() <= kShortest || vector.Norm() <= kShortest) return 0.0F;
    return std::atan2((Self() ^ vector).Norm(), Self() * vector);
  }
  /// The same with a sign: negative, down to -pi, when the turn from this vector to `vector` is
  /// clockwise as seen from the tip of `reference`, that is, when the cross product points away
  /// from it.
  float AngleTo(const Vector& vector, const Vector& reference) const {
    const float angle = AngleTo(vector);
    return (Self() ^ vector) * reference < 0.0F ? -angle : angle;
  }

  /// True when the two are parallel and equally long: each component of the cross product and the
  /// difference of the lengths are at most Gk_Def::FuzzPos in single precision. A vector equals
  /// its opposite: this compares undirected lines with length, and it is meant so.
  friend bool operator==(const Vector& left, const Vector& right) {
    const float tolerance = static_cast<float>(Gk_Def::FuzzPos);
    const Vector cross = left ^ right;
    return Gk_Func::equal(cross[0], 0.0F, tolerance) && Gk_Func::equal(cross[1], 0.0F, tolerance) &&
           Gk_Func::equal(cross[2], 0.0F, tolerance) &&
           Gk_Func::equal(left.Norm(), right.Norm(), tolerance);
  }

  friend Vector operator+(const Vector& left, const Vector& right) {
    return {left[0] + right[0], left[1] + right[1], left[2] + right[2]};
  }
  friend Vector operator-(const Vector& left, const Vector& right) {
    return {left[0] - right[0], left[1] - right[1], left[2] - right[2]};
  }
  friend Vector operator-(const Vector& vector) { return {-vector[0], -vector[1], -vector[2]}; }
  friend Vector operator*(float factor, const Vector& vector) {
    return {factor * vector[0], factor * vector[1], factor * vector[2]};
  }
  friend Vector operator*(const Vector& vector, float factor) { return factor * vector; }
  friend Vector operator/(const Vector& vector, float divisor) {
    return {vector[0] / divisor, vector[1] / divisor, vector[2] / divisor};
  }
  /// The dot product.
  friend float operator*(const Vector& left, const Vector& right) {
    return left[0] * right[0] + left[1] * right[1] + left[2] * right[2];
  }
  /// The cross product. Mind that `^` binds more weakly than `+` and `==`.
  friend Vector operator^(const Vector& left, const Vector& right) {
    return {left[1] * right[2] - left[2] * right[1], left[2] * right[0] - left[0] * right[2],
            left[0] * right[1] - left[1] * right[0]};
  }
  friend KOVAPointf operator+(const Vector& vector, const KOVAPointf& point) {
    return {vector[0] + point[0], vector[1] + point[1], vector[2] + point[2]};
  }
  friend KOVAPointf operator+(const KOVAPointf& point, const Vector& vector) {
    return vector + point;
  }

 protected:
  /// The zero vector.
  constexpr KOVAVectorfArithmetic() = default;
  constexpr KOVAVectorfArithmetic(float x, float y, float z) : _components{x, y, z} {}
  explicit KOVAVectorfArithmetic(const float* components) {
    for (int i = 0; components != nullptr && i < 3; ++i) _components[i] = components[i];
  }

 private:
  static constexpr float kShortest = 1e-14F;

  static float& GetScratch() {
    thread_local float scratch;
    scratch = 0.0F;
    return scratch;
  }

  const Vector& Self() const { return static_cast<const Vector&>(*this); }
  Vector& Self() { return static_cast<Vector&>(*this); }

  float _components[3] = {0.0F, 0.0F, 0.0F};
};
