#include "kovabase/geometry/KOVA4x4Matrix.h"
#include "kovabase/geometry/KOVAAssemblyComponentTransform.h"
#include "kovabase/geometry/KOVAMath3x3Matrixf.h"
#include "kovabase/geometry/KOVAMorph2D.h"
#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/geometry/KOVAPointArrays.h"
#include "kovabase/geometry/internal/PointKernels.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

template <class Object>
std::string textOf(const Object& object) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  formatter << object;
  return stream.GetBytes();
}

template <class Affine>
Affine makeAffine(std::initializer_list<double> rows) {
  Affine affine;
  for (int i = 0; i < affine.GetDimension(); ++i) {
    affine.SetRow(i, rows.begin() + i * affine.GetDimension());
  }
  return affine;
}

const KOVAAffine3D kGeneral = makeAffine<KOVAAffine3D>({2, 0, 1, 0, 3, 0, 1, 0, 1});
const KOVAAffine3D kTurn = makeAffine<KOVAAffine3D>({0, -1, 0, 1, 0, 0, 0, 0, 1});
const KOVAAffine3D kSingular = makeAffine<KOVAAffine3D>({1, 2, 3, 2, 4, 6, 0, 0, 1});

KOVAPoint3D transformed(KOVAPoint3D point, const KOVAMorph3D& morph, bool noTranslation = false) {
  point.Transform(morph, noTranslation);
  return point;
}

TEST(KOVAAffine, ElementsRowsAndColumns) {
  KOVAAffine3D affine = makeAffine<KOVAAffine3D>({1, 2, 3, 4, 5, 6, 7, 8, 9});
  double values[3];
  EXPECT_TRUE(affine.GetRow(1, values));
  EXPECT_EQ(KOVAPoint3D(values) * KOVAPoint3D(1, 10, 100), 654);
  EXPECT_TRUE(KOVAAffine3D(affine.GetElements()) == affine);
  EXPECT_TRUE(KOVAAffine2D(nullptr).IsIdentity());
  EXPECT_TRUE(affine.GetColumn(1, values));
  EXPECT_EQ(KOVAPoint3D(values) * KOVAPoint3D(1, 10, 100), 852);
  EXPECT_TRUE(affine.SetColumn(2, values));
  EXPECT_EQ(textOf(affine), "(1, 2, 2), (4, 5, 5), (7, 8, 8)");
  affine.Transpose();
  EXPECT_EQ(affine.GetElement(0, 2), 7);
  affine.Multiply(4);
  affine.Divide(2);
  EXPECT_EQ(affine.GetElement(1, 0), 4);

  for (const int index : {-1, 3}) {
    EXPECT_FALSE(affine.GetRow(index, values));
    EXPECT_FALSE(affine.SetColumn(index, values));
    EXPECT_FALSE(affine.SetElement(0, index, 1));
    EXPECT_EQ(affine.GetElement(index, 0), 0);
    EXPECT_EQ(affine.DeterminantOfCofactor(0, index), 0);
  }
  EXPECT_FALSE(affine.SetRow(0, nullptr));
  EXPECT_FALSE(affine.GetColumn(0, nullptr));
  EXPECT_EQ(textOf(affine), "(2, 8, 14), (4, 10, 16), (4, 10, 16)");
}

TEST(KOVAAffine, InversesAndProducts) {
  EXPECT_EQ(kGeneral.Determinant(), 3);
  EXPECT_EQ(kGeneral.DeterminantOfCofactor(2, 0), -3) << "with the sign of its place";
  const KOVAAffine2D flat = makeAffine<KOVAAffine2D>({1, 2, 3, 4});
  EXPECT_EQ(flat.DeterminantOfCofactor(0, 1), -3);

  KOVAAffine3D result(kGeneral);
  EXPECT_TRUE(result.GetInverse(result)) << "an output may be the operand";
  EXPECT_EQ(textOf(result), "(1, 0, -1), (0, 0.3333333333333333, 0), (-1, 0, 2)");
  EXPECT_TRUE(kGeneral.Multiply(result, result));
  EXPECT_TRUE(result.IsIdentity());
  EXPECT_TRUE(kGeneral.Multiply(kTurn, result));
  EXPECT_EQ(textOf(result), "(0, -2, 1), (3, 0, 0), (0, -1, 1)") << "the argument on the right";
  KOVAAffine2D inverse;
  EXPECT_TRUE(flat.GetInverse(inverse));
  EXPECT_EQ(textOf(inverse), "(-2, 1), (1.5, -0.5)");

  result.SetTo(kGeneral);
  EXPECT_FALSE(kSingular.GetInverse(result));
  EXPECT_FALSE(flat.GetInverse(result));
  EXPECT_FALSE(flat.Multiply(flat, result));
  EXPECT_FALSE(flat.Multiply(kGeneral, inverse));
  EXPECT_FALSE(result.SetTo(flat));
  EXPECT_FALSE(flat.GetTranspose(result));
  EXPECT_TRUE(result == kGeneral) << "a failing call leaves its output";
  EXPECT_FALSE(KOVAAffine2D() == KOVAAffine3D());
  result.Initialize(std::numeric_limits<double>::infinity());
  EXPECT_FALSE(result.GetInverse(inverse));
}

TEST(KOVAMorph, PartsAreMarkedExactlyAndAppliedInOrder) {
  const struct {
    KOVAMorph3D morph;
    bool isAffine, isScale, isTranslation, isMirror;
    const char* point;
    const char* direction;
  } cases[] = {
      {KOVAMorph3D(), false, false, false, false, "(1, 1, 1)", "(1, 1, 1)"},
      {KOVAMorph3D(2), false, true, false, false, "(2, 2, 2)", "(2, 2, 2)"},
      {KOVAMorph3D(KOVAPoint3D(1, 0, 0), 2), false, true, true, false, "(3, 2, 2)", "(2, 2, 2)"},
      {KOVAMorph3D(KOVAPoint3D(0, 0, 1e-300)), false, false, true, false, "(1, 1, 1)", "(1, 1, 1)"},
      {KOVAMorph3D(kTurn, KOVAPoint3D(5, 6, 7), 10), true, true, true, false, "(-5, 16, 17)",
       "(-10, 10, 10)"},
      {KOVAMorph3D(makeAffine<KOVAAffine3D>({1, 0, 0, 0, 1, 0, 0, 0, -1}), KOVAPoint3D(), 1), true,
       false, false, true, "(1, 1, -1)", "(1, 1, -1)"},
      {KOVAMorph3D(KOVAAssemblyComponentTransform(KOVAPoint3D(1, 2, 3), KOVAVector(0, 1, 0),
                                                  KOVAVector(0, 0, 1), KOVAVector(2, 0, 0), 10)),
       true, true, true, false, "(21, 12, 13)", "(20, 10, 10)"},
  };
  for (const auto& expected : cases) {
    const KOVAMorph3D& morph = expected.morph;
    SCOPED_TRACE(textOf(morph));
    EXPECT_EQ(morph.isAffine(), expected.isAffine);
    EXPECT_EQ(morph.isScale(), expected.isScale);
    EXPECT_EQ(morph.isTranslation(), expected.isTranslation);
    EXPECT_EQ(morph.isMirror(), expected.isMirror);
    EXPECT_EQ(morph.isIdentity(),
              !(expected.isAffine || expected.isScale || expected.isTranslation));
    EXPECT_EQ(textOf(transformed(KOVAPoint3D(1, 1, 1), morph)), expected.point);
    EXPECT_EQ(textOf(transformed(KOVAPoint3D(1, 1, 1), morph, true)), expected.direction);
    double x = 1, y = 1, z = 1;
    Transform(x, y, z, morph);
    EXPECT_EQ(textOf(KOVAPoint3D(x, y, z)), expected.point);
  }
  EXPECT_EQ(textOf(KOVAMorph2D(KOVAPoint2D(3, 4), 2)),
            "linear (1, 0), (0, 1), scale 2, translation (3, 4)");
  // A translation of -0 is none, and a part that is absent leaves the sign of a zero.
  const KOVAMorph3D none(KOVAPoint3D(-0.0, 0, 0), 2);
  EXPECT_FALSE(none.isTranslation());
  EXPECT_TRUE(std::signbit(transformed(KOVAPoint3D(-0.0, 1, 1), none)[0]));
}

TEST(KOVAMorph, ProductsApplyTheOtherLast) {
  const KOVAMorph3D shift(KOVAPoint3D(1, 0, 0));
  const KOVAMorph3D scale(2);
  EXPECT_EQ(textOf(shift.multiply(scale)),
            "linear (1, 0, 0), (0, 1, 0), (0, 0, 1), scale 2, translation (2, 0, 0)");
  EXPECT_EQ(textOf(scale.multiply(shift).GetTranslation()), "(1, 0, 0)");

  KOVAMorph3D morph(kGeneral, KOVAPoint3D(1, 2, 3), 2);
  const KOVAMorph3D other(kTurn, KOVAPoint3D(0, 0, 5), 4);
  const std::string product = textOf(morph.multiply(other));
  EXPECT_EQ(product, "linear (0, -3, 0), (2, 0, 1), (1, 0, 1), scale 8, translation (-8, 4, 17)");
  KOVAMorph3D last(other);
  EXPECT_TRUE(morph.Multiply(last, last).IsSuccess());
  EXPECT_EQ(textOf(last), product);
  EXPECT_TRUE(morph.Multiply(other, morph).IsSuccess());
  EXPECT_EQ(textOf(morph), product);

  KOVAMorph2D flat(3);
  EXPECT_EQ(morph.Multiply(other, flat), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(flat.Multiply(other, flat), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(morph.Inverse(flat), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(flat.GetScale(), 3);
}

TEST(KOVAMorph, InversesOrTheIdentityAndFailure) {
  const KOVAMorph3D morph(kGeneral, KOVAPoint3D(1, 3, 5), 2);
  EXPECT_EQ(textOf(morph.inverse()),
            "linear (1, 0, -1), (0, 0.3333333333333333, 0), (-1, 0, 2), scale 0.5, "
            "translation (2, -0.5, -4.5)");
  KOVAMorph3D result(morph);
  EXPECT_TRUE(result.Inverse(result).IsSuccess());
  EXPECT_TRUE(morph.multiply(result).isIdentity());
  EXPECT_EQ(textOf(KOVAMorph2D(KOVAPoint2D(6, 0), 3).inverse()),
            "linear (1, 0), (0, 1), scale 0.3333333333333333, translation (-2, 0)");

  const double infinity = std::numeric_limits<double>::infinity();
  const KOVAMorph3D without[] = {KOVAMorph3D(0), KOVAMorph3D(KOVAPoint3D(1, 2, 3), infinity),
                                 KOVAMorph3D(1e-310), KOVAMorph3D(std::nan("")),
                                 KOVAMorph3D(kSingular, KOVAPoint3D(1, 2, 3), 1)};
  for (const KOVAMorph3D& singular : without) {
    result = morph;
    EXPECT_EQ(singular.Inverse(result), KOVAResultCode::kFailure);
    EXPECT_TRUE(result.isIdentity());
    EXPECT_TRUE(singular.inverse().isIdentity());
  }
}

TEST(KOVAMorph, TheScaleIsFixedOnce) {
  KOVAMorph3D morph(KOVAPoint3D(1, 2, 3), 2);
  morph.FixScaleFactor();
  EXPECT_EQ(textOf(morph), textOf(KOVAMorph3D(KOVAPoint3D(2, 4, 6))));
  EXPECT_FALSE(morph.isScale());

  // The mark shows as soon as there is a scale again: a product has none, a copy has it.
  KOVAMorph3D product = morph.multiply(KOVAMorph3D(3));
  product.FixScaleFactor();
  EXPECT_EQ(textOf(product.GetTranslation()), "(18, 36, 54)");
  KOVAMorph2D flat(KOVAPoint2D(1, 1), 2);
  flat.FixScaleFactor();
  KOVAMorph2D copy(flat);
  copy.SetToIdentity();
  copy.Multiply(KOVAMorph2D(KOVAPoint2D(1, 1), 4), copy);
  copy.FixScaleFactor();
  EXPECT_EQ(textOf(copy), "linear (1, 0), (0, 1), scale 1, translation (4, 4)");
}

// Random transforms of every make: each part present or not, sizes from 1e-3 to 1e3.
class Random {
 public:
  explicit Random(unsigned seed) : _engine(seed) {}

  double number() {
    const double mantissa = std::uniform_real_distribution<double>(-1, 1)(_engine);
    return std::ldexp(mantissa, std::uniform_int_distribution<int>(-10, 10)(_engine));
  }
  bool maybe() { return (_engine() & 1U) != 0; }
  KOVAPoint3D point() { return {number(), number(), number()}; }
  KOVAAffine3D affine() {
    KOVAAffine3D affine;
    for (int i = 0; i < 9; ++i) affine.SetElement(i / 3, i % 3, number());
    return affine;
  }
  KOVAAffine3D rotation() {
    const KOVAPoint3D x = point().Normalize();
    const KOVAPoint3D y = x.Orthogonalize().Normalize();
    const KOVAPoint3D z = KOVAPoint3D::VectorProduct(x, y);
    KOVAAffine3D affine;
    affine.SetColumn(0, x.GetStoredCoordinates());
    affine.SetColumn(1, y.GetStoredCoordinates());
    affine.SetColumn(2, z.GetStoredCoordinates());
    return affine;
  }
  KOVAMorph3D morph(const KOVAAffine3D& linear) {
    return KOVAMorph3D(maybe() ? linear : KOVAAffine3D(), maybe() ? point() : KOVAPoint3D(),
                       maybe() ? number() : 1.0);
  }

 private:
  std::mt19937 _engine;
};

// The largest term is that of all that is added and of the sums: the scaled linear part and the
// result.
TEST(KOVAMorph, AMillionTransformsAreWithinFourUnitsOfTheModel) {
  Random random(10);
  double worst = 0;
  for (int i = 0; i < 1'000'000; ++i) {
    const KOVAMorph3D morph = random.morph(random.affine());
    const KOVAPoint3D point = random.point();
    const KOVAPoint3D result = transformed(point, morph);
    for (int row = 0; row < 3; ++row) {
      __float128 sum = 0;
      double largest = std::fabs(morph.GetTranslation()[row]);
      for (int column = 0; column < 3; ++column) {
        const __float128 term = static_cast<__float128>(morph.GetAffine().GetElement(row, column)) *
                                point[column] * morph.GetScale();
        largest = std::max(largest, std::fabs(static_cast<double>(term)));
        sum += term;
      }
      largest = std::max(largest, std::fabs(static_cast<double>(sum)));
      sum += morph.GetTranslation()[row];
      largest = std::max(largest, std::fabs(static_cast<double>(sum)));
      if (largest == 0) continue;
      const double unit =
          std::nextafter(largest, std::numeric_limits<double>::infinity()) - largest;
      worst = std::max(worst, std::fabs(static_cast<double>(result[row] - sum)) / unit);
    }
  }
  EXPECT_LE(worst, 4);
  RecordProperty("worst", std::to_string(worst));
}

TEST(KOVAMorph, ProductsAreOneAfterTheOther) {
  Random random(11);
  for (int i = 0; i < 20'000; ++i) {
    const KOVAMorph3D first = random.morph(random.affine());
    const KOVAMorph3D second = random.morph(random.affine());
    const KOVAPoint3D point = random.point();
    const KOVAPoint3D atOnce = transformed(point, first.multiply(second));
    const KOVAPoint3D stepwise = transformed(transformed(point, first), second);
    const KOVAMorph3D* const steps[] = {&first, &second};
    double size = point.Length();
    for (const KOVAMorph3D* step : steps) {
      double norm = 0;
      for (int k = 0; k < 9; ++k) {
        norm = std::hypot(norm, step->GetAffine().GetElement(k / 3, k % 3));
      }
      size = size * norm * std::fabs(step->GetScale()) + step->GetTranslation().Length();
    }
    ASSERT_TRUE(atOnce.IsWithinTolerance(stepwise, 1e-14 * size))
        << textOf(first) << "; " << textOf(second) << "; " << textOf(point);
  }
}

TEST(KOVAMorph, InversesTakeBack) {
  Random random(12);
  for (int i = 0; i < 20'000; ++i) {
    const KOVAMorph3D morph = random.morph(random.rotation());
    if (std::fabs(morph.GetScale()) < 1e-3) continue;
    const KOVAPoint3D point = random.point();
    KOVAMorph3D inverse;
    ASSERT_TRUE(morph.Inverse(inverse).IsSuccess());
    const double size =
        point.Length() + morph.GetTranslation().Length() / std::fabs(morph.GetScale());
    ASSERT_TRUE(
        transformed(transformed(point, morph), inverse).IsWithinTolerance(point, 1e-13 * size))
        << textOf(morph) << "; " << textOf(point);
  }
}

template <class Transform, class T>
std::vector<T> oneByOne(std::vector<T> points, const Transform& transform, bool noTranslation) {
  if constexpr (std::is_same_v<Transform, KOVA4x4Matrix>) {
    for (std::size_t i = 0; i < points.size(); i += 3) {
      if constexpr (std::is_same_v<T, float>) {
        const KOVAPointf point = transform * KOVAPointf(&points[i]);
        const KOVAVectorf vector = transform * KOVAVectorf(&points[i]);
        for (int k = 0; k < 3; ++k) {
          points[i + static_cast<std::size_t>(k)] = noTranslation ? vector[k] : point[k];
        }
      } else {
        const KOVAPoint3D point = transform * KOVAPoint3D(&points[i]);
        KOVAGetDoublesFromKOVAPoint3D(point, &points[i]);
      }
    }
  } else {
    const auto dimension = static_cast<std::size_t>(transform.GetDimension());
    for (std::size_t i = 0; i < points.size(); i += dimension) {
      KOVAPoint2D flat(points[i], points[i + 1]);
      KOVAPoint3D deep(points[i], points[i + 1], dimension == 3 ? points[i + 2] : T(0));
      KOVAPoint& point = dimension == 2 ? static_cast<KOVAPoint&>(flat) : deep;
      if constexpr (std::is_base_of_v<KOVAMorph, Transform>) {
        point.Transform(transform, noTranslation);
      } else {
        point.Transform(transform);
      }
      for (std::size_t k = 0; k < dimension; ++k) {
        points[i + k] = static_cast<T>(point[static_cast<int>(k)]);
      }
    }
  }
  return points;
}

template <class Transform, class T>
void transformAll(const T* points, T* result, std::size_t count, const Transform& transform,
                  bool noTranslation) {
  if constexpr (std::is_base_of_v<KOVAAffine, Transform>) {
    KOVATransformPoints(points, result, count, transform);
  } else {
    KOVATransformPoints(points, result, count, transform, noTranslation);
  }
}

template <class T>
std::vector<T> makeCoordinates(std::size_t values) {
  Random random(13);
  std::vector<T> points(values);
  for (T& coordinate : points) coordinate = static_cast<T>(random.number());
  if (values > 4) points[1] = T(-0.0);
  if (values > 4) points[4] = std::numeric_limits<T>::infinity();
  return points;
}

template <class T>
void expectSameBits(const std::vector<T>& left, const std::vector<T>& right) {
  ASSERT_EQ(left.size(), right.size());
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (std::isnan(left[i]) && std::isnan(right[i])) continue;
    EXPECT_EQ(std::memcmp(&left[i], &right[i], sizeof(T)), 0)
        << "value " << i << " of " << left.size() << ": " << left[i] << ", " << right[i];
  }
}

template <class T, class Transform>
void expectBatchEqualsSingle(const Transform& transform, std::size_t dimension = 3) {
  for (const bool noTranslation : {false, true}) {
    if (noTranslation && std::is_same_v<Transform, KOVA4x4Matrix> && std::is_same_v<T, double>) {
      continue;
    }
    for (std::size_t count = 0; count < 20; ++count) {
      const std::size_t values = count * dimension;
      const std::vector<T> points = makeCoordinates<T>(values);
      const std::vector<T> expected = oneByOne(points, transform, noTranslation);
      std::vector<T> result(values);
      transformAll(points.data(), result.data(), count, transform, noTranslation);
      expectSameBits(result, expected);
      // In place, and shifted by one to the right and to the left.
      for (const int shift : {0, 1, -1}) {
        std::vector<T> room(values + 2, T(77));
        std::copy(points.begin(), points.end(), room.begin() + 1);
        transformAll(room.data() + 1, room.data() + 1 + shift, count, transform, noTranslation);
        EXPECT_EQ(room.front(), shift < 0 && count > 0 ? room.front() : T(77));
        expectSameBits(std::vector<T>(room.begin() + 1 + shift,
                                      room.begin() + 1 + shift + static_cast<long>(values)),
                       expected);
      }
    }
    transformAll<Transform, T>(nullptr, nullptr, 5, transform, noTranslation);
  }
}

TEST(KOVATransformPoints, EqualsTheSingleFormsBitForBit) {
  Random random(14);
  const KOVAAffine3D linear = random.affine();
  const KOVAPoint3D shift = random.point();
  const KOVAMorph3D morphs[] = {KOVAMorph3D(),
                                KOVAMorph3D(2.54),
                                KOVAMorph3D(shift),
                                KOVAMorph3D(shift, 25.4),
                                KOVAMorph3D(linear, KOVAPoint3D(), 1),
                                KOVAMorph3D(linear, KOVAPoint3D(), 25.4),
                                KOVAMorph3D(linear, shift, 1),
                                KOVAMorph3D(linear, shift, 25.4)};
  for (const KOVAMorph3D& morph : morphs) {
    SCOPED_TRACE(textOf(morph));
    expectBatchEqualsSingle<double>(morph);
    expectBatchEqualsSingle<float>(morph);
  }
  expectBatchEqualsSingle<double>(linear);
  expectBatchEqualsSingle<float>(linear);
  const KOVAAffine2D flat = makeAffine<KOVAAffine2D>({0.3, -0.7, 1.1, 0.9});
  expectBatchEqualsSingle<double>(flat, 2);
  expectBatchEqualsSingle<float>(KOVAMorph2D(flat, KOVAPoint2D(1, 2), 0.3), 2);
  expectBatchEqualsSingle<double>(KOVAMorph2D(KOVAPoint2D(0.1, 0), 0.3), 2);
  KOVA4x4Matrix matrix;
  for (int i = 0; i < 16; ++i) matrix[i] = static_cast<float>(random.number());
  expectBatchEqualsSingle<double>(matrix);
  expectBatchEqualsSingle<float>(matrix);
}

TEST(KOVATransformPoints, TheKernelsOfAllProcessorsAgree) {
  using namespace kova::internal;
  Random random(15);
  Parts<double> wide;
  Parts<float> narrow;
  wide.scale = random.number();
  for (double& element : wide.matrix) element = random.number();
  for (float& element : narrow.matrix) element = static_cast<float>(random.number());
  for (std::size_t count = 0; count < 20; ++count) {
    const auto points = makeCoordinates<double>(3 * count);
    std::vector<double> one(3 * count), two(3 * count), four(3 * count);
    transformOneByOne<Kind::kScaledLinear, 3>(wide, points.data(), one.data(), count);
    transformInLanes<Kind::kScaledLinear, 2>(wide, points.data(), two.data(), count);
    transformInLanes<Kind::kScaledLinear, 4>(wide, points.data(), four.data(), count);
    expectSameBits(one, two);
    expectSameBits(one, four);

    const auto floats = makeCoordinates<float>(3 * count);
    std::vector<float> single(3 * count), group(3 * count), groups(3 * count);
    transformOneByOne<Kind::kLinear, 3>(narrow, floats.data(), single.data(), count);
    transformInLanes<Kind::kLinear, 4>(narrow, floats.data(), group.data(), count);
    transformInLanes<Kind::kLinear, 8>(narrow, floats.data(), groups.data(), count);
    expectSameBits(single, group);
    expectSameBits(single, groups);
    transformOneByOne<Kind::kScaledLinear, 3>(wide, floats.data(), single.data(), count);
    transformInLanes<Kind::kScaledLinear, 4>(wide, floats.data(), group.data(), count);
    expectSameBits(single, group);
  }
}

KOVA4x4Matrix makeMatrix(const KOVAMorph3D& morph) {
  KOVA4x4Matrix matrix;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      matrix[4 * column + row] = static_cast<float>(morph.GetAffine().GetElement(row, column));
    }
    matrix[12 + row] = static_cast<float>(morph.GetTranslation()[row]);
  }
  return matrix;
}

TEST(KOVA4x4Matrix, ProductsTranslatePointsAlone) {
  const KOVA4x4Matrix matrix = makeMatrix(KOVAMorph3D(kGeneral, KOVAPoint3D(10, 20, 30), 1));
  EXPECT_EQ(textOf(matrix * KOVAPoint3D(1, 2, 3)), "(15, 26, 34)");
  EXPECT_TRUE(matrix * KOVAPointf(1, 2, 3) == KOVAPointf(15, 26, 34));
  EXPECT_EQ((matrix * KOVAVectorf(1, 2, 3))[0], 5);
  EXPECT_EQ((matrix * KOVADirectionf(1, 2, 3))[2], 4);
  EXPECT_EQ(textOf(KOVA4x4Matrix() * KOVAPoint3D(0.1, 1e-9, 1e300)), "(0.1, 1e-09, 1e+300)")
      << "points in double precision keep it";

  KOVA4x4Matrix product = makeMatrix(KOVAMorph3D(kTurn, KOVAPoint3D(0, 0, 5), 1));
  product *= matrix;
  EXPECT_EQ(textOf(product * KOVAPoint3D(1, 2, 3)), "(-26, 15, 39)") << "the right one first";
  EXPECT_FALSE(product.IsIdentity());
  EXPECT_TRUE((KOVA4x4Matrix() * KOVA4x4Matrix()).IsIdentity());
  EXPECT_TRUE(KOVA4x4Matrix(nullptr).IsIdentity());
  KOVA4x4Matrix().ComputeInverseTransposeThirdColumnNormalized(nullptr);
}

TEST(KOVA4x4Matrix, TheDeterminantIsNeverStale) {
  KOVA4x4Matrix matrix = makeMatrix(KOVAMorph3D(kGeneral, KOVAPoint3D(1, 2, 3), 1));
  const KOVA4x4Matrix constant(matrix);
  EXPECT_EQ(KOVA4x4Matrix(&constant[0]).GetDeterminant(), 3);
  float& entry = matrix[5];
  EXPECT_EQ(matrix.GetDeterminant(), 3);
  entry = 6;
  EXPECT_EQ(matrix.GetDeterminant(), 6);
  const KOVA4x4Matrix copy(matrix);
  matrix = KOVA4x4Matrix();
  EXPECT_EQ(matrix.GetDeterminant(), 1);
  entry = 7;
  EXPECT_EQ(matrix.GetDeterminant(), 7) << "the reference outlives the assignment";
  EXPECT_EQ(copy.GetDeterminant(), 6);
  EXPECT_EQ((copy * copy).GetDeterminant(), 36);
  matrix[16] = 9;
  EXPECT_EQ(matrix[16], 0);
}

TEST(KOVA4x4Matrix, TheThirdColumnOfTheInverseTransposeIsThePlane) {
  const auto planeOf = [](const KOVA4x4Matrix& matrix) {
    float plane[4] = {9, 9, 9, 9};
    matrix.ComputeInverseTransposeThirdColumnNormalized(plane);
    return std::vector<float>(plane, plane + 4);
  };
  const float zeros[16] = {};
  const std::vector<float> none = {0, 0, 0, 1};
  EXPECT_EQ(planeOf(KOVA4x4Matrix(zeros)), none);
  EXPECT_EQ(planeOf(makeMatrix(KOVAMorph3D(kSingular, KOVAPoint3D(), 1))), none);
  EXPECT_EQ(planeOf(makeMatrix(KOVAMorph3D(KOVAPoint3D(3, 4, 5)))),
            (std::vector<float>{0, 0, 1, -5}));
  // The third column alone is not zero, and its cofactor in the fourth row.
  const float swapped[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0};
  EXPECT_EQ(planeOf(KOVA4x4Matrix(swapped)), none);

  Random random(16);
  for (int i = 0; i < 1000; ++i) {
    const KOVA4x4Matrix matrix =
        makeMatrix(KOVAMorph3D(random.rotation(), random.point(), random.maybe() ? -1 : 1));
    const std::vector<float> plane = planeOf(matrix);
    const KOVAPoint3D normal(plane[0], plane[1], plane[2]);
    EXPECT_NEAR(normal.Length(), 1, 1e-6);
    const KOVAPoint3D on = matrix * KOVAPoint3D(random.number(), random.number(), 0);
    EXPECT_NEAR(on * normal + static_cast<double>(plane[3]), 0, 1e-6 * (1000 + on.Length()));
    const KOVAPoint3D above = matrix * KOVAPoint3D(0, 0, 100);
    EXPECT_GT(above * normal + static_cast<double>(plane[3]), 90) << "it points where z pointed";
  }
}

TEST(KOVAMath3x3Matrixf, InversesAndTheMarkOfTheIdentity) {
  const float entries[9] = {2, 0, 1, 0, 4, 0, 1, 0, 1};
  const KOVAMath3x3Matrixf matrix(entries);
  const auto listOf = [](const KOVAMath3x3Matrixf& any) {
    return std::vector<float>(&any[0], &any[0] + 9);
  };
  EXPECT_EQ(matrix.Determinant(), 4);
  EXPECT_EQ(listOf(matrix.Inverse()), (std::vector<float>{1, 0, -1, 0, 0.25F, 0, -1, 0, 2}));
  EXPECT_EQ(listOf(matrix * matrix.Inverse()), listOf(KOVAMath3x3Matrixf()));

  const float shear[9] = {1, 0, 0, 5, 1, 0, 0, 0, 1};
  EXPECT_EQ((KOVAMath3x3Matrixf(shear) * KOVAVectorf(1, 2, 3))[0], 11) << "columns";
  EXPECT_EQ((KOVAMath3x3Matrixf(shear).Transpose() * KOVAVectorf(1, 2, 3))[1], 7);
  EXPECT_EQ((KOVAMath3x3Matrixf(shear) * matrix)[2 + 1], 20) << "the right one first";

  // Numbers drop the mark, and a reference keeps it off.
  EXPECT_EQ(listOf(KOVAMath3x3Matrixf() * 2 * matrix), listOf(2 * matrix));
  KOVAMath3x3Matrixf written;
  float& entry = written[0];
  written = KOVAMath3x3Matrixf();
  entry = 3;
  EXPECT_EQ((written * KOVAVectorf(1, 1, 1))[0], 3);
  EXPECT_EQ((written * matrix)[0], 6);

  KOVAMath3x3Matrixf untouched(entries);
  for (const float size : {0.0F, 1e-5F, 2.15e-5F}) {
    const float diagonal[9] = {size, 0, 0, 0, size, 0, 0, 0, size};
    const KOVAMath3x3Matrixf singular(diagonal);
    EXPECT_FALSE(singular.Inverse(untouched));
    EXPECT_EQ(listOf(untouched), listOf(matrix));
    EXPECT_EQ(listOf(singular.Inverse()), listOf(singular)) << "a copy";
  }
  EXPECT_EQ(listOf(KOVAMath3x3Matrixf(nullptr)), listOf(KOVAMath3x3Matrixf()));
}

}  // namespace
