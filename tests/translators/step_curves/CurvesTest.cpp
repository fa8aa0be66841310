#include "translators/step/Curves.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <string>

using namespace kova::translators;
using namespace kova::translators::step;

namespace {

using std::numbers::pi;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

double distance(const Point& a, const Point& b) {
  return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

double distanceToChord(const Point& p, const Point& a, const Point& b) {
  const double length = distance(a, b);
  if (length == 0) return distance(p, a);
  double along =
      ((p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y) + (p.z - a.z) * (b.z - a.z)) /
      (length * length);
  along = std::clamp(along, 0.0, 1.0);
  return distance(
      p, {a.x + along * (b.x - a.x), a.y + along * (b.y - a.y), a.z + along * (b.z - a.z)});
}

double distanceToChain(const Point& p, const std::vector<Point>& chain) {
  double least = kInfinity;
  for (std::size_t i = 1; i < chain.size(); ++i) {
    least = std::min(least, distanceToChord(p, chain[i - 1], chain[i]));
  }
  return least;
}

Frame makeFrame() { return Frame{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}; }

Frame makeTiltedFrame() {
  const Point axis{1, 2, 3};
  const Point reference{0, 1, 1};
  return Frame::Make({10, -20, 30}, &axis, &reference);
}

std::vector<double> makeClampedKnots(int degree, int poles) {
  return makeQuasiUniformKnots(degree, poles);
}

// A quarter of a circle of radius 2, exactly.
SpaceCurveHandle makeQuarter() {
  return makeBSpline(2, {{2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {1, std::sqrt(0.5), 1},
                     makeBezierKnots(2, 3));
}

// A circle of radius 2 that closes at (2, 0, 0), counter-clockwise.
SpaceCurveHandle makeRationalCircle() {
  const double w = std::sqrt(0.5);
  return makeBSpline(2,
                     {{2, 0, 0},
                      {2, 2, 0},
                      {0, 2, 0},
                      {-2, 2, 0},
                      {-2, 0, 0},
                      {-2, -2, 0},
                      {0, -2, 0},
                      {2, -2, 0},
                      {2, 0, 0}},
                     {1, w, 1, w, 1, w, 1, w, 1}, makeBezierKnots(2, 9));
}

SpaceCurveHandle makeWave(int degree, int poles) {
  std::vector<Point> points;
  std::vector<double> weights;
  for (int i = 0; i < poles; ++i) {
    points.push_back({10.0 * i, 15 * std::sin(2.4 * i), 5 * std::cos(1.7 * i)});
    weights.push_back(1 + 0.5 * std::sin(i));
  }
  return makeBSpline(degree, points, weights, makeClampedKnots(degree, poles));
}

SpaceCurveHandle makePeriodicSpline() {
  std::vector<Point> poles{{10, 0, 0}, {0, 10, 3}, {-10, 0, 0}, {0, -10, -3}};
  poles.insert(poles.end(), {poles[0], poles[1], poles[2]});
  return makeBSpline(3, poles, {}, makeUniformKnots(3, 7));
}

SpaceCurveHandle makeSlot() {
  const Frame frame = makeFrame();
  const Frame right{{20, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const auto bottom = makePolyline({{0, -5, 0}, {20, -5, 0}});
  const auto arc = makeTrimmed(makeCircle(right, 5), 1.5 * pi, 0.5 * pi, true);
  const auto top = makeTrimmed(makeLine({0, 5, 0}, {2, 0, 0}), 0, 10, true);
  const auto back = makeTrimmed(makeCircle(frame, 5), 1.5 * pi, 0.5 * pi, false);
  return makeComposite({{bottom, true}, {arc, true}, {top, false}, {back, false}});
}

struct Case {
  const char* name;
  SpaceCurveHandle curve;
  double from;
  double to;
  double length;  // 0 when there is no formula for it
};

std::vector<Case> makeCases() {
  const Frame tilted = makeTiltedFrame();
  const double parabolaArc = 3 * (2 * std::sqrt(5) + std::asinh(2));
  std::vector<Case> cases{
      {"line", makeLine({1, 2, 3}, {3, 4, 0}), -2, 5, 35},
      {"circle", makeCircle(tilted, 7), 0, 2 * pi, 14 * pi},
      {"arc across the seam", makeCircle(tilted, 7), 1.8 * pi, 2.3 * pi, 3.5 * pi},
      {"arc backward", makeCircle(tilted, 7), 0.2, -1.3, 10.5},
      // 4 a E(m) with a = 5, m = 1 - 9 / 25
      {"ellipse", makeEllipse(tilted, 5, 3), 0, 2 * pi, 25.526998863398131},
      {"flat ellipse", makeEllipse(tilted, 100, 0.1), 0, 2 * pi, 0},
      {"upright ellipse", makeEllipse(tilted, 3, 5), 0, 2 * pi, 25.526998863398131},
      {"parabola", makeParabola(tilted, 3), 0, 2, parabolaArc},
      {"parabola on both sides", makeParabola(tilted, 3), -2, 2, 2 * parabolaArc},
      {"hyperbola", makeHyperbola(tilted, 4, 2), -1.5, 2.5, 0},
      {"polyline", makePolyline({{0, 0, 0}, {3, 4, 0}, {3, 4, 12}, {0, 4, 12}}), 0.5, 3, 17.5},
      {"quarter", makeQuarter(), 0, 1, pi},
      {"rational circle", makeRationalCircle(), 0, 4, 4 * pi},
      {"rational circle across the seam", makeRationalCircle(), 3, 5, 2 * pi},
      {"quarter backward", makeTrimmed(makeQuarter(), 1, 0, false), 0, 1, pi},
      {"degree 1", makeBSpline(1, {{0, 0, 0}, {0, 8, 0}, {6, 8, 0}}, {}, {0, 0, 2, 7, 7}), 0, 7,
       14},
      {"rational degree 1",
       makeBSpline(1, {{0, 0, 0}, {0, 8, 0}, {6, 8, 0}}, {1, 3, 0.5}, {0, 0, 2, 7, 7}), 0, 7, 14},
      // A narrow bow, in which speed and distance change abruptly.
      {"hairpin",
       makeBSpline(2, {{0, 0, 0}, {100, 1, 0}, {2, 2, 0}, {90, 4, 0}}, {}, {0, 0, 0, 0.3, 1, 1, 1}),
       0, 1, 0},
      // A cubic that runs along a line at a varying speed.
      {"straight cubic",
       makeBSpline(3, {{0, 0, 0}, {1, 0, 0}, {5, 0, 0}, {9, 0, 0}}, {}, makeBezierKnots(3, 4)), 0,
       1, 9},
      {"cusp",
       makeBSpline(3, {{0, 0, 0}, {10, 10, 0}, {0, 10, 0}, {10, 0, 0}}, {}, makeBezierKnots(3, 4)),
       0, 1, 0},
      {"periodic spline", makePeriodicSpline(), 0, 4, 0},
      {"periodic spline across the seam", makePeriodicSpline(), 2.5, 5.25, 0},
      {"slot", makeSlot(), 0, 4, 40 + 10 * pi},
      {"part of a slot", makeSlot(), 0.5, 3.5, 30 + 7.5 * pi},
      {"trimmed twice",
       makeTrimmed(makeTrimmed(makeCircle(tilted, 2), 1.5 * pi, pi, true), 0.25 * pi, 1.25 * pi,
                   true),
       0, pi, 2 * pi},
      {"composite trimmed", makeTrimmed(makeSlot(), 3.5, 1.0, true), 0, 1.5, 20 + 2.5 * pi},
  };
  for (const int degree : {2, 3, 5, 8, 25}) {
    cases.push_back({"wave", makeWave(degree, 30), 0, 30.0 - degree, 0});
  }
  return cases;
}

// Of many chords, with the two finest extrapolated.
double measureRoughly(const Case& item) {
  const auto chords = [&](int count) {
    double sum = 0;
    Point last = item.curve->Evaluate(item.from);
    for (int i = 1; i <= count; ++i) {
      const Point next = item.curve->Evaluate(item.from + (item.to - item.from) * i / count);
      sum += distance(last, next);
      last = next;
    }
    return sum;
  };
  constexpr int kChords = 14400;
  return (4 * chords(2 * kChords) - chords(kChords)) / 3;
}

struct EdgeCase {
  const char* name;
  SpaceCurveHandle curve;
  Point start;
  Point end;
  bool isForward;
  double length;
  Point passes;
};

}  // namespace

TEST(StepCurves, HaveTheirLengthsAndKeepWithinTheLimits) {
  for (const Case& item : makeCases()) {
    SCOPED_TRACE(item.name);
    ASSERT_TRUE(item.curve);
    for (const double tolerance : {0.5, 0.01, 0.001}) {
      ChainLimits limits;
      limits.tolerance = tolerance;
      Chain chain;
      ASSERT_TRUE(sample(*item.curve, item.from, item.to, limits, chain));
      const double expected = item.length > 0 ? item.length : measureRoughly(item);
      EXPECT_NEAR(chain.length, expected, 1e-6 * expected);
      EXPECT_LT(distance(chain.points.front(), item.curve->Evaluate(item.from)), 1e-9);
      EXPECT_LT(distance(chain.points.back(), item.curve->Evaluate(item.to)), 1e-9);

      constexpr int kProbes = 1500;
      double farthest = 0;
      for (int i = 0; i <= kProbes; ++i) {
        const double t = item.from + (item.to - item.from) * i / kProbes;
        farthest = std::max(farthest, distanceToChain(item.curve->Evaluate(t), chain.points));
      }
      EXPECT_LE(farthest, 1.05 * tolerance);
      // Chords never far from the curve, in order and without repetition.
      double way = 0;
      for (std::size_t i = 1; i < chain.points.size(); ++i) {
        const double step = distance(chain.points[i - 1], chain.points[i]);
        EXPECT_GT(step, 0);
        way += step;
      }
      EXPECT_LE(way, chain.length * (1 + 1e-6));
      // A chord that turns by 0.35 is 0.5 % shorter than its arc.
      EXPECT_GE(way, chain.length * 0.99);

      Chain backward;
      ASSERT_TRUE(sample(*item.curve, item.to, item.from, limits, backward));
      EXPECT_NEAR(backward.length, chain.length, 1e-9 * chain.length);
      EXPECT_LT(distance(backward.points.front(), chain.points.back()), 1e-9);
    }
  }
}

TEST(StepCurves, FindTheParametersOfTheirPoints) {
  for (const Case& item : makeCases()) {
    SCOPED_TRACE(item.name);
    constexpr int kProbes = 97;
    for (int i = 0; i <= kProbes; ++i) {
      const double t = item.from + (item.to - item.from) * i / kProbes;
      const Point point = item.curve->Evaluate(t);
      const double found = item.curve->FindParameter(point);
      EXPECT_GE(found, item.curve->GetLow());
      EXPECT_LE(found, item.curve->GetHigh());
      EXPECT_LT(distance(item.curve->Evaluate(found), point), 1e-8) << t;
      // The nearest point, of those that many samples show.
      const Point off{point.x + 0.3, point.y - 0.2, point.z + 0.1};
      const double away = distance(item.curve->Evaluate(item.curve->FindParameter(off)), off);
      for (int j = 0; j <= 400; ++j) {
        const double other = item.from + (item.to - item.from) * j / 400;
        EXPECT_LE(away, distance(item.curve->Evaluate(other), off) + 1e-9) << t;
      }
      const double h = 1e-6;
      if (i == 0 || i == kProbes) continue;
      const Point before = item.curve->Evaluate(t - h);
      const Point after = item.curve->Evaluate(t + h);
      const Point slope = item.curve->EvaluateDerivative(t);
      const double scale = distance(slope, {0, 0, 0}) + 1;
      if (std::string(item.name) != "polyline") {
        EXPECT_NEAR(slope.x, (after.x - before.x) / (2 * h), 1e-4 * scale);
        EXPECT_NEAR(slope.y, (after.y - before.y) / (2 * h), 1e-4 * scale);
        EXPECT_NEAR(slope.z, (after.z - before.z) / (2 * h), 1e-4 * scale);
      }
    }
  }
}

TEST(StepCurves, FollowTheEdgeFromVertexToVertex) {
  const auto circle = makeCircle(makeFrame(), 2);
  const auto nurbs = makeRationalCircle();
  const auto arc = makeTrimmed(circle, 1.75 * pi, 0.75 * pi, true);
  const auto spline =
      makeBSpline(3, {{0, 0, 0}, {0, 9, 0}, {9, 9, 0}, {9, 0, 0}}, {}, makeBezierKnots(3, 4));
  const double h = std::sqrt(2);
  // An almost closed curve: its ends are 0.004 apart.
  const auto gap = makeTrimmed(circle, 0, 2 * pi - 0.002, true);
  std::vector<EdgeCase> cases;
  for (const auto& ring : {circle, nurbs}) {
    cases.insert(
        cases.end(),
        {{"whole", ring, {2, 0, 0}, {2, 0, 0}, true, 4 * pi, {0, 2, 0}},
         {"whole, backward", ring, {2, 0, 0}, {2, 0, 0}, false, 4 * pi, {0, 2, 0}},
         {"whole from elsewhere", ring, {-h, h, 0}, {-h, h, 0}, true, 4 * pi, {2, 0, 0}},
         {"whole, vertices apart by noise",
          ring,
          {2, 0, 0},
          {2, 1e-9, 0},
          true,
          4 * pi,
          {-2, 0, 0}},
         {"whole, noise the other way", ring, {2, 1e-9, 0}, {2, 0, 0}, true, 4 * pi, {-2, 0, 0}},
         {"quarter", ring, {2, 0, 0}, {0, 2, 0}, true, pi, {h, h, 0}},
         {"the other three", ring, {2, 0, 0}, {0, 2, 0}, false, 3 * pi, {-h, -h, 0}},
         {"ends at the seam", ring, {0, -2, 0}, {2, 0, 0}, true, pi, {h, -h, 0}},
         {"begins at the seam, backward", ring, {2, 0, 0}, {0, -2, 0}, false, pi, {h, -h, 0}},
         {"across the seam", ring, {0, -2, 0}, {0, 2, 0}, true, 2 * pi, {2, 0, 0}},
         {"across the seam, backward", ring, {0, 2, 0}, {0, -2, 0}, false, 2 * pi, {2, 0, 0}},
         {"vertices off the curve", ring, {2.001, 0, 0.001}, {0, 1.999, 0}, true, pi, {h, h, 0}}});
  }
  cases.insert(
      cases.end(),
      {{"line", makeLine({0, 0, 0}, {0, 0, 5}), {0, 0, 3}, {0, 0, -4}, true, 7, {0, 0, 0}},
       {"arc", arc, {h, -h, 0}, {-h, h, 0}, true, 2 * pi, {2, 0, 0}},
       {"arc against its direction", arc, {-h, h, 0}, {h, -h, 0}, false, 2 * pi, {2, 0, 0}},
       {"part of an arc", arc, {2, 0, 0}, {0, 2, 0}, true, pi, {h, h, 0}},
       {"gap, same vertex", gap, {2, 0, 0}, {2, 0, 0}, true, 4 * pi - 0.004, {-2, 0, 0}},
       {"gap, from the wrong end", gap, {2, -0.003, 0}, {0, 2, 0}, true, pi, {h, h, 0}},
       {"spline", spline, {0, 0, 0}, {9, 0, 0}, true, 18.0, {4.5, 6.75, 0}},
       {"slot, across its seam",
        makeSlot(),
        {0, 5, 0},
        {10, -5, 0},
        true,
        5 * pi + 10,
        {-5, 0, 0}}});
  for (const EdgeCase& item : cases) {
    SCOPED_TRACE(item.name);
    Chain chain;
    ASSERT_TRUE(sampleEdge(*item.curve, item.start, item.end, item.isForward, {}, chain));
    EXPECT_EQ(chain.points.front(), item.start);
    EXPECT_EQ(chain.points.back(), item.end);
    EXPECT_NEAR(chain.length, item.length, std::max(0.002, 1e-6 * item.length));
    EXPECT_LT(distanceToChain(item.passes, chain.points), 0.011);
  }
}

TEST(StepCurves, UseAsFewPointsAsTheLimitsAllow) {
  const auto count = [](const SpaceCurveHandle& curve, double from, double to,
                        const ChainLimits& limits) {
    Chain chain;
    EXPECT_TRUE(sample(*curve, from, to, limits, chain));
    return chain.points.size();
  };
  ChainLimits limits;
  EXPECT_EQ(count(makeLine({0, 0, 0}, {1, 0, 0}), -1e6, 1e6, limits), 2U);
  EXPECT_EQ(count(makeCircle(makeFrame(), 0.001), 0, 2 * pi, limits), 21U);
  EXPECT_LE(count(makeCircle(makeFrame(), 1000), 0, 2 * pi, limits), 710U);
  EXPECT_LE(count(makeQuarter(), 0, 1, limits), 17U);
  EXPECT_LE(count(makeWave(3, 30), 0, 27, limits), 2000U);
  // Whatever the curve, no more than asked for, and spread over all of it.
  std::vector<Point> zigzag;
  for (int i = 0; i < 1000; ++i) zigzag.push_back({static_cast<double>(i), i % 2 * 1.0, 0});
  const auto polyline = makePolyline(zigzag);
  for (const int most : {2, 3, 7, 100}) {
    limits.mostPoints = most;
    for (const auto& [curve, end] : {std::pair(polyline, 999.0),
                                     {makeWave(5, 40), 35.0},
                                     {makeCircle(makeFrame(), 9), 2 * pi}}) {
      Chain chain;
      ASSERT_TRUE(sample(*curve, 0, end, limits, chain));
      EXPECT_LE(chain.points.size(), static_cast<std::size_t>(most));
    }
    Chain chain;
    ASSERT_TRUE(sample(*polyline, 0, 999, limits, chain));
    EXPECT_NEAR(chain.length, 999 * std::sqrt(2), 1e-9);
    for (std::size_t i = 1; i < chain.points.size(); ++i) {
      EXPECT_LE(chain.points[i].x - chain.points[i - 1].x, 2 + 999.0 / (most - 1));
    }
  }
}

TEST(StepCurves, KeepTheExtremesOfClosedConics) {
  Chain chain;
  ASSERT_TRUE(sample(*makeEllipse(makeFrame(), 5, 3), 0.1, 0.1 + 2 * pi, {}, chain));
  const auto [left, right] = std::minmax_element(chain.points.begin(), chain.points.end(),
                                                 [](auto& a, auto& b) { return a.x < b.x; });
  EXPECT_DOUBLE_EQ(left->x, -5);
  EXPECT_DOUBLE_EQ(right->x, 5);
}

TEST(StepCurves, FramesReplaceWhatIsMissingOrDegenerate) {
  const Point zero{0, 0, 0};
  const Point x{7, 0, 0};
  const Point minusX{-1, 0, 0};
  const Point tiny{0, 3e-310, 0};
  const Point skew{1, 1, 0};
  struct {
    const Point* axis;
    const Point* reference;
    Point expectedX;
    Point expectedZ;
  } const cases[] = {{nullptr, nullptr, {1, 0, 0}, {0, 0, 1}}, {&zero, &zero, {1, 0, 0}, {0, 0, 1}},
                     {&x, nullptr, {0, 1, 0}, {1, 0, 0}},      {&minusX, &x, {0, 1, 0}, {-1, 0, 0}},
                     {&tiny, nullptr, {1, 0, 0}, {0, 1, 0}},   {&x, &skew, {0, 1, 0}, {1, 0, 0}},
                     {nullptr, &tiny, {0, 1, 0}, {0, 0, 1}}};
  for (const auto& item : cases) {
    const Frame frame = Frame::Make(zero, item.axis, item.reference);
    EXPECT_LT(distance(frame.x, item.expectedX), 1e-15);
    EXPECT_LT(distance(frame.z, item.expectedZ), 1e-15);
    const Point y{frame.z.y * frame.x.z - frame.z.z * frame.x.y,
                  frame.z.z * frame.x.x - frame.z.x * frame.x.z,
                  frame.z.x * frame.x.y - frame.z.y * frame.x.x};
    EXPECT_LT(distance(frame.y, y), 1e-15);
  }
}

TEST(StepCurves, KnotsOfTheFormsThatComeWithout) {
  EXPECT_EQ(makeUniformKnots(2, 4), (std::vector<double>{-2, -1, 0, 1, 2, 3, 4}));
  EXPECT_EQ(makeQuasiUniformKnots(2, 4), (std::vector<double>{0, 0, 0, 1, 2, 2, 2}));
  EXPECT_EQ(makeBezierKnots(2, 5), (std::vector<double>{0, 0, 0, 1, 1, 2, 2, 2}));
  EXPECT_TRUE(makeBezierKnots(2, 4).empty());
  EXPECT_TRUE(makeUniformKnots(4, 4).empty());
  EXPECT_TRUE(makeQuasiUniformKnots(0, 4).empty());
}

TEST(StepCurves, AreRefusedWhereTheyAreNone) {
  const Frame frame = makeFrame();
  Frame broken = frame;
  broken.x.y = kNoNumber;
  const std::vector<Point> poles{{0, 0, 0}, {1, 1, 0}, {2, 0, 0}};
  const std::vector<double> knots{0, 0, 0, 1, 1, 1};
  const auto line = makeLine({0, 0, 0}, {1, 0, 0});
  const SpaceCurveHandle refused[] = {
      makeLine({0, 0, 0}, {0, 0, 0}),
      makeLine({0, kInfinity, 0}, {1, 0, 0}),
      makeCircle(frame, 0),
      makeCircle(broken, 1),
      makeEllipse(frame, 1, -1),
      makeHyperbola(frame, kNoNumber, 1),
      makeParabola(frame, kInfinity),
      makePolyline({}),
      makePolyline({{1, 1, 1}}),
      makePolyline({{1, 1, 1}, {1, 1, 1}}),
      makeBSpline(0, poles, {}, knots),
      makeBSpline(3, poles, {}, knots),
      makeBSpline(1000, poles, {}, knots),
      makeBSpline(1 << 30, poles, {}, knots),
      makeBSpline(2, poles, {1, 1}, knots),
      makeBSpline(2, poles, {1, 0, 1}, knots),
      makeBSpline(2, poles, {1, kNoNumber, 1}, knots),
      makeBSpline(2, poles, {}, {0, 0, 0, 1, 1}),
      makeBSpline(2, poles, {}, {0, 0, 0, 1, 0.5, 1}),
      makeBSpline(2, poles, {}, {0, 0, 0, 0, 0, 0}),
      makeBSpline(2, {{0, 0, 0}, {kInfinity, 0, 0}, {1, 0, 0}}, {}, knots),
      makeTrimmed(line, 1, 1, true),
      makeTrimmed(line, 0, kNoNumber, true),
      makeTrimmed(nullptr, 0, 1, true),
      makeComposite({}),
      makeComposite({{line, true}}),
      makeComposite({{nullptr, true}})};
  for (std::size_t i = 0; i < std::size(refused); ++i) EXPECT_FALSE(refused[i]) << i;
}

TEST(StepCurves, BearHostileNumbersInShortTime) {
  std::vector<SpaceCurveHandle> curves;
  for (const double size : {1e-310, 1e-200, 1e-9, 1e9, 1e200, 1e308}) {
    const Frame frame = Frame::Make({size, -size, size}, nullptr, nullptr);
    curves.insert(curves.end(),
                  {makeLine({size, 0, 0}, {size, 1, 0}), makeCircle(frame, size),
                   makeEllipse(frame, size, 1), makeHyperbola(frame, size, 1),
                   makeParabola(frame, size), makePolyline({{0, 0, 0}, {size, size, 0}, {0, 1, 0}}),
                   makeBSpline(2, {{0, 0, 0}, {size, 1, 0}, {0, size, 1}}, {1, size, 1},
                               {0, 0, 0, size, size, size}),
                   makeBSpline(2, {{0, 0, 0}, {size, 1, 0}, {0, size, 1}, {1, 0, 0}}, {},
                               {0, 0, 0, size, 1 + size, 1 + size, 1 + size})});
  }
  // Turns back at every knot, with knots that no parameter is between.
  std::vector<Point> poles;
  for (int i = 0; i < 120; ++i) poles.push_back({i % 2 * 1e6, i % 3 * -1e6, i % 7 * 1e6});
  curves.push_back(makeBSpline(25, poles, {}, makeQuasiUniformKnots(25, 120)));
  curves.push_back(
      makeBSpline(32, {poles.begin(), poles.begin() + 33}, {}, makeBezierKnots(32, 33)));
  curves.push_back(makeBSpline(3, {4, Point{1, 1, 1}}, {}, makeBezierKnots(3, 4)));
  std::vector<double> knots(124, 0.0);
  std::fill(knots.begin() + 60, knots.end(), 1.0);
  curves.push_back(makeBSpline(3, poles, {}, knots));
  // Wrapped deeper and deeper, and doubled every time.
  SpaceCurveHandle nested = makePolyline({{0, 0, 0}, {1, 0, 0}, {0, 0, 0}});
  int levels = 0;
  for (; nested && levels < 100000; ++levels) {
    curves.push_back(nested);
    nested = makeComposite({{nested, true}, {nested, levels % 2 == 0}});
  }
  EXPECT_LT(levels, 100);
  nested = makeQuarter();
  for (levels = 0; nested && levels < 100000; ++levels) {
    curves.push_back(nested);
    nested = makeTrimmed(nested, 0, 1, levels % 2 == 0);
    if (levels % 3 == 0) nested = makeComposite({{nested, true}});
  }
  EXPECT_LT(levels, 200);

  for (std::size_t i = 0; i < curves.size(); ++i) {
    if (!curves[i]) continue;
    for (const double tolerance : {0.01, kNoNumber}) {
      ChainLimits limits;
      limits.tolerance = tolerance;
      limits.angle = tolerance;
      limits.mostPoints = 1000;
      const auto start = std::chrono::steady_clock::now();
      Chain chain;
      for (const auto& [from, to] : {std::pair(0.0, 1.0),
                                     {-700.0, 700.0},
                                     {-1e300, 1e300},
                                     {kNoNumber, 1.0},
                                     {0.0, kInfinity}}) {
        if (!sample(*curves[i], from, to, limits, chain)) continue;
        EXPECT_LE(chain.points.size(), 1000U);
        for (const Point& p : chain.points) {
          ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) << i;
        }
      }
      for (const Point& p : {Point{0, 0, 0}, {1e300, -1e300, 0}, {1, 1, 1}}) {
        sampleEdge(*curves[i], p, {1e-300, 1, 5}, true, limits, chain);
        sampleEdge(*curves[i], p, p, false, limits, chain);
      }
      const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
      EXPECT_LT(took.count(), 5.0) << "curve " << i << ", tolerance " << tolerance;
    }
  }
}
