#pragma once

#include "translators/model/Model.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kova::translators {

/// Divides polygons of four and more corners into triangles with the same sense of rotation:
/// convex ones as a fan around their first corner, concave ones by cutting off ears, both in the
/// polygon's mean plane.
///
/// To cut ears costs the square of the number of corners. There is a limit to what one object
/// spends on it, so that no file can keep it busy. What is beyond becomes a fan, and so does every
/// polygon of more than 16,384 corners.
class PolygonDivider {
 public:
  /// Adds `corners` - 2 triangles. `corners` has at least three indices into `vertices`.
  void Divide(const std::vector<std::uint32_t>& corners, const KOVADynamicArray<Point>& vertices,
              KOVADynamicArray<Triangle>& triangles);

  /// Polygons that were divided as a fan without being known as convex, in part at least: their
  /// corners cross or coincide, or are too many.
  std::uint64_t GetForcedCount() const { return _forced; }

 private:
  struct Flat {
    double x;
    double y;
  };

  void Project(const std::vector<std::uint32_t>& corners, const KOVADynamicArray<Point>& vertices);
  bool IsConvex() const;
  bool IsEar(std::size_t corner) const;
  void CutEars(const std::vector<std::uint32_t>& corners, KOVADynamicArray<Triangle>& triangles);

  // The polygon in its plane, counter-clockwise.
  std::vector<Flat> _flat;
  // The corners that are left, as a ring.
  std::vector<std::uint32_t> _next;
  std::vector<std::uint32_t> _previous;
  // Comparisons of a corner with an ear.
  std::uint64_t _budget = 200'000'000;
  std::uint64_t _forced = 0;
};

}  // namespace kova::translators
