#pragma once

#include "translators/model/Model.h"
#include "translators/model/Placement.h"

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kova::translators {

/// A list of points where an instance puts them. Costs memory only when they move.
class PlacedPoints {
 public:
  /// The points must live as long.
  PlacedPoints(const KOVADynamicArray<Point>& points, const Placement& placement)
      : _first(points.getArray()), _count(static_cast<std::size_t>(points.size())) {
    if (placement.IsIdentity()) return;
    _placed.reserve(_count);
    for (const Point& point : points) _placed.push_back(placement(point));
    _first = _placed.data();
  }
  PlacedPoints(const PlacedPoints&) = delete;
  PlacedPoints& operator=(const PlacedPoints&) = delete;

  const Point* begin() const { return _first; }
  const Point* end() const { return _first + _count; }
  const Point& operator[](std::size_t index) const { return _first[index]; }

 private:
  std::vector<Point> _placed;
  const Point* _first;
  std::size_t _count;
};

/// Whether each coordinate is in the range of `float`.
inline bool fitsFloat(const Point& point) {
  constexpr double kMost = double{FLT_MAX};
  return std::fabs(point.x) <= kMost && std::fabs(point.y) <= kMost && std::fabs(point.z) <= kMost;
}

}  // namespace kova::translators
