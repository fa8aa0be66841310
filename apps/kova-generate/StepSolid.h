#pragma once

#include "apps/kova-generate/Profile.h"
#include "apps/kova-generate/Shapes.h"
#include "apps/kova-generate/StepFile.h"

#include <vector>

namespace kova::generate {

/// What an outline sweeps when it rises from one height to another.
struct Prism {
  Outline outline;
  std::vector<Outline> holes;
  double bottom = 0;
  double top = 0;
};

/// A CARTESIAN_POINT.
Reference writePoint(StepFile& file, const Point3D& point);
/// A DIRECTION.
Reference writeDirection(StepFile& file, const Point3D& direction);
/// An AXIS2_PLACEMENT_3D.
Reference writeFrame(StepFile& file, const Point3D& origin, const Point3D& z, const Point3D& x);

/// A MANIFOLD_SOLID_BREP: three edges for each segment of the outlines, two level faces and a face
/// over each segment.
Reference writeSolid(StepFile& file, const Prism& prism);

/// A TESSELLATED_SOLID for the same.
/// @param solid  that which it stands for.
Reference writeTessellation(StepFile& file, const Prism& prism, Reference solid);

/// A TESSELLATED_SOLID of a profile turned around z, closed at both ends on the axis.
/// @param profile  radius and height, from below to above; the first and last radius are 0.
Reference writeTurned(StepFile& file, const std::vector<Point2D>& profile, int sectors);

}  // namespace kova::generate
