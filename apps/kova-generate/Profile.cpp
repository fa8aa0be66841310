#include "apps/kova-generate/Profile.h"

#include <cmath>
#include <numbers>

namespace kova::generate {

namespace {

using std::numbers::pi;

Point2D polar(Point2D centre, double radius, double angle) {
  return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

Segment makeLine(Point2D start, Point2D end) {
  Segment segment;
  segment.start = start;
  segment.end = end;
  return segment;
}

Segment makeArc(Point2D centre, double radius, Point2D start, Point2D end, bool isClockwise) {
  Segment segment;
  segment.kind = Segment::Kind::kArc;
  segment.start = start;
  segment.end = end;
  segment.centre = centre;
  segment.radius = radius;
  segment.isClockwise = isClockwise;
  return segment;
}

Segment makeSpline(Point2D start, Point2D pole1, Point2D pole2, Point2D end) {
  Segment segment = makeLine(start, end);
  segment.kind = Segment::Kind::kSpline;
  segment.poles[0] = pole1;
  segment.poles[1] = pole2;
  return segment;
}

Point2D rotate(Point2D point, double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return {c * point.x - s * point.y, s * point.x + c * point.y};
}

// How far an arc turns, from 0 exclusive to 2 pi.
double sweepOf(const Segment& arc) {
  if (arc.start.x == arc.end.x && arc.start.y == arc.end.y) return 2 * pi;
  const double from = std::atan2(arc.start.y - arc.centre.y, arc.start.x - arc.centre.x);
  const double to = std::atan2(arc.end.y - arc.centre.y, arc.end.x - arc.centre.x);
  const double sweep = arc.isClockwise ? from - to : to - from;
  return sweep < 0 ? sweep + 2 * pi : sweep;
}

Point2D pointOf(const Segment& segment, double fraction) {
  const double t = fraction;
  const double direction = segment.isClockwise ? -1 : 1;
  switch (segment.kind) {
    case Segment::Kind::kLine: break;
    case Segment::Kind::kArc: {
      const double from =
          std::atan2(segment.start.y - segment.centre.y, segment.start.x - segment.centre.x);
      return polar(segment.centre, segment.radius, from + direction * t * sweepOf(segment));
    }
    case Segment::Kind::kEllipse: {
      const double angle = direction * t * 2 * pi;
      return {segment.centre.x + segment.radius * std::cos(angle),
              segment.centre.y + segment.minorRadius * std::sin(angle)};
    }
    case Segment::Kind::kSpline: {
      const double u = 1 - t;
      const double weights[] = {u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
      return {weights[0] * segment.start.x + weights[1] * segment.poles[0].x +
                  weights[2] * segment.poles[1].x + weights[3] * segment.end.x,
              weights[0] * segment.start.y + weights[1] * segment.poles[0].y +
                  weights[2] * segment.poles[1].y + weights[3] * segment.end.y};
    }
  }
  return {segment.start.x + t * (segment.end.x - segment.start.x),
          segment.start.y + t * (segment.end.y - segment.start.y)};
}

int countChords(const Segment& segment) {
  switch (segment.kind) {
    case Segment::Kind::kArc:
      return static_cast<int>(std::ceil(sweepOf(segment) / (2 * pi) * 48 - 1e-6));
    case Segment::Kind::kEllipse: return 48;
    case Segment::Kind::kSpline: return 4;
    case Segment::Kind::kLine: break;
  }
  return 1;
}

}  // namespace

Outline makeDisc(Point2D centre, double radius) {
  const Point2D start{centre.x + radius, centre.y};
  return {makeArc(centre, radius, start, start, false)};
}

Outline makeHole(Point2D centre, double radius) {
  const Point2D start{centre.x + radius, centre.y};
  return {makeArc(centre, radius, start, start, true)};
}

Outline makeEllipticHole(Point2D centre, double xRadius, double yRadius) {
  const Point2D start{centre.x + xRadius, centre.y};
  Segment segment = makeArc(centre, xRadius, start, start, true);
  segment.kind = Segment::Kind::kEllipse;
  segment.minorRadius = yRadius;
  return {segment};
}

Outline makeRoundedRectangle(Point2D centre, double width, double height, double cornerRadius) {
  const double x = width / 2 - cornerRadius;
  const double y = height / 2 - cornerRadius;
  const Point2D corners[] = {{x, -y}, {x, y}, {-x, y}, {-x, -y}};
  Outline outline;
  for (int i = 0; i < 4; ++i) {
    const Point2D corner{centre.x + corners[i].x, centre.y + corners[i].y};
    const Point2D next{centre.x + corners[(i + 1) % 4].x, centre.y + corners[(i + 1) % 4].y};
    const auto at = [&](Point2D middle, int quarter) {
      const Point2D directions[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
      const Point2D direction = directions[quarter % 4];
      return Point2D{middle.x + cornerRadius * direction.x, middle.y + cornerRadius * direction.y};
    };
    outline.push_back(makeArc(corner, cornerRadius, at(corner, i + 3), at(corner, i), false));
    outline.push_back(makeLine(at(corner, i), at(next, i)));
  }
  return outline;
}

Outline makeHexagon(double acrossFlats) {
  const double radius = acrossFlats / std::sqrt(3.0);
  Outline outline;
  for (int i = 0; i < 6; ++i) {
    outline.push_back(
        makeLine(polar({0, 0}, radius, i * pi / 3), polar({0, 0}, radius, (i + 1) % 6 * pi / 3)));
  }
  return outline;
}

Outline makeTeethOutline(int teeth, double module) {
  const double pressureAngle = 20 * pi / 180;
  const double pitchRadius = module * teeth / 2;
  const double baseRadius = pitchRadius * std::cos(pressureAngle);
  const double tipRadius = pitchRadius + module;
  const double rootRadius = pitchRadius - 1.25 * module;
  // A little backlash keeps the flanks of two gears apart.
  const double half =
      pi / (2 * teeth) + std::tan(pressureAngle) - pressureAngle - 0.02 * module / pitchRadius;
  // The involute b (cos r + r sin r, sin r - r cos r) over the square of the roll angle r, by which
  // its derivative b / 2 (cos r, sin r) does not vanish at the base circle.
  const double square = (tipRadius * tipRadius) / (baseRadius * baseRadius) - 1;
  const double roll = std::sqrt(square);
  const double reach = square * baseRadius / 6;
  const Point2D tip{baseRadius * (std::cos(roll) + roll * std::sin(roll)),
                    baseRadius * (std::sin(roll) - roll * std::cos(roll))};
  const Point2D flank[] = {{baseRadius, 0},
                           {baseRadius + reach, 0},
                           {tip.x - reach * std::cos(roll), tip.y - reach * std::sin(roll)},
                           tip};
  const auto right = [&](Point2D point, double middle) { return rotate(point, middle - half); };
  const auto left = [&](Point2D point, double middle) {
    return rotate({point.x, -point.y}, middle + half);
  };
  const Point2D root{rootRadius, 0};
  Outline outline;
  for (int tooth = 0; tooth < teeth; ++tooth) {
    const double middle = 2 * pi * tooth / teeth;
    const double next = 2 * pi * ((tooth + 1) % teeth) / teeth;
    outline.push_back(makeLine(right(root, middle), right(flank[0], middle)));
    outline.push_back(makeSpline(right(flank[0], middle), right(flank[1], middle),
                                 right(flank[2], middle), right(flank[3], middle)));
    outline.push_back(
        makeArc({0, 0}, tipRadius, right(flank[3], middle), left(flank[3], middle), false));
    outline.push_back(makeSpline(left(flank[3], middle), left(flank[2], middle),
                                 left(flank[1], middle), left(flank[0], middle)));
    outline.push_back(makeLine(left(flank[0], middle), left(root, middle)));
    outline.push_back(makeArc({0, 0}, rootRadius, left(root, middle), right(root, next), false));
  }
  return outline;
}

Loop sampleOutline(const Outline& outline, std::vector<std::size_t>& starts) {
  Loop loop;
  starts.clear();
  for (const Segment& segment : outline) {
    starts.push_back(loop.size());
    loop.push_back(segment.start);
    const int chords = countChords(segment);
    for (int i = 1; i < chords; ++i) {
      loop.push_back(pointOf(segment, static_cast<double>(i) / chords));
    }
  }
  return loop;
}

}  // namespace kova::generate
