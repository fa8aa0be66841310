#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace kova::generate {

struct Point2D {
  double x;
  double y;
};

/// A closed line without its first point repeated.
using Loop = std::vector<Point2D>;

/// Cuts the area inside `outline` and outside all `holes` into triangles whose corners are points
/// of the loops. Ear clipping, quadratic in the number of points.
/// @param outline  counter-clockwise, without touching itself.
/// @param holes  clockwise, inside the outline and apart from each other.
/// @return three points for each triangle, counter-clockwise.
std::vector<std::array<Point2D, 3>> triangulate(const Loop& outline,
                                                const std::vector<Loop>& holes);

}  // namespace kova::generate
