#include "apps/kova-generate/StepSolid.h"

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace kova::generate {

namespace {

constexpr Point3D kUp{0, 0, 1};
constexpr Point3D kDown{0, 0, -1};
constexpr Point3D kAlong{1, 0, 0};

Point3D lift(const Point2D& point, double z) { return {point.x, point.y, z}; }

const char* toFlag(bool value) { return value ? ".T." : ".F."; }

class SolidWriter {
 public:
  SolidWriter(StepFile& file, const Prism& prism) : _file(file), _prism(prism) {
    _up = writeDirection(file, kUp);
    _along = writeDirection(file, kAlong);
    _rise = file.Add("VECTOR('',", _up, ",1.)");
  }

  Reference Write() {
    std::vector<Reference> below{WriteLoop(_prism.outline)};
    std::vector<Reference> above{_lastTop};
    for (const Outline& hole : _prism.holes) {
      below.push_back(WriteLoop(hole));
      above.push_back(_lastTop);
    }
    WriteLevelFace(below, _prism.bottom, kDown);
    WriteLevelFace(above, _prism.top, kUp);
    const Reference shell = _file.Add("CLOSED_SHELL('',", toList(_faces), ")");
    return _file.Add("MANIFOLD_SOLID_BREP('',", shell, ")");
  }

 private:
  struct Corner {
    Reference below;
    Reference above;
    Reference upright;
  };

  Reference WriteVertex(const Point2D& point, double z) {
    return _file.Add("VERTEX_POINT('',", writePoint(_file, lift(point, z)), ")");
  }

  Reference Orient(Reference edge, bool isForward) {
    return _file.Add("ORIENTED_EDGE('',*,*,", edge, ",", toFlag(isForward), ")");
  }

  Reference WriteFrameAt(const Point2D& origin, double z) {
    return _file.Add("AXIS2_PLACEMENT_3D('',", writePoint(_file, lift(origin, z)), ",", _up, ",",
                     _along, ")");
  }

  Reference WriteCurve(const Segment& segment, double z) {
    switch (segment.kind) {
      case Segment::Kind::kArc:
        return _file.Add("CIRCLE('',", WriteFrameAt(segment.centre, z), ",", segment.radius, ")");
      case Segment::Kind::kEllipse:
        return _file.Add("ELLIPSE('',", WriteFrameAt(segment.centre, z), ",", segment.radius, ",",
                         segment.minorRadius, ")");
      case Segment::Kind::kSpline: {
        std::vector<Reference> poles;
        for (const Point2D& pole :
             {segment.start, segment.poles[0], segment.poles[1], segment.end}) {
          poles.push_back(writePoint(_file, lift(pole, z)));
        }
        return _file.Add("B_SPLINE_CURVE_WITH_KNOTS('',3,", toList(poles),
                         ",.UNSPECIFIED.,.F.,.F.,(4,4),(0.,1.),.PIECEWISE_BEZIER_KNOTS.)");
      }
      case Segment::Kind::kLine: break;
    }
    const double x = segment.end.x - segment.start.x;
    const double y = segment.end.y - segment.start.y;
    const double length = std::hypot(x, y);
    const Reference direction = writeDirection(_file, {x / length, y / length, 0});
    const Reference vector = _file.Add("VECTOR('',", direction, ",1.)");
    return _file.Add("LINE('',", writePoint(_file, lift(segment.start, z)), ",", vector, ")");
  }

  // The wall over a segment; it looks to the right of the segment's direction.
  Reference WriteSurface(const Segment& segment, Reference curve) {
    switch (segment.kind) {
      case Segment::Kind::kArc:
        return _file.Add("CYLINDRICAL_SURFACE('',", WriteFrameAt(segment.centre, _prism.bottom),
                         ",", segment.radius, ")");
      case Segment::Kind::kEllipse:
      case Segment::Kind::kSpline:
        return _file.Add("SURFACE_OF_LINEAR_EXTRUSION('',", curve, ",", _rise, ")");
      case Segment::Kind::kLine: break;
    }
    const double x = segment.end.x - segment.start.x;
    const double y = segment.end.y - segment.start.y;
    const double length = std::hypot(x, y);
    return _file.Add("PLANE('',",
                     writeFrame(_file, lift(segment.start, _prism.bottom),
                                {y / length, -x / length, 0}, {x / length, y / length, 0}),
                     ")");
  }

  // Writes the walls. Returns the loop that bounds the lower face; _lastTop bounds the upper.
  Reference WriteLoop(const Outline& outline) {
    std::vector<Corner> corners;
    for (const Segment& segment : outline) {
      Corner corner;
      corner.below = WriteVertex(segment.start, _prism.bottom);
      corner.above = WriteVertex(segment.start, _prism.top);
      const Reference line = _file.Add(
          "LINE('',", writePoint(_file, lift(segment.start, _prism.bottom)), ",", _rise, ")");
      corner.upright =
          _file.Add("EDGE_CURVE('',", corner.below, ",", corner.above, ",", line, ",.T.)");
      corners.push_back(corner);
    }
    std::vector<Reference> below;
    std::vector<Reference> above;
    for (std::size_t i = 0; i < outline.size(); ++i) {
      const Segment& segment = outline[i];
      const Corner& start = corners[i];
      const Corner& end = corners[(i + 1) % corners.size()];
      const char* sense = toFlag(!segment.isClockwise);
      const Reference lower = WriteCurve(segment, _prism.bottom);
      const Reference lowerEdge =
          _file.Add("EDGE_CURVE('',", start.below, ",", end.below, ",", lower, ",", sense, ")");
      const Reference upper = WriteCurve(segment, _prism.top);
      const Reference upperEdge =
          _file.Add("EDGE_CURVE('',", start.above, ",", end.above, ",", upper, ",", sense, ")");
      const std::vector<Reference> around{Orient(lowerEdge, true), Orient(end.upright, true),
                                          Orient(upperEdge, false), Orient(start.upright, false)};
      const Reference loop = _file.Add("EDGE_LOOP('',", toList(around), ")");
      const Reference bound = _file.Add("FACE_OUTER_BOUND('',", loop, ",.T.)");
      const Reference surface = WriteSurface(segment, lower);
      _faces.push_back(_file.Add("ADVANCED_FACE('',(", bound, "),", surface, ",", sense, ")"));
      below.insert(below.begin(), Orient(lowerEdge, false));
      above.push_back(Orient(upperEdge, true));
    }
    _lastTop = _file.Add("EDGE_LOOP('',", toList(above), ")");
    return _file.Add("EDGE_LOOP('',", toList(below), ")");
  }

  void WriteLevelFace(const std::vector<Reference>& loops, double z, const Point3D& normal) {
    std::vector<Reference> bounds;
    bounds.reserve(loops.size());
    for (const Reference loop : loops) {
      bounds.push_back(bounds.empty() ? _file.Add("FACE_OUTER_BOUND('',", loop, ",.T.)")
                                      : _file.Add("FACE_BOUND('',", loop, ",.T.)"));
    }
    const Reference plane =
        _file.Add("PLANE('',", writeFrame(_file, {0, 0, z}, normal, kAlong), ")");
    _faces.push_back(_file.Add("ADVANCED_FACE('',", toList(bounds), ",", plane, ",.T.)"));
  }

  StepFile& _file;
  const Prism& _prism;
  Reference _up;
  Reference _along;
  Reference _rise;
  Reference _lastTop;
  std::vector<Reference> _faces;
};

Reference writeCoordinates(StepFile& file, const std::vector<Point3D>& points) {
  std::string text = "(";
  for (const Point3D& point : points) {
    if (text.size() > 1) text += ',';
    text += toList(std::vector<double>{point.x, point.y, point.z});
  }
  return file.Add("COORDINATES_LIST('',", static_cast<int>(points.size()), ",", text, "))");
}

std::string toLists(const std::vector<std::vector<int>>& lists) {
  std::string text = "(";
  for (const std::vector<int>& list : lists) {
    if (text.size() > 1) text += ',';
    text += toList(list);
  }
  return text + ')';
}

}  // namespace

Reference writePoint(StepFile& file, const Point3D& point) {
  return file.Add("CARTESIAN_POINT('',", toList(std::vector<double>{point.x, point.y, point.z}),
                  ")");
}

Reference writeDirection(StepFile& file, const Point3D& direction) {
  return file.Add("DIRECTION('',",
                  toList(std::vector<double>{direction.x, direction.y, direction.z}), ")");
}

Reference writeFrame(StepFile& file, const Point3D& origin, const Point3D& z, const Point3D& x) {
  const Reference point = writePoint(file, origin);
  const Reference axis = writeDirection(file, z);
  return file.Add("AXIS2_PLACEMENT_3D('',", point, ",", axis, ",", writeDirection(file, x), ")");
}

Reference writeSolid(StepFile& file, const Prism& prism) {
  return SolidWriter(file, prism).Write();
}

Reference writeTessellation(StepFile& file, const Prism& prism, Reference solid) {
  std::vector<Point3D> points;
  std::vector<int> upperNumbers;
  std::map<std::pair<double, double>, int> numbers;
  std::vector<std::vector<int>> strips;
  Loop outer;
  std::vector<Loop> holes;
  const auto addLoop = [&](const Outline& outline) {
    std::vector<std::size_t> starts;
    Loop loop = sampleOutline(outline, starts);
    const int first = static_cast<int>(points.size()) + 1;
    for (const Point2D& point : loop) {
      numbers[{point.x, point.y}] = static_cast<int>(upperNumbers.size()) + 1;
      points.push_back(lift(point, prism.bottom));
      points.push_back(lift(point, prism.top));
      upperNumbers.push_back(static_cast<int>(points.size()));
    }
    starts.push_back(loop.size());
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
      std::vector<int> strip;
      for (std::size_t j = starts[i]; j <= starts[i + 1]; ++j) {
        const int lower = first + 2 * static_cast<int>(j % loop.size());
        strip.push_back(lower + 1);
        strip.push_back(lower);
      }
      strips.push_back(strip);
    }
    return loop;
  };
  outer = addLoop(prism.outline);
  for (const Outline& hole : prism.holes) holes.push_back(addLoop(hole));

  std::vector<std::vector<int>> upper;
  std::vector<std::vector<int>> lower;
  for (const auto& [a, b, c] : triangulate(outer, holes)) {
    const int ia = numbers[{a.x, a.y}];
    const int ib = numbers[{b.x, b.y}];
    const int ic = numbers[{c.x, c.y}];
    upper.push_back({ia, ib, ic});
    lower.push_back({2 * ic - 1, 2 * ib - 1, 2 * ia - 1});
  }
  const Reference coordinates = writeCoordinates(file, points);
  const int count = static_cast<int>(points.size());
  const Reference faces[] = {
      file.Add("TRIANGULATED_FACE('',", coordinates, ",", static_cast<int>(upperNumbers.size()),
               ",((0.,0.,1.)),$,", toList(upperNumbers), ",", toLists(upper), ")"),
      file.Add("TRIANGULATED_FACE('',", coordinates, ",", count, ",((0.,0.,-1.)),$,(),",
               toLists(lower), ")"),
      file.Add("COMPLEX_TRIANGULATED_FACE('',", coordinates, ",", count, ",(),$,(),",
               toLists(strips), ",())")};
  return file.Add("TESSELLATED_SOLID('',(", faces[0], ",", faces[1], ",", faces[2], "),", solid,
                  ")");
}

Reference writeTurned(StepFile& file, const std::vector<Point2D>& profile, int sectors) {
  std::vector<Point3D> points{{0, 0, profile.front().y}};
  const std::size_t rings = profile.size() - 2;
  for (std::size_t ring = 1; ring <= rings; ++ring) {
    for (int i = 0; i < sectors; ++i) {
      const double angle = 2 * std::numbers::pi * i / sectors;
      points.push_back(
          {profile[ring].x * std::cos(angle), profile[ring].x * std::sin(angle), profile[ring].y});
    }
  }
  points.push_back({0, 0, profile.back().y});
  const auto number = [&](std::size_t ring, int i) {
    return 2 + static_cast<int>(ring - 1) * sectors + (i + sectors) % sectors;
  };
  const int count = static_cast<int>(points.size());
  std::vector<int> lowerFan{1};
  std::vector<int> upperFan{count};
  for (int i = 0; i <= sectors; ++i) {
    lowerFan.push_back(number(1, -i));
    upperFan.push_back(number(rings, i));
  }
  std::vector<std::vector<int>> strips;
  for (std::size_t ring = 1; ring < rings; ++ring) {
    std::vector<int> strip;
    for (int i = 0; i <= sectors; ++i) {
      strip.push_back(number(ring + 1, i));
      strip.push_back(number(ring, i));
    }
    strips.push_back(strip);
  }
  const Reference coordinates = writeCoordinates(file, points);
  const Reference face =
      file.Add("COMPLEX_TRIANGULATED_FACE('',", coordinates, ",", count, ",(),$,(),",
               toLists(strips), ",", toLists({lowerFan, upperFan}), ")");
  return file.Add("TESSELLATED_SOLID('',(", face, "),$)");
}

}  // namespace kova::generate
