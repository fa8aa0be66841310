#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kova::generate {

struct Point3D {
  double x;
  double y;
  double z;
};

/// Corners counter-clockwise seen from outside.
using Facet = std::array<Point3D, 3>;

/// A closed surface: every edge belongs to two facets, in opposite directions, and its ends have
/// the same coordinates to the last bit in both. Millimetres.
struct Shape {
  std::string name;
  std::vector<Facet> facets;
};

/// A spur gear with involute teeth, a thinner web with six holes, and a hub with a keyway.
/// @param teeth  at least 8.
Shape makeGear(int teeth);

/// A tube along a trefoil knot, of smooth surface and any resolution.
/// @param facets  how many triangles to aim at, at least 100; the number is met exactly when half
///   of it can be divided into a grid of suitable proportions, as every multiple of 1000 can.
Shape makeKnot(std::uint64_t facets);

}  // namespace kova::generate
