#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// A direction or offset in space in double precision. Lengths come from plain sums of squares,
/// so that they overflow and underflow as the squares do.
class KOVABASE_API KOVAVector {
 public:
  /// The zero vector.
  constexpr KOVAVector() = default;
  constexpr KOVAVector(double x, double y, double z) : _components{x, y, z} {}
  /// @param components  three doubles; null gives the zero vector.
  explicit KOVAVector(const double* components) {
    for (int i = 0; components != nullptr && i < 3; ++i) _components[i] = components[i];
  }

  /// Component `index`, counted from 0; 0 when out of range.
  double operator[](int index) const { return index >= 0 && index < 3 ? _components[index] : 0.0; }
  /// Out of range it is a scratch value of the calling thread that reads 0 after each such call.
  double& operator[](int index) {
    return index >= 0 && index < 3 ? _components[index] : GetScratch();
  }

  /// The Euclidean length.
  double Magnitude() const;

  /// Makes the vector 1 long. One that is at most 1e-14 long (the single-precision value, widened),
  /// or that holds a NaN, becomes (1, 0, 0), so that a direction is always defined.
  /// @return a copy of the result.
  KOVAVector Normalize();

  /// The angle between the two in radians, from 0 to pi; 0 when one of them is at most 1e-14 long
  /// (as above). By atan2(|a x b|, a * b), which is exact to the last digits at small angles too.
  double AngleTo(const KOVAVector& vector) const;

  /// True when the two are parallel and equally long: each component of the cross product and the
  /// difference of the lengths are at most Gk_Def::FuzzPos. A vector equals its opposite: this
  /// compares undirected lines with length, and it is meant so.
  bool operator==(const KOVAVector& vector) const;

  friend KOVAVector operator+(const KOVAVector& left, const KOVAVector& right) {
    return {left[0] + right[0], left[1] + right[1], left[2] + right[2]};
  }
  friend KOVAVector operator-(const KOVAVector& left, const KOVAVector& right) {
    return {left[0] - right[0], left[1] - right[1], left[2] - right[2]};
  }
  friend KOVAVector operator-(const KOVAVector& vector) {
    return {-vector[0], -vector[1], -vector[2]};
  }
  friend KOVAVector operator*(double factor, const KOVAVector& vector) {
    return {factor * vector[0], factor * vector[1], factor * vector[2]};
  }
  friend KOVAVector operator*(const KOVAVector& vector, double factor) { return factor * vector; }
  friend KOVAVector operator/(const KOVAVector& vector, double divisor) {
    return {vector[0] / divisor, vector[1] / divisor, vector[2] / divisor};
  }
  /// The dot product.
  friend double operator*(const KOVAVector& left, const KOVAVector& right) {
    return left[0] * right[0] + left[1] * right[1] + left[2] * right[2];
  }
  /// The cross product. Mind that `^` binds more weakly than `+` and `==`.
  friend KOVAVector operator^(const KOVAVector& left, const KOVAVector& right) {
    return {left[1] * right[2] - left[2] * right[1], left[2] * right[0] - left[0] * right[2],
            left[0] * right[1] - left[1] * right[0]};
  }

 private:
  static double& GetScratch();

  double _components[3] = {0.0, 0.0, 0.0};
};
