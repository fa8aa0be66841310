#include "kovabase/geometry/Gk_Domain.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();

const Gk_Domain kUnit(0, 1, 1e-6);
const Gk_Domain kLine(Gk_Domain::kUnbounded, 0, 1, 1e-6);
const Gk_Domain kFromZero(Gk_Domain::kBoundedBelow, 0, 99, 1e-6);
const Gk_Domain kUpToOne(Gk_Domain::kBoundedAbove, -99, 1, 1e-6);

template <class T>
std::string textOf(const T& value) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  formatter << value;
  return stream.GetBytes();
}

// Random bits: all magnitudes from the denormal to the huge come alike.
double finiteDouble(std::mt19937_64& random) {
  for (;;) {
    const double value = std::bit_cast<double>(random());
    if (std::isfinite(value)) return value;
  }
}

double between(std::mt19937_64& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

TEST(Gk_Domain, TellsWhereAParameterLies) {
  struct {
    const Gk_Domain& domain;
    double x;
    bool isContained, isInside, isBoundary, isBelow, isAbove;
  } const cases[] = {{kUnit, 0.5, true, true, false, false, false},
                     {kUnit, 1.0000005, true, false, true, false, false},
                     {kUnit, -0.0000005, true, false, true, false, false},
                     {kUnit, 1.000002, false, false, false, false, true},
                     {kFromZero, 99, true, true, true, false, false},
                     {kFromZero, -1, false, false, false, true, false},
                     {kUpToOne, -1e300, true, true, false, true, false},
                     {kUnit, kNaN, false, false, false, false, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(textOf(c.domain) + " and " + std::to_string(c.x));
    EXPECT_EQ(c.domain.isContained(c.x), c.isContained);
    EXPECT_EQ(c.domain.isInside(c.x), c.isInside);
    EXPECT_EQ(c.domain.isBoundary(c.x), c.isBoundary);
    EXPECT_EQ(c.domain.isBelow(c.x), c.isBelow);
    EXPECT_EQ(c.domain.isAbove(c.x), c.isAbove);
  }
  EXPECT_FALSE(kUnit.isContained(kFromZero));
  EXPECT_TRUE(kFromZero.isContained(kUnit));
  EXPECT_FALSE(kFromZero.isInside(kUnit));
  EXPECT_TRUE(kLine.isInside(kLine));
}

TEST(Gk_Domain, ExtendsToWhatIsNotYetInIt) {
  struct {
    Gk_Domain domain;
    double x;
    const char* changed;  // null when it stays
  } const cases[] = {{kUnit, 0.5, nullptr},
                     {kUnit, 1.0000005, nullptr},
                     {kUnit, kNaN, nullptr},
                     {kUnit, 2, "[0, 2], tolerance 1e-06"},
                     {kLine, 7, "[7, 7], tolerance 1e-06"},
                     {kFromZero, -1, "[-1, inf), tolerance 1e-06"}};
  for (const auto& c : cases) {
    Gk_Domain domain(c.domain);
    EXPECT_EQ(domain.extend(c.x), c.changed != nullptr) << c.x;
    EXPECT_EQ(textOf(domain), c.changed != nullptr ? c.changed : textOf(c.domain));
  }

  struct {
    Gk_Domain domain, other;
    const char* changed;
  } const pairs[] = {{kUnit, Gk_Domain(-1, 3, 0), "[-1, 3], tolerance 1e-06"},
                     {kUnit, Gk_Domain(0.2, 0.3, 0), nullptr},
                     {kLine, Gk_Domain(2, 3, 0), "[2, 3], tolerance 1e-06"},
                     {kLine, kFromZero, "[0, inf), tolerance 1e-06"},
                     {kLine, kLine, nullptr},
                     {kUnit, kUpToOne, "(-inf, 1], tolerance 1e-06"},
                     {kFromZero, kUpToOne, "(-inf, inf), tolerance 1e-06"}};
  for (const auto& c : pairs) {
    Gk_Domain domain(c.domain);
    EXPECT_EQ(domain.extend(c.other), c.changed != nullptr) << textOf(c.other);
    EXPECT_EQ(textOf(domain), c.changed != nullptr ? c.changed : textOf(c.domain));
  }
}

TEST(Gk_Domain, EndConditionsFollowTheirEnds) {
  EXPECT_EQ(textOf(-Gk_Domain(-1, 3, 0.5)), "[-3, 1], tolerance 0.5");
  Gk_Domain reversed(-kUpToOne);
  EXPECT_EQ(textOf(reversed), "[-1, inf), tolerance 1e-06");
  reversed.apply(Gk_LinMap(-2, 5));
  EXPECT_EQ(textOf(reversed), "(-inf, 7], tolerance 1e-06");
  EXPECT_TRUE(reversed.expand(2));
  EXPECT_EQ(textOf(reversed), "(-inf, 9], tolerance 1e-06");
  const Gk_Domain nearly(Gk_Domain::kBoundedBelow, 5e-7, 1, 0);
  EXPECT_TRUE(kFromZero.isSame(nearly));
  EXPECT_FALSE(kFromZero.isSame(nearly, 1e-7));
  EXPECT_FALSE(kFromZero.isSame(kUnit, 1000));
  EXPECT_FALSE(Gk_Domain(Gk_Domain::kBoundedBelow, 1, 1, 1e-6).isDegenerate());
  EXPECT_TRUE(Gk_Domain(1, 1 + 5e-7, 1e-6).isDegenerate());
  EXPECT_EQ(kUnit.stick(5e-7), 0);
  EXPECT_EQ(kUnit.stick(0.9999999), 1);
  EXPECT_EQ(kLine.stick(8), 1);
}

TEST(Gk_Domain, IntersectionsTouchWithinTheTolerance) {
  EXPECT_EQ(textOf(kUnit.intersection(Gk_Domain(0.5, 3, 0.25))), "[0.5, 1], tolerance 0.25");
  EXPECT_EQ(textOf(kFromZero.intersection(kUpToOne)), "[0, 1], tolerance 1e-06");
  EXPECT_EQ(textOf(kUnit.intersection(Gk_Domain(1.25, 2, 0.25))), "[1.125, 1.125], tolerance 0.25");
  EXPECT_LT(kUnit.intersection(Gk_Domain(1.5, 2, 0.25)).length(), 0);

  std::mt19937_64 random(5);
  for (int i = 0; i < 20000; ++i) {
    const auto anyDomain = [&random] {
      const double low = between(random, -2, 2);
      return Gk_Domain(static_cast<Gk_Domain::EndCondn>(random() % 4), low,
                       low + between(random, 0, 2), random() % 2 ? 0 : 0.1);
    };
    const Gk_Domain a = anyDomain();
    const Gk_Domain b = anyDomain();
    const Gk_Domain both = a.intersection(b);
    ASSERT_EQ(textOf(both), textOf(b.intersection(a)));
    const double x = between(random, -3, 3);
    if (both.getTolerance() == 0) {
      ASSERT_EQ(both.isContained(x), a.isContained(x) && b.isContained(x))
          << textOf(a) << " and " << textOf(b) << " at " << x;
    }
  }
}

TEST(Gk_Domain, ReducesPeriodicParameters) {
  struct {
    double low, high, t, result;
  } const cases[] = {
      {0, 2, 7.5, 1.5},
      {0, 2, -0.5, 1.5},
      {0, 2, 6, 2},       // a multiple from above lands on high
      {0, 2, -6, 0},      // and from below on low
      {0, 2, -5e-11, 0},  // as does what misses it by less than 1e-10
      {0, 2, -2 - 5e-11, 0},
      {3, 3, 17, 3},
      {2, 0, 7.5, 1.5},  // the ends of an empty domain change places
      {0, 2, kInfinity, kInfinity},
      {0, kInfinity, -4, 0},
      {0, 2, 0x1p1000, 2},
      {0x1p1023, 0x1.8p1023, -0x1.4p1023, 0x1.4p1023},  // the difference overflows
      {-0x1.8p1023, 0x1p1023, 0x1.8p1023, -0x1p1023},   // the period overflows
      {0, kDenormal, 1, kDenormal},
      {0, kDenormal, -1, 0},
  };
  for (const auto& c : cases) {
    const Gk_Domain domain(c.low, c.high, 1e-6);
    EXPECT_EQ(domain.principalParam(c.t), c.result) << textOf(domain) << " at " << c.t;
  }
  EXPECT_TRUE(std::isnan(kUnit.principalParam(kNaN)));
  EXPECT_EQ(kFromZero.principalParam(-5), -5);
}

TEST(Gk_Domain, PrincipalParametersNeverLeaveTheDomain) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 100000; ++i) {
    const double first = finiteDouble(random);
    const double second = finiteDouble(random);
    const Gk_Domain domain(std::fmin(first, second), std::fmax(first, second), 1e-6);
    const double t = finiteDouble(random);
    const double reduced = domain.principalParam(t);
    ASSERT_TRUE(domain.getLow() <= reduced && reduced <= domain.getHigh())
        << textOf(domain) << " at " << t << " gives " << reduced;
  }
}

TEST(Gk_LinMap, CarriesDomainsOntoEachOtherAndBack) {
  EXPECT_EQ(textOf(Gk_Domain(0, 2, 1e-6).mapTo(Gk_Domain(10, 14, 1e-6))), "scale 2, offset 10");
  EXPECT_EQ(textOf(Gk_Domain(4, 4, 1e-6).mapTo(Gk_Domain(10, 14, 1e-6))), "scale 0, offset 10");

  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    const double low = between(random, -10, 10);
    const double otherLow = between(random, -10, 10);
    const Gk_Domain other(otherLow, otherLow + between(random, 0.5, 10), 1e-6);
    Gk_Domain domain(low, low + between(random, 0.5, 10), 1e-6);
    const Gk_LinMap map = domain.mapTo(other);
    const double x = between(random, -10, 10);
    ASSERT_NEAR(map.invert(map(x)), x, 1e-10);
    ASSERT_NEAR(map.inverse()(map(x)), x, 1e-10);
    domain.apply(map);
    ASSERT_TRUE(domain.isSame(other, 1e-10)) << textOf(domain) << " and " << textOf(other);
  }
}

TEST(Gk_LinMap, ComposesLikeOneMapAfterTheOther) {
  const Gk_LinMap maps[] = {Gk_LinMap(),      Gk_LinMap(-1, 0), Gk_LinMap(2, 0),
                            Gk_LinMap(-3, 5), Gk_LinMap(1, -2), Gk_LinMap(-1, 4)};
  for (const Gk_LinMap& first : maps) {
    for (const Gk_LinMap& second : maps) {
      Gk_LinMap otherAfter(first);
      otherAfter.compose(second, true);
      Gk_LinMap otherBefore(second);
      otherBefore.compose(first, false);
      EXPECT_EQ(otherAfter(7), second(first(7))) << textOf(first) << ", then " << textOf(second);
      EXPECT_TRUE(otherBefore == otherAfter) << textOf(first) << ", then " << textOf(second);
    }
    Gk_LinMap twice(first);
    twice.compose(twice, true);
    EXPECT_EQ(twice(7), first(first(7)));
  }
}

TEST(Gk_LinMap, PlainMapsTakeTheShortCut) {
  const Gk_LinMap almost(1 + 5e-11, 5e-11);
  EXPECT_TRUE(almost.isIdentity());
  EXPECT_EQ(almost(7e10), 7e10);
  EXPECT_EQ(almost.invert(7e10), 7e10);
  EXPECT_FALSE(almost == Gk_LinMap());
  Gk_LinMap map(2, 3);
  map.compose(almost, false);
  EXPECT_EQ(textOf(map), "scale 2, offset 3");

  EXPECT_FALSE(Gk_LinMap(-1, 0).isIdentity());
  EXPECT_EQ(Gk_LinMap(-1, 0).invert(3), -3);
  EXPECT_EQ(Gk_LinMap(0, 5).invert(3), 0);
  EXPECT_FALSE(Gk_LinMap(1, 2e-10).isPlain());
}

}  // namespace
