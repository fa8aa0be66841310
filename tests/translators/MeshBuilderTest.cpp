#include "translators/model/MeshBuilder.h"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <vector>

namespace kova::translators {
namespace {

// Against a plain map: many coinciding corners, far more vertices than the first table has places.
TEST(MeshBuilder, MergesWhatCoincidesInOrderOfAppearance) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> coordinate(-20, 20);
  const auto draw = [&] { return coordinate(random) * 0.1; };

  MeshBuilder builder(false);
  std::map<std::array<double, 3>, std::uint32_t> known;
  std::vector<Triangle> expected;
  std::uint64_t degenerates = 0;
  for (int i = 0; i < 30000; ++i) {
    const Point corners[3] = {{draw(), draw(), draw()}, {draw(), draw(), 0.0}, {0.0, draw(), -0.0}};
    Triangle triangle;
    for (int k = 0; k < 3; ++k) {
      // For the map negative zero and zero are one key already.
      const auto number = static_cast<std::uint32_t>(known.size());
      triangle.corners[k] =
          known.try_emplace({corners[k].x, corners[k].y, corners[k].z}, number).first->second;
    }
    const auto& [a, b, c] = triangle.corners;
    degenerates += a == b || b == c || c == a;
    expected.push_back(triangle);
    ASSERT_TRUE(builder.AddTriangle(corners));
  }

  const Mesh& mesh = builder.Finish();
  ASSERT_EQ(mesh.vertices.size(), static_cast<int>(known.size()));
  EXPECT_EQ(builder.GetDegenerateCount(), degenerates);
  EXPECT_GT(degenerates, 0U);
  for (const auto& [point, number] : known) {
    const Point& vertex = mesh.vertices[static_cast<int>(number)];
    EXPECT_EQ(vertex, (Point{point[0], point[1], point[2]}));
    EXPECT_FALSE(std::signbit(vertex.z) && vertex.z == 0.0);
  }
  for (int i = 0; i < mesh.triangles.size(); ++i) {
    for (int k = 0; k < 3; ++k) {
      ASSERT_EQ(mesh.triangles[i].corners[k], expected[static_cast<std::size_t>(i)].corners[k]);
    }
  }
}

}  // namespace
}  // namespace kova::translators
