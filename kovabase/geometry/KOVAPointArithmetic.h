#pragma once

#include "kovabase/geometry/KOVAPoint.h"

#include <cmath>

/// Coordinate-wise value arithmetic of the points whose dimension is fixed by their class. What
/// else a `Point` stores, such as a weight, comes from the left operand, or from the only point.
template <class Point, int kDimension>
class KOVAPointArithmetic : public KOVAPoint {
 public:
  double operator[](int index) const final {
    return index >= 0 && index < kDimension ? _coordinates[index] : 0.0;
  }
  double& operator[](int index) final {
    return index >= 0 && index < kDimension ? _coordinates[index] : GetScratch();
  }
  int GetDimension() const final { return kDimension; }
  double Length() const final { return std::sqrt(Dot(*this, *this)); }

  Point& operator+=(const Point& point) {
    for (int i = 0; i < kDimension; ++i) _coordinates[i] += point._coordinates[i];
    return Self();
  }
  Point& operator-=(const Point& point) {
    for (int i = 0; i < kDimension; ++i) _coordinates[i] -= point._coordinates[i];
    return Self();
  }
  Point& operator*=(double factor) {
    for (int i = 0; i < kDimension; ++i) _coordinates[i] *= factor;
    return Self();
  }
  Point& operator/=(double divisor) {
    for (int i = 0; i < kDimension; ++i) _coordinates[i] /= divisor;
    return Self();
  }

  friend Point operator+(const Point& left, const Point& right) {
    Point result(left);
    result += right;
    return result;
  }
  friend Point operator-(const Point& left, const Point& right) {
    Point result(left);
    result -= right;
    return result;
  }
  friend Point operator-(const Point& point) {
    Point result(point);
    for (int i = 0; i < kDimension; ++i) result._coordinates[i] = -result._coordinates[i];
    return result;
  }
  friend Point operator*(const Point& point, double factor) {
    Point result(point);
    result *= factor;
    return result;
  }
  friend Point operator*(double factor, const Point& point) { return point * factor; }
  friend Point operator/(const Point& point, double divisor) {
    Point result(point);
    result /= divisor;
    return result;
  }
  /// The dot product.
  friend double operator*(const Point& left, const Point& right) { return Dot(left, right); }

 protected:
  KOVAPointArithmetic() : KOVAPoint(kDimension) {}
  KOVAPointArithmetic(const KOVAPointArithmetic&) = default;
  KOVAPointArithmetic& operator=(const KOVAPointArithmetic& other) {
    for (int i = 0; i < kDimension; ++i) _coordinates[i] = other._coordinates[i];
    return *this;
  }
  ~KOVAPointArithmetic() override = default;

 private:
  static double Dot(const KOVAPointArithmetic& left, const KOVAPointArithmetic& right) {
    double sum = left._coordinates[0] * right._coordinates[0];
    for (int i = 1; i < kDimension; ++i) sum += left._coordinates[i] * right._coordinates[i];
    return sum;
  }
  Point& Self() { return static_cast<Point&>(*this); }
};
