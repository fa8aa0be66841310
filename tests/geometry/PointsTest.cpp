#include "kovabase/foundation/Gk_ErrMgr.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/geometry/Gk_Def.h"
#include "kovabase/geometry/KOVADirectionf.h"
#include "kovabase/geometry/KOVAMorph2D.h"
#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/geometry/KOVAPoint2D.h"
#include "kovabase/geometry/KOVAPoint3D.h"
#include "kovabase/geometry/KOVAVector.h"
#include "kovabase/geometry/KOVAVectorf.h"
#include "kovabase/geometry/KOVAWeightPoint2D.h"
#include "kovabase/geometry/KOVAWeightPoint3D.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <string>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = std::numbers::pi;
constexpr float kPif = std::numbers::pi_v<float>;

template <class Point>
std::string textOf(const Point& point) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  formatter << point;
  return stream.GetBytes();
}

TEST(KOVAPoint, KeepsItsDimensionAndReadsZeroOutside) {
  const int dimensions[][2] = {{-1, 0}, {0, 0}, {1, 1}, {3, 3}, {4, 3}};
  for (const auto& [asked, got] : dimensions) EXPECT_EQ(KOVAPoint(asked).GetDimension(), got);

  KOVAPoint2D point(3, 4);
  const KOVAPoint& constant = point;
  for (const int index : {-1, 2, 3}) {
    EXPECT_EQ(constant[index], 0);
    point[index] = 7;
    EXPECT_EQ(point[index], 0) << "what is written outside is gone at the next look";
  }
  EXPECT_EQ(textOf(point), "(3, 4)");
  EXPECT_EQ(point.Length(), 5);
  EXPECT_EQ(textOf(KOVAPoint(0)), "()");
}

TEST(KOVAPoint, MixedDimensionsRunOverThisPoint) {
  const KOVAPoint2D flat(10, 20);
  const KOVAPoint3D deep(1, 2, 3);

  KOVAPoint3D sum(deep);
  sum.Add(flat);
  EXPECT_EQ(textOf(sum), "(11, 22, 3)");
  sum.Substract(deep);
  EXPECT_EQ(textOf(sum), "(10, 20, 0)");
  EXPECT_EQ(deep.DistanceTo(KOVAPoint2D(1, 2)), 3);
  EXPECT_EQ(KOVAPoint2D(1, 2).DistanceTo(deep), 0);

  KOVAPoint3D target(7, 8, 9);
  flat.CopyIn(target);
  EXPECT_EQ(textOf(target), "(10, 20, 9)");
  KOVAPoint& base = target;
  base = flat;
  EXPECT_EQ(textOf(target), "(10, 20, 0)") << "assignment keeps the dimension";

  KOVAPoint3D placed(deep);
  placed.KOVAPoint3D::Transform(KOVAAffine2D());
  static_cast<KOVAPoint&>(placed).Transform(KOVAMorph2D(2));
  EXPECT_EQ(textOf(placed), "(1, 2, 3)") << "a transform of another dimension does nothing";
}

TEST(KOVAPoint, HandlesHoldTheObjectAndNotItsCopies) {
  const KOVAPoint3DHandle handle(new KOVAPoint3D(1, 2, 3));
  KOVAPoint3DHandle second(handle);
  KOVAPoint3D copy(*second.operator->());
  EXPECT_EQ(handle->GetCount(), 2U);
  EXPECT_EQ(copy.GetCount(), 0U);
  *second.operator->() = KOVAPoint3D(4, 5, 6);
  EXPECT_EQ(handle->GetCount(), 2U);
  EXPECT_STREQ(copy.GetName(), "KOVAPoint3D");
}

TEST(KOVAPoint, ToleranceIsABoxThatIncludesItsFaces) {
  const KOVAPoint3D point(1, 2, 3);
  const struct {
    KOVAPoint3D other;
    double tolerance;
    bool isWithin;
  } cases[] = {
      {{1.5, 2.5, 3.5}, 0.5, true}, {{1.5, 2.5, 3.5}, -0.5, true}, {{1, 2, 3.5000001}, 0.5, false},
      {{1, 2, 3}, 0, true},         {{kNaN, 2, 3}, 0.5, false},    {{1, 2, 3}, kNaN, false},
  };
  for (const auto& [other, tolerance, isWithin] : cases) {
    EXPECT_EQ(point.IsWithinTolerance(other, tolerance), isWithin) << textOf(other);
    EXPECT_EQ(point.IsWithinTolerance(other, KOVAPoint3D(tolerance, tolerance, tolerance)),
              isWithin);
  }
  EXPECT_TRUE(point.IsWithinTolerance(KOVAPoint3D(1.25, 2, 2), KOVAPoint3D(0.25, 0, -1)));
  EXPECT_FALSE(point.IsWithinTolerance(KOVAPoint3D(1.25, 2, 2), KOVAPoint2D(0.25, 0)));
  EXPECT_TRUE(KOVAPoint(0).IsWithinTolerance(point, -1));
}

TEST(KOVAPoint, QueriesStopOnceWhenAskedToAbort) {
  const KOVAPoint3D point(1, 2, 3);
  Gk_ErrMgr::setAbort();
  EXPECT_THROW(point.DistanceTo(point), KOVAAbortException);
  EXPECT_EQ(point.DistanceTo(point), 0);
  Gk_ErrMgr::setAbort();
  EXPECT_THROW(point.IsWithinTolerance(point, 1), KOVAAbortException);
  Gk_ErrMgr::setAbort();
  EXPECT_THROW(point.IsWithinTolerance(point, point), KOVAAbortException);
}

TEST(KOVAPoint, ArithmeticGoesCoordinateByCoordinate) {
  const KOVAPoint3D a(1, 2, 3);
  const KOVAPoint3D b(4, -5, 6);
  EXPECT_EQ(textOf(a + b), "(5, -3, 9)");
  EXPECT_EQ(textOf(a - b), "(-3, 7, -3)");
  EXPECT_EQ(textOf(-b), "(-4, 5, -6)");
  EXPECT_EQ(textOf(a * 2), "(2, 4, 6)");
  EXPECT_EQ(textOf(2 * a), "(2, 4, 6)");
  EXPECT_EQ(textOf(a / 2), "(0.5, 1, 1.5)");
  EXPECT_EQ(a * b, 12);
  EXPECT_EQ(textOf(KOVAPoint3D::VectorProduct(a, b)), "(27, 6, -13)");
  EXPECT_EQ(textOf(KOVAPoint3D(3, 0, 4).Normalize()), "(0.6, 0, 0.8)");
  EXPECT_EQ(textOf(KOVAPoint3D().Normalize()), "(0, 0, 0)");
  EXPECT_EQ(textOf(KOVAPoint2D(3, 4).Orthogonalize()), "(-4, 3)");
  EXPECT_EQ(textOf(-KOVAPoint2D(3, 4) + KOVAPoint2D(1, 1)), "(-2, -3)");

  KOVAPoint3D point(a);
  point.Shift(b);
  point *= 2;
  point -= a;
  point /= 3;
  EXPECT_EQ(textOf(point), "(3, -2.6666666666666665, 5)");
  double coordinates[3];
  KOVAGetDoublesFromKOVAPoint3D(a, coordinates);
  KOVAGetDoublesFromKOVAPoint3D(a, nullptr);
  EXPECT_EQ(textOf(KOVAPoint3D(coordinates)), "(1, 2, 3)");
  EXPECT_EQ(textOf(KOVAPoint3D(nullptr)), "(0, 0, 0)");
}

TEST(KOVAPoint, PerpendicularsAreExact) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal;
  for (int i = 0; i < 1000; ++i) {
    KOVAPoint3D point(normal(random), normal(random), normal(random));
    if (i < 3) point = KOVAPoint3D(i == 0, i == 1, i == 2);
    const KOVAPoint3D perpendicular = point.Orthogonalize();
    EXPECT_EQ(point * perpendicular, 0) << textOf(point);
    EXPECT_GE(perpendicular.Length(), 0.8 * point.Length());
  }
}

TEST(KOVAWeightPoint, StoresCoordinatesTimesTheWeight) {
  const KOVAPoint3D point(1, 2, 4);
  const struct {
    double weight;
    bool premultiply;
    const char* stored;
    const char* cartesian;
  } cases[] = {
      {2, true, "(2, 4, 8)", "(1, 2, 4)"},     {2, false, "(1, 2, 4)", "(0.5, 1, 2)"},
      {0.5, true, "(0.5, 1, 2)", "(1, 2, 4)"}, {-2, true, "(-2, -4, -8)", "(1, 2, 4)"},
      {1, true, "(1, 2, 4)", "(1, 2, 4)"},     {0, true, "(0, 0, 0)", "(0, 0, 0)"},
      {0, false, "(1, 2, 4)", "(1, 2, 4)"},
  };
  for (const auto& [weight, premultiply, stored, cartesian] : cases) {
    const KOVAWeightPoint3D weighted(point, weight, premultiply);
    EXPECT_EQ(textOf(weighted.GetWeightedCoords()), stored);
    EXPECT_EQ(textOf(weighted.GetCoords()), cartesian);
  }

  KOVAWeightPoint2D flat(KOVAPoint2D(3, 4), 2, true);
  flat.SetWeight(4);
  EXPECT_EQ(textOf(flat), "(6, 8) weight 4") << "the stored coordinates stay";
  EXPECT_EQ(flat.Length(), 10);
  EXPECT_EQ(textOf(2 * (flat + KOVAWeightPoint2D(9))), "(12, 16) weight 4")
      << "the left operand's weight";
}

TEST(KOVAWeightPoint, TransformsMoveTheCartesianPoint) {
  KOVAAffine3D turn;
  turn.SetElement(0, 0, 0);
  turn.SetElement(0, 1, -1);
  turn.SetElement(1, 0, 1);
  turn.SetElement(1, 1, 0);
  const KOVAMorph3D morph(turn, KOVAPoint3D(10, 20, 30), 2);
  for (const double weight : {0.5, 1.0, 2.0, -4.0}) {
    for (const bool noTranslation : {false, true}) {
      KOVAPoint3D point(1, 2, 3);
      KOVAWeightPoint3D weighted(point, weight, true);
      point.Transform(morph, noTranslation);
      static_cast<KOVAPoint&>(weighted).Transform(morph, noTranslation);
      EXPECT_EQ(textOf(weighted.GetCoords()), textOf(point));
      point.Transform(turn);
      weighted.Transform(turn);
      EXPECT_EQ(textOf(weighted.GetCoords()), textOf(point));
      EXPECT_EQ(weighted.GetWeight(), weight);
    }
  }
  KOVAWeightPoint3D atInfinity(KOVAPoint3D(1, 0, 0), 0, false);
  atInfinity.Transform(morph);
  EXPECT_EQ(textOf(atInfinity), "(0, 2, 0) weight 0") << "a direction is not translated";
}

template <class Vector, class T>
void expectComponents(const Vector& vector, T x, T y, T z) {
  EXPECT_EQ(vector[0], x);
  EXPECT_EQ(vector[1], y);
  EXPECT_EQ(vector[2], z);
}

TEST(KOVAVector, TinyAndUndefinedVectorsBecomeTheXAxis) {
  expectComponents(KOVAVector(0, 3, 4).Normalize(), 0.0, 0.6, 0.8);
  expectComponents(KOVAVector(0, 0, 2e-14).Normalize(), 0.0, 0.0, 1.0);
  expectComponents(KOVAVectorf(0, 0, 1.1e-7F).Normalize(), 0.0F, 0.0F, 1.0F);
  // The double form looks at the length, the single one at its square.
  const double tiny[][3] = {{0, 0, 0}, {0, 1e-15, 0}, {0, 9.9999998245167e-15, 0}, {0, kNaN, 0}};
  for (const auto& components : tiny) {
    KOVAVector vector(components);
    vector.Normalize();
    expectComponents(vector, 1.0, 0.0, 0.0);
  }
  for (const float y : {0.0F, 1e-8F, -9.9e-8F, std::numeric_limits<float>::quiet_NaN()}) {
    expectComponents(KOVAVectorf(0, y, 0).Normalize(), 1.0F, 0.0F, 0.0F);
    expectComponents(KOVADirectionf(0, 0, y).Normalize(), 1.0F, 0.0F, 0.0F);
  }
}

template <class Vector>
void expectUndirectedEquality() {
  const Vector x(1, 0, 0);
  EXPECT_TRUE(x == Vector(-1, 0, 0)) << "a line has no direction";
  EXPECT_TRUE(x == Vector(1.0000001F, 0, 0));
  EXPECT_FALSE(x == Vector(1, 0.01F, 0));
  EXPECT_FALSE(x == Vector(2, 0, 0)) << "but a length";
  EXPECT_TRUE(Vector() == Vector(0, 0, 5e-7F));
  Gk_Def::FuzzPos = 0.1;
  EXPECT_TRUE(x == Vector(1, 0.01F, 0)) << "the tolerance is read at each comparison";
  Gk_Def::FuzzPos = 1e-6;
}

TEST(KOVAVector, EqualityIsThatOfUndirectedLines) {
  expectUndirectedEquality<KOVAVector>();
  expectUndirectedEquality<KOVAVectorf>();
  expectUndirectedEquality<KOVADirectionf>();
}

TEST(KOVAVector, AnglesKeepTheirDigits) {
  const KOVAVector x(1, 0, 0);
  EXPECT_EQ(x.AngleTo(KOVAVector(0, 2, 0)), kPi / 2);
  EXPECT_EQ(x.AngleTo(KOVAVector(-1, 0, 0)), kPi);
  EXPECT_EQ(x.AngleTo(KOVAVector(1, 1e-9, 0)), 1e-9) << "an arc cosine would say 0";
  EXPECT_EQ(x.AngleTo(KOVAVector()), 0);

  const KOVAVectorf xf(1, 0, 0);
  const KOVAVectorf yf(0, 1, 0);
  const KOVAVectorf zf(0, 0, 1);
  EXPECT_EQ(xf.AngleTo(yf), kPif / 2);
  EXPECT_EQ(xf.AngleTo(KOVAVectorf()), 0);
  EXPECT_EQ(xf.AngleTo(yf, zf), kPif / 2);
  EXPECT_EQ(xf.AngleTo(yf, -zf), -kPif / 2);
  EXPECT_EQ(yf.AngleTo(xf, zf), -kPif / 2);
}

TEST(KOVAVector, ArithmeticAndPoints) {
  const KOVAVector a(1, 2, 3);
  const KOVAVector b(4, -5, 6);
  expectComponents((a ^ b) + 2 * a - b * 2 / 4 - -a, 28.0, 14.5, -7.0);
  EXPECT_EQ(a * b, 12);
  EXPECT_EQ(KOVAVector(2, 3, 6).Magnitude(), 7);

  const KOVAPointf p(1, 2, 3);
  KOVAPointf q(3, 0, 4);
  expectComponents(p - q, -2.0F, 2.0F, -1.0F);
  expectComponents(KOVADirectionf(p, q) ^ KOVADirectionf(0, 0, 1), 2.0F, 2.0F, 0.0F);
  expectComponents(KOVAVectorf(p, q) + q, 1.0F, 2.0F, 3.0F);
  EXPECT_EQ(p.DistanceTo(q), 3);
  EXPECT_EQ(p.DistanceL1To(q), 5);
  EXPECT_TRUE(p == KOVAPointf(1, 2, 3));
  EXPECT_FALSE(p == KOVAPointf(1, 2, 3.0000002F));
  q.GetMinimum(p);
  expectComponents(q, 1.0F, 0.0F, 3.0F);
  q.GetMaximum(KOVAPointf(0, 5, std::numeric_limits<float>::quiet_NaN()));
  expectComponents(q, 1.0F, 5.0F, 3.0F);
  q[3] = 9;
  EXPECT_EQ(q[3], 0);
}

}  // namespace
