#include "kovabase/geometry/KOVAMatrixOf.h"

#include <climits>
#include <gtest/gtest.h>
#include <utility>

namespace {

// Element (i, j) is 10 i + j.
KOVAMatrixOfdouble numbered(int uSize, int vSize) {
  KOVAMatrixOfdouble grid(uSize, vSize);
  for (int i = 0; i < uSize; ++i) {
    for (int j = 0; j < vSize; ++j) grid.elem(i, j) = 10 * i + j;
  }
  return grid;
}

TEST(KOVAMatrixOf, TakesPartsAndTransposes) {
  const KOVAMatrixOfdouble grid = numbered(3, 4);
  EXPECT_EQ(grid.getArray()[5], 11);  // v runs fastest
  const KOVAMatrixOfdouble part = grid.subset(1, 3, -7, 2);
  EXPECT_EQ(part.vSize(), 2);
  EXPECT_EQ(part.elem(1, 1), 21);
  const KOVAMatrixOfdouble none = grid.subset(2, 1, INT_MIN, INT_MAX);
  EXPECT_EQ(none.uSize(), 0);
  EXPECT_EQ(none.vSize(), 4);
  const KOVAMatrixOfdouble turned = grid.transpose();
  EXPECT_EQ(turned.uSize(), 4);
  EXPECT_EQ(turned.elem(3, 1), 13);
}

TEST(KOVAMatrixOf, CopiesShareAndCopyDoesNot) {
  KOVAMatrixOfKOVAWeightPoint3D grid(2, 2, KOVAWeightPoint3D(KOVAPoint3D(1, 2, 3), 0.5, false));
  const KOVAMatrixOfKOVAWeightPoint3D shared(grid);
  const KOVAMatrixOfKOVAWeightPoint3D own = grid.copy();
  EXPECT_EQ(own.elem(1, 1).GetWeight(), 0.5);
  grid.elem(1, 1)[0] = 8;
  EXPECT_EQ(shared.elem(1, 1)[0], 8);
  EXPECT_EQ(own.elem(1, 1)[0], 1);
}

TEST(KOVAMatrixOf, OutOfRangeBelongsToNoGrid) {
  KOVAMatrixOfdouble grid = numbered(2, 3);
  for (const auto& [i, j] : {std::pair(-1, 0), {2, 0}, {0, 3}, {0, -1}, {INT_MAX, INT_MAX}}) {
    grid.elem(i, j) = 7;
    EXPECT_EQ(grid.elem(i, j), 0);
  }
  EXPECT_EQ(grid.elem(1, 0), 10);
  EXPECT_EQ(KOVAMatrixOfdouble(-3, 2).getArray(), nullptr);
  EXPECT_THROW(KOVAMatrixOfdouble(1 << 16, 1 << 16), KOVAAllocException);
}

}  // namespace
