#include "apps/kova-generate/Triangulation.h"

#include <algorithm>
#include <stdexcept>

namespace kova::generate {

namespace {

// Twice the area of the triangle, positive when it is counter-clockwise.
double area(const Point2D& a, const Point2D& b, const Point2D& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool isSame(const Point2D& a, const Point2D& b) { return a.x == b.x && a.y == b.y; }

bool isInside(const Point2D& p, const Point2D& a, const Point2D& b, const Point2D& c) {
  return area(a, b, p) >= 0 && area(b, c, p) >= 0 && area(c, a, p) >= 0;
}

bool crosses(const Point2D& a, const Point2D& b, const Point2D& c, const Point2D& d) {
  return area(a, b, c) * area(a, b, d) < 0 && area(c, d, a) * area(c, d, b) < 0;
}

bool isFree(const Point2D& a, const Point2D& b, const Loop& loop) {
  for (std::size_t i = 0; i < loop.size(); ++i) {
    if (crosses(a, b, loop[i], loop[(i + 1) % loop.size()])) return false;
  }
  return true;
}

// Joins the hole to the outline by a cut from the hole's rightmost point to the nearest point of
// the outline that it can see.
void cutOpen(Loop& outline, const Loop& hole, const std::vector<Loop>& holes) {
  const auto rightmost = std::max_element(
      hole.begin(), hole.end(), [](const Point2D& a, const Point2D& b) { return a.x < b.x; });
  const Point2D from = *rightmost;
  std::size_t best = outline.size();
  double least = 0;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const Point2D& to = outline[i];
    const double distance = (to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y);
    if (to.x < from.x || (best != outline.size() && distance >= least)) continue;
    const bool isVisible = isFree(from, to, outline) &&
                           std::all_of(holes.begin(), holes.end(),
                                       [&](const Loop& other) { return isFree(from, to, other); });
    if (!isVisible) continue;
    best = i;
    least = distance;
  }
  if (best == outline.size()) throw std::logic_error("a hole lies outside its outline");
  // outline up to the cut, the hole once around, and back over the cut.
  Loop detour(rightmost, hole.end());
  detour.insert(detour.end(), hole.begin(), rightmost + 1);
  detour.push_back(outline[best]);
  outline.insert(outline.begin() + static_cast<std::ptrdiff_t>(best) + 1, detour.begin(),
                 detour.end());
}

bool isEar(const Loop& loop, std::size_t i) {
  const Point2D& before = loop[(i + loop.size() - 1) % loop.size()];
  const Point2D& tip = loop[i];
  const Point2D& after = loop[(i + 1) % loop.size()];
  if (area(before, tip, after) <= 0) return false;
  return std::none_of(loop.begin(), loop.end(), [&](const Point2D& p) {
    return !isSame(p, before) && !isSame(p, tip) && !isSame(p, after) &&
           isInside(p, before, tip, after);
  });
}

}  // namespace

std::vector<std::array<Point2D, 3>> triangulate(const Loop& outline,
                                                const std::vector<Loop>& holes) {
  std::vector<Loop> waiting = holes;
  const auto rightEnd = [](const Loop& loop) {
    return std::max_element(loop.begin(), loop.end(),
                            [](const Point2D& a, const Point2D& b) { return a.x < b.x; })
        ->x;
  };
  // From the right: then no cut leads through a hole that waits.
  std::sort(waiting.begin(), waiting.end(),
            [&](const Loop& a, const Loop& b) { return rightEnd(a) > rightEnd(b); });
  Loop rest = outline;
  for (const Loop& hole : waiting) cutOpen(rest, hole, waiting);

  std::vector<std::array<Point2D, 3>> triangles;
  std::size_t at = 0;
  std::size_t misses = 0;
  while (rest.size() > 3) {
    if (misses > rest.size()) throw std::logic_error("an outline crosses itself");
    at %= rest.size();
    if (!isEar(rest, at)) {
      ++at;
      ++misses;
      continue;
    }
    misses = 0;
    triangles.push_back(
        {rest[(at + rest.size() - 1) % rest.size()], rest[at], rest[(at + 1) % rest.size()]});
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(at));
    // Every other corner first: fewer long slivers.
    ++at;
  }
  if (rest.size() == 3) triangles.push_back({rest[0], rest[1], rest[2]});
  return triangles;
}

}  // namespace kova::generate
