#pragma once

#include "apps/kova-generate/Triangulation.h"

#include <cstddef>
#include <vector>

namespace kova::generate {

/// A piece of a flat outline.
struct Segment {
  enum class Kind { kLine, kArc, kEllipse, kSpline };

  Kind kind = Kind::kLine;
  Point2D start{};
  /// Of arcs the same as the start for a whole circle; of ellipses always, because they are whole.
  Point2D end{};
  Point2D centre{};
  /// Of an ellipse the half axis along x.
  double radius = 0;
  /// Of an ellipse the half axis along y.
  double minorRadius = 0;
  /// Of arcs and ellipses.
  bool isClockwise = false;
  /// The inner two poles of a cubic Bezier curve.
  Point2D poles[2] = {};
};

/// Segments end to end, closed: counter-clockwise around material, clockwise around holes.
using Outline = std::vector<Segment>;

Outline makeDisc(Point2D centre, double radius);
Outline makeHole(Point2D centre, double radius);
Outline makeEllipticHole(Point2D centre, double xRadius, double yRadius);
Outline makeRoundedRectangle(Point2D centre, double width, double height, double cornerRadius);
Outline makeHexagon(double acrossFlats);
/// Involute teeth with a pressure angle of 20 degrees, a tooth in the direction of x. The roots
/// must be inside the base circle, as they are below 42 teeth.
Outline makeTeethOutline(int teeth, double module);

/// Chains of points for the outline.
/// @param starts  receives the index of the first point of each segment.
Loop sampleOutline(const Outline& outline, std::vector<std::size_t>& starts);

}  // namespace kova::generate
