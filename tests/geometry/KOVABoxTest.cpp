#include "kovabase/geometry/KOVABox.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const KOVABox3D kBox(KOVAPoint3D(0, 0, 0), KOVAPoint3D(1, 2, 2));

template <class Box>
std::string textOf(const Box& box) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  formatter << box;
  return stream.GetBytes();
}

TEST(KOVABox, TheEmptyBoxHasNoSizeAndMeetsNothing) {
  const KOVABox3D empty;
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(textOf(empty), "empty");
  EXPECT_EQ(empty.GetDiagonal(), 0);
  EXPECT_EQ(empty.GetCenter().Length(), 0);
  EXPECT_FALSE(empty.Contains(KOVAPoint3D(), 1e300));
  EXPECT_FALSE(empty.Intersects(kBox, kInfinity));
  EXPECT_FALSE(kBox.Intersects(empty, kInfinity));
  EXPECT_FALSE(empty.Intersects(KOVABox3D(KOVAPoint3D(-kInfinity, -kInfinity, -kInfinity),
                                          KOVAPoint3D(kInfinity, kInfinity, kInfinity))));
  EXPECT_TRUE(kBox.Contains(empty));
  EXPECT_TRUE(empty.GetTransformed(KOVAMorph3D(2)).IsEmpty());

  KOVABox3D box(kBox);
  box.Extend(empty);
  EXPECT_TRUE(box == kBox);
  box.Expand(-0.6);  // the sides along x pass each other
  EXPECT_TRUE(box == empty);
  box.Expand(kInfinity);
  box.Extend(KOVAPoint3D(5, 5, 5));
  EXPECT_EQ(textOf(box), "(5, 5, 5) to (5, 5, 5)");
}

TEST(KOVABox, MeasuresAndContainsWithinATolerance) {
  EXPECT_EQ(kBox.GetDiagonal(), 3);
  EXPECT_EQ(kBox.GetCenter().DistanceTo(KOVAPoint3D(0.5, 1, 1)), 0);
  EXPECT_EQ(kBox.GetCorner(5).DistanceTo(KOVAPoint3D(1, 0, 2)), 0);
  EXPECT_TRUE(kBox.Contains(KOVAPoint3D(1, 2, 0)));
  EXPECT_FALSE(kBox.Contains(KOVAPoint3D(1, 2, -0.5)));
  EXPECT_TRUE(kBox.Contains(KOVAPoint3D(1.5, 2.5, -0.5), 0.5));
  EXPECT_FALSE(kBox.Contains(KOVAPoint3D(1, kNaN, 1), 1e300));
  const KOVABox3D beside(KOVAPoint3D(4, 0, 1), KOVAPoint3D(1.25, 1, 0));
  EXPECT_FALSE(kBox.Intersects(beside));
  EXPECT_TRUE(kBox.Intersects(beside, 0.25));
  EXPECT_FALSE(kBox.Contains(beside, 0.25));
}

TEST(KOVABox, PassesOverCoordinatesThatAreNaN) {
  KOVABox3D box(KOVAPoint3D(1, kNaN, 3));
  EXPECT_TRUE(box.IsEmpty());
  box.Extend(KOVAPoint3D(kNaN, 2, 5));
  EXPECT_EQ(textOf(box), "(1, 2, 3) to (1, 2, 5)");
  box.Expand(kNaN);
  EXPECT_EQ(textOf(box), "(1, 2, 3) to (1, 2, 5)");
}

// Zeros of both signs, NaNs and infinities alone, or now and then among other coordinates.
template <class T>
std::vector<T> coordinates(std::mt19937& random, std::size_t count) {
  const T odd[] = {T(0), T(-0.0), T(kNaN), T(kInfinity), T(-kInfinity)};
  std::uniform_real_distribution<T> any(T(-1), T(1));
  const auto oddKinds = 1 + random() % 5;
  const bool isOdd = random() % 2 == 0;
  std::vector<T> values(count);
  for (T& value : values) {
    value = isOdd || random() % 8 == 0 ? odd[random() % oddKinds] : any(random);
  }
  return values;
}

template <int n, class T>
void compareBatchWithSingle(unsigned seed) {
  std::mt19937 random(seed);
  for (std::size_t count = 0; count < 70; ++count) {
    const std::vector<T> values = coordinates<T>(random, count * n);
    // Not aligned, and exactly as long as the points are.
    std::vector<T> shifted(count * n + 1);
    for (std::size_t i = 0; i < values.size(); ++i) shifted[i + 1] = values[i];
    KOVABox<n> batch;
    batch.Extend(shifted.data() + 1, count);
    KOVABox<n> single;
    for (std::size_t i = 0; i < count; ++i) {
      typename KOVABox<n>::Point point;
      for (int axis = 0; axis < n; ++axis) {
        point[axis] = static_cast<double>(values[i * n + static_cast<std::size_t>(axis)]);
      }
      single.Extend(point);
    }
    ASSERT_EQ(std::memcmp(&batch, &single, sizeof(batch)), 0) << count << " points";
  }
}

TEST(KOVABox, BatchesAgreeWithSinglePointsToTheBit) {
  static_assert(std::is_trivially_copyable_v<KOVABox3D>);
  for (unsigned seed = 0; seed < 20; ++seed) {
    compareBatchWithSingle<2, double>(seed);
    compareBatchWithSingle<3, double>(seed);
    compareBatchWithSingle<2, float>(seed);
    compareBatchWithSingle<3, float>(seed);
  }
}

TEST(KOVABox, TransformedBoxesContainEveryTransformedPoint) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> any(-10, 10);
  const auto anyPoint = [&] { return KOVAPoint3D(any(random), any(random), any(random)); };
  for (int i = 0; i < 5000; ++i) {
    KOVAAffine3D linear;
    for (int row = 0; row < 3; ++row) {
      for (int column = 0; column < 3; ++column) linear.SetElement(row, column, any(random));
    }
    const KOVAMorph3D morph(linear, anyPoint(), any(random));
    const KOVABox3D box(anyPoint(), anyPoint());
    const KOVABox3D transformed = box.GetTransformed(morph);
    std::uniform_real_distribution<double> fraction(0, 1);
    for (int k = 0; k < 8; ++k) {
      KOVAPoint3D point = box.GetLow();
      for (int axis = 0; axis < 3; ++axis) {
        point[axis] =
            std::fmin(point[axis] + fraction(random) * box.GetSize()[axis], box.GetHigh()[axis]);
      }
      point.Transform(morph);
      ASSERT_TRUE(transformed.Contains(point));
    }
  }
  // Infinity times 0 may be anywhere.
  KOVAAffine3D swapXY;
  for (const auto& [row, column] : {std::pair(0, 1), {1, 0}}) {
    swapXY.SetElement(row, row, 0);
    swapXY.SetElement(row, column, 1);
  }
  const KOVABox3D beam(KOVAPoint3D(-kInfinity, 0, 0), KOVAPoint3D(kInfinity, 1, 1));
  const KOVABox3D turned = beam.GetTransformed(KOVAMorph3D(swapXY, KOVAPoint3D(), 1));
  EXPECT_TRUE(turned.Contains(KOVAPoint3D(0.5, 1e300, 0.5)));
}

}  // namespace
