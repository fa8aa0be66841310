#include "translators/ply/Polygon.h"

#include <cmath>

namespace kova::translators {

namespace {

// Beyond it, no budget would do.
constexpr std::size_t kMostCorners = 16384;

// Twice the signed area.
template <class Flat>
double getTurn(const Flat& a, const Flat& b, const Flat& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

}  // namespace

void PolygonDivider::Divide(const std::vector<std::uint32_t>& corners,
                            const KOVADynamicArray<Point>& vertices,
                            KOVADynamicArray<Triangle>& triangles) {
  const std::size_t count = corners.size();
  if (count > kMostCorners) {
    ++_forced;
    triangles.reserve(triangles.size() + static_cast<int>(count));
  } else if (count > 3) {
    Project(corners, vertices);
    if (!IsConvex()) {
      CutEars(corners, triangles);
      return;
    }
  }
  for (std::size_t i = 2; i < count; ++i) triangles.add({{corners[0], corners[i - 1], corners[i]}});
}

// Onto the coordinate plane that the polygon faces most, by the normal of M. E. Newell's method.
void PolygonDivider::Project(const std::vector<std::uint32_t>& corners,
                             const KOVADynamicArray<Point>& vertices) {
  const Point* const points = vertices.getArray();
  const Point& origin = points[corners[0]];
  double normal[3] = {0.0, 0.0, 0.0};
  Point a{0.0, 0.0, 0.0};
  for (const std::uint32_t corner : corners) {
    const Point& point = points[corner];
    const Point b{point.x - origin.x, point.y - origin.y, point.z - origin.z};
    normal[0] += a.y * b.z - a.z * b.y;
    normal[1] += a.z * b.x - a.x * b.z;
    normal[2] += a.x * b.y - a.y * b.x;
    a = b;
  }
  int axis = 2;
  for (const int other : {0, 1}) {
    if (std::fabs(normal[other]) > std::fabs(normal[axis])) axis = other;
  }
  const bool isAway = normal[axis] < 0.0;
  _flat.clear();
  for (const std::uint32_t corner : corners) {
    const Point& point = points[corner];
    const double coordinates[3] = {point.x - origin.x, point.y - origin.y, point.z - origin.z};
    const double x = coordinates[(axis + 1) % 3];
    const double y = coordinates[(axis + 2) % 3];
    _flat.push_back(isAway ? Flat{y, x} : Flat{x, y});
  }
}

// No corner turns back, and the ring turns round once only: a star has no corner that turns back
// either. Going round once, the direction changes between left and right twice.
bool PolygonDivider::IsConvex() const {
  const std::size_t count = _flat.size();
  int changes = 0;
  double before = 0.0;
  double first = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    const Flat& a = _flat[i];
    const Flat& b = _flat[i + 1 < count ? i + 1 : 0];
    const Flat& c = _flat[i + 2 < count ? i + 2 : i + 2 - count];
    if (getTurn(a, b, c) < 0.0) return false;
    const double step = b.x - a.x;
    if (step == 0.0) continue;
    if (first == 0.0) first = step;
    if (before != 0.0 && (step > 0.0) != (before > 0.0)) ++changes;
    before = step;
  }
  if ((first > 0.0) != (before > 0.0)) ++changes;
  return changes <= 2;
}

bool PolygonDivider::IsEar(std::size_t corner) const {
  const std::uint32_t from = _previous[corner];
  const std::uint32_t to = _next[corner];
  const Flat& a = _flat[from];
  const Flat& b = _flat[corner];
  const Flat& c = _flat[to];
  if (getTurn(a, b, c) <= 0.0) return false;
  for (std::uint32_t i = _next[to]; i != from; i = _next[i]) {
    const Flat& p = _flat[i];
    const bool isInside =
        getTurn(a, b, p) >= 0.0 && getTurn(b, c, p) >= 0.0 && getTurn(c, a, p) >= 0.0;
    // Rings with a bridge to a hole pass through a point twice.
    const bool isCorner =
        (p.x == a.x && p.y == a.y) || (p.x == b.x && p.y == b.y) || (p.x == c.x && p.y == c.y);
    if (isInside && !isCorner) return false;
  }
  return true;
}

// When as many corners have failed in a row as are left, there is no ear among them.
void PolygonDivider::CutEars(const std::vector<std::uint32_t>& corners,
                             KOVADynamicArray<Triangle>& triangles) {
  const std::uint32_t count = static_cast<std::uint32_t>(corners.size());
  _next.resize(count);
  _previous.resize(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    _next[i] = i + 1 < count ? i + 1 : 0;
    _previous[i] = i != 0 ? i - 1 : count - 1;
  }
  enum class Mode { kEars, kFlat, kForced } mode = Mode::kEars;
  std::uint32_t corner = 0;
  std::uint32_t failures = 0;
  for (std::uint32_t left = count; left > 2;) {
    if (_budget < left) mode = Mode::kForced;
    const std::uint32_t from = _previous[corner];
    const std::uint32_t to = _next[corner];
    bool isCut = left == 3 || mode == Mode::kForced;
    if (!isCut) {
      _budget -= left;
      // A corner in the middle of a straight line makes a triangle without area, and no harm.
      isCut = mode == Mode::kEars ? IsEar(corner)
                                  : getTurn(_flat[from], _flat[corner], _flat[to]) == 0.0;
    }
    if (!isCut) {
      corner = to;
      if (++failures > left) {
        mode = mode == Mode::kEars ? Mode::kFlat : Mode::kForced;
        failures = 0;
      }
      continue;
    }
    triangles.add({{corners[from], corners[corner], corners[to]}});
    _next[from] = to;
    _previous[to] = from;
    --left;
    failures = 0;
    if (mode == Mode::kFlat) mode = Mode::kEars;
    // Back by one, where a new ear may be; what is forced becomes a fan around one corner.
    corner = mode == Mode::kForced ? to : from;
  }
  if (mode == Mode::kForced) ++_forced;
}

}  // namespace kova::translators
