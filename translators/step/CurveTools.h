#pragma once

#include "translators/step/Curves.h"

#include <algorithm>
#include <cmath>
#include <limits>

/// What the kinds of curves share. Private to the curves.
namespace kova::translators::step::curves {

inline Point operator+(const Point& a, const Point& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Point operator-(const Point& a, const Point& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Point operator*(double factor, const Point& a) {
  return {factor * a.x, factor * a.y, factor * a.z};
}
inline double dot(const Point& a, const Point& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Point cross(const Point& a, const Point& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double squaredDistance(const Point& a, const Point& b) { return dot(a - b, a - b); }
/// Neither overflows nor underflows on the way.
inline double length(const Point& a) { return std::hypot(a.x, a.y, a.z); }
inline double distance(const Point& a, const Point& b) { return length(a - b); }
inline bool isFinite(const Point& a) {
  return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}
bool isFinite(const Frame& frame);

/// The coordinates of a point in a frame.
inline Point toFrame(const Frame& frame, const Point& point) {
  const Point offset = point - frame.origin;
  return {dot(offset, frame.x), dot(offset, frame.y), dot(offset, frame.z)};
}

/// A root of a function that is not above 0 at `low` and not below 0 at `high`: Newton's method,
/// and bisection where it would leave the bracket or is slow.
/// @param function  gives the value and, in its second argument, the slope or an estimate of it.
template <class Function>
double findRoot(double low, double high, double guess, const Function& function) {
  double root = std::clamp(guess, low, high);
  double step = high - low;
  for (int i = 0; i < 60; ++i) {
    double slope = 0.0;
    const double value = function(root, slope);
    if (value < 0.0) {
      low = root;
    } else if (value > 0.0) {
      high = root;
    } else {
      return root;
    }
    double next = root - value / slope;
    if (!(next > low && next < high) || std::fabs(next - root) > 0.7 * std::fabs(step)) {
      next = low + 0.5 * (high - low);
    }
    step = next - root;
    root = next;
    if (std::fabs(step) <= 1e-15 * std::max(std::fabs(root), 1e-3)) break;
  }
  return root;
}

/// The nearest point that was found so far.
struct Nearest {
  double parameter = 0.0;
  double squared = std::numeric_limits<double>::infinity();

  void Take(double candidate, double itsSquaredDistance) {
    if (itsSquaredDistance < squared) {
      parameter = candidate;
      squared = itsSquaredDistance;
    }
  }
};

/// Looks for the point of a smooth piece that is nearest to `point`.
/// @param intervals  into how many the piece is divided to begin with.
void findNearest(const SpaceCurve& curve, double low, double high, int intervals,
                 const Point& point, Nearest& nearest);

/// A curve with two ends. When these meet, it is periodic.
class BoundedCurve : public SpaceCurve {
 public:
  double GetLow() const override { return _low; }
  double GetHigh() const override { return _high; }
  bool IsPeriodic() const override { return _isClosed; }
  /// The seam counts as a break, wherever the piece crosses it.
  void AddBreaks(double low, double high, std::vector<double>& breaks) const final;

 protected:
  BoundedCurve(double low, double high) : _low(low), _high(high) {}

  /// Sees whether the ends meet, for a curve of about this size. The end of a constructor.
  void Close(double size);
  /// Into the range: around when the curve is closed, else to the nearer end.
  double Wrap(double parameter) const;
  /// A result of FindParameter: the seam has its low parameter.
  double LeaveSeam(double parameter) const;
  /// As AddBreaks, for a piece within the range.
  virtual void AddOwnBreaks(double low, double high, std::vector<double>& breaks) const = 0;

 private:
  double _low;
  double _high;
  bool _isClosed = false;
};

}  // namespace kova::translators::step::curves
