#include "apps/kova-generate/Shapes.h"

#include "apps/kova-generate/Triangulation.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace kova::generate {

namespace {

using std::numbers::pi;

Point2D onCircle(double radius, double angle) {
  return {radius * std::cos(angle), radius * std::sin(angle)};
}

Loop makeCircle(Point2D centre, double radius, int points) {
  Loop loop;
  for (int i = 0; i < points; ++i) {
    const Point2D p = onCircle(radius, 2 * pi * i / points);
    loop.push_back({centre.x + p.x, centre.y + p.y});
  }
  return loop;
}

Loop reversed(const Loop& loop) { return {loop.rbegin(), loop.rend()}; }

Loop makeTeeth(int teeth, double module) {
  const double pressureAngle = 20 * pi / 180;
  const double pitchRadius = module * teeth / 2;
  const double baseRadius = pitchRadius * std::cos(pressureAngle);
  const double tipRadius = pitchRadius + module;
  const double rootRadius = pitchRadius - 1.25 * module;
  // The involute of the base circle: the angle by which it has turned at a radius.
  const auto involute = [](double angle) { return std::tan(angle) - angle; };
  const auto halfThickness = [&](double radius) {
    const double angle = std::acos(std::min(1.0, baseRadius / radius));
    return pi / (2 * teeth) + involute(pressureAngle) - involute(angle);
  };
  constexpr int kFlankPoints = 10;
  constexpr int kRootPoints = 4;
  const double start = std::max(baseRadius, rootRadius);

  Loop loop;
  for (int tooth = 0; tooth < teeth; ++tooth) {
    const double middle = 2 * pi * tooth / teeth;
    const double rootHalf = halfThickness(start);
    if (rootRadius < start) loop.push_back(onCircle(rootRadius, middle - rootHalf));
    for (int i = 0; i <= kFlankPoints; ++i) {
      const double radius = start + (tipRadius - start) * i / kFlankPoints;
      loop.push_back(onCircle(radius, middle - halfThickness(radius)));
    }
    for (int i = kFlankPoints; i >= 0; --i) {
      const double radius = start + (tipRadius - start) * i / kFlankPoints;
      loop.push_back(onCircle(radius, middle + halfThickness(radius)));
    }
    if (rootRadius < start) loop.push_back(onCircle(rootRadius, middle + rootHalf));
    const double gap = 2 * pi / teeth - 2 * rootHalf;
    for (int i = 1; i < kRootPoints; ++i) {
      loop.push_back(onCircle(rootRadius, middle + rootHalf + gap * i / kRootPoints));
    }
  }
  return loop;
}

Loop makeBore(double radius, double keyHalfWidth, double keyDepth) {
  Loop loop;
  const double keyAngle = std::asin(keyHalfWidth / radius);
  constexpr int kPoints = 64;
  for (int i = 0; i <= kPoints; ++i) {
    loop.push_back(onCircle(radius, keyAngle + (2 * pi - 2 * keyAngle) * i / kPoints));
  }
  loop.push_back({radius + keyDepth, -keyHalfWidth});
  loop.push_back({radius + keyDepth, keyHalfWidth});
  return loop;
}

Point3D lift(const Point2D& p, double z) { return {p.x, p.y, z}; }

// A level face at +z that looks up, and its mirror image at -z that looks down.
void addFaces(Shape& shape, const Loop& outline, const std::vector<Loop>& holes, double z) {
  for (const auto& [a, b, c] : triangulate(outline, holes)) {
    shape.facets.push_back({lift(a, z), lift(b, z), lift(c, z)});
    shape.facets.push_back({lift(c, -z), lift(b, -z), lift(a, -z)});
  }
}

// A wall along the loop; it looks to the right of the loop's direction.
void addWall(Shape& shape, const Loop& loop, double bottom, double top) {
  for (std::size_t i = 0; i < loop.size(); ++i) {
    const Point2D& a = loop[i];
    const Point2D& b = loop[(i + 1) % loop.size()];
    shape.facets.push_back({lift(a, bottom), lift(b, bottom), lift(b, top)});
    shape.facets.push_back({lift(b, top), lift(a, top), lift(a, bottom)});
  }
}

}  // namespace

Shape makeGear(int teeth) {
  if (teeth < 8) throw std::invalid_argument("a gear has at least 8 teeth");
  constexpr double kModule = 3;
  constexpr double kRim = 8;
  constexpr double kWeb = 3.5;
  constexpr double kHub = 12;
  constexpr int kCirclePoints = 96;
  constexpr int kHoles = 6;
  const double root = kModule * (teeth / 2.0 - 1.25);
  const double rimRadius = root * 0.85;
  const double hubRadius = root * 0.36;

  const Loop outline = makeTeeth(teeth, kModule);
  const Loop rim = makeCircle({0, 0}, rimRadius, kCirclePoints);
  const Loop hub = makeCircle({0, 0}, hubRadius, kCirclePoints);
  const Loop bore = makeBore(root * 0.18, root * 0.05, root * 0.05);
  std::vector<Loop> webHoles{reversed(hub)};
  const double holeRing = (rimRadius + hubRadius) / 2;
  for (int i = 0; i < kHoles; ++i) {
    const Point2D centre = onCircle(holeRing, 2 * pi * (i + 0.5) / kHoles);
    webHoles.push_back(reversed(makeCircle(centre, (rimRadius - hubRadius) * 0.3, 48)));
  }

  Shape shape{"gear", {}};
  addFaces(shape, outline, {reversed(rim)}, kRim);
  addFaces(shape, rim, webHoles, kWeb);
  addFaces(shape, hub, {reversed(bore)}, kHub);
  addWall(shape, outline, -kRim, kRim);
  addWall(shape, reversed(rim), kWeb, kRim);
  addWall(shape, reversed(rim), -kRim, -kWeb);
  addWall(shape, hub, kWeb, kHub);
  addWall(shape, hub, -kHub, -kWeb);
  addWall(shape, reversed(bore), -kHub, kHub);
  for (std::size_t i = 1; i < webHoles.size(); ++i) addWall(shape, webHoles[i], -kWeb, kWeb);
  return shape;
}

Shape makeKnot(std::uint64_t facets) {
  if (facets < 100) throw std::invalid_argument("a knot has at least 100 triangles");
  // Cells are about as long as they are wide when there are about 16 times as many along the tube
  // as around it.
  const std::uint64_t cells = facets / 2;
  std::uint64_t around = std::max<std::uint64_t>(
      6, static_cast<std::uint64_t>(std::sqrt(static_cast<double>(cells) / 16)));
  for (std::uint64_t divisor = around; divisor >= std::max<std::uint64_t>(5, around / 2);
       --divisor) {
    if (cells % divisor == 0) {
      around = divisor;
      break;
    }
  }
  const std::uint64_t along = (cells + around - 1) / around;

  constexpr double kSize = 20;
  constexpr double kTube = 7;
  const auto centreAt = [](double t) {
    return Point3D{kSize * (std::sin(t) + 2 * std::sin(2 * t)),
                   kSize * (std::cos(t) - 2 * std::cos(2 * t)), kSize * -std::sin(3 * t)};
  };
  const auto unit = [](const Point3D& v) {
    const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    return Point3D{v.x / length, v.y / length, v.z / length};
  };
  const auto cross = [](const Point3D& a, const Point3D& b) {
    return Point3D{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
  };
  const auto pointAt = [&](std::uint64_t i, std::uint64_t j) {
    const double t = 2 * pi * static_cast<double>(i % along) / static_cast<double>(along);
    const double angle = 2 * pi * static_cast<double>(j % around) / static_cast<double>(around);
    const Point3D tangent = unit({std::cos(t) + 4 * std::cos(2 * t),
                                  -std::sin(t) + 4 * std::sin(2 * t), -3 * std::cos(3 * t)});
    // The curve never runs along z, so this frame closes on itself.
    const Point3D side = unit(cross({0, 0, 1}, tangent));
    const Point3D up = cross(tangent, side);
    const Point3D centre = centreAt(t);
    const double c = kTube * std::cos(angle);
    const double s = kTube * std::sin(angle);
    return Point3D{centre.x + c * side.x + s * up.x, centre.y + c * side.y + s * up.y,
                   centre.z + c * side.z + s * up.z};
  };

  // Each ring is computed once, so that its points are the same on both sides.
  const auto ringAt = [&](std::uint64_t i) {
    std::vector<Point3D> ring;
    for (std::uint64_t j = 0; j <= around; ++j) ring.push_back(pointAt(i, j));
    return ring;
  };
  Shape shape{"knot", {}};
  shape.facets.reserve(2 * along * around);
  std::vector<Point3D> ring = ringAt(0);
  for (std::uint64_t i = 0; i < along; ++i) {
    const std::vector<Point3D> next = ringAt(i + 1);
    for (std::uint64_t j = 0; j < around; ++j) {
      shape.facets.push_back({ring[j], ring[j + 1], next[j + 1]});
      shape.facets.push_back({next[j + 1], next[j], ring[j]});
    }
    ring = next;
  }
  return shape;
}

}  // namespace kova::generate
