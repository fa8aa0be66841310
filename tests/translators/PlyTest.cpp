#include "kovabase/geometry/KOVAVector.h"
#include "tests/translators/ReaderFixture.h"
#include "translators/ply/PlyReader.h"
#include "translators/ply/PlyWriter.h"
#include "translators/ply/Polygon.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace kova::translators {
namespace {

// A binary value, most significant byte first when `isBig`.
template <class Value>
void append(std::string& bytes, Value value, bool isBig) {
  char text[sizeof value];
  std::memcpy(text, &value, sizeof value);
  if (isBig == (std::endian::native == std::endian::little)) {
    std::reverse(text, text + sizeof value);
  }
  bytes.append(text, sizeof value);
}

std::string describe(const Model& model) {
  std::string text;
  const auto number = [&text](auto value) { text += std::to_string(value) + ' '; };
  for (const Part& part : model.parts) {
    for (const Mesh& mesh : part.meshes) {
      for (const Point& point : mesh.vertices) {
        text += "v ";
        for (const double coordinate : {point.x, point.y, point.z}) number(coordinate);
      }
      for (const Triangle& triangle : mesh.triangles) {
        text += "f ";
        for (const std::uint32_t corner : triangle.corners) number(corner);
      }
    }
    for (const Curve& curve : part.curves) {
      text += "l ";
      for (std::uint32_t i = 0; i < curve.pointCount; ++i) {
        number(part.points[static_cast<int>(curve.firstPoint + i)].x);
      }
      number(curve.length);
    }
  }
  return text;
}

// The same square in all forms, with properties in odd orders, lists before, between and behind the
// ones that are used, and elements that nobody knows.
TEST(PlyReader, FormsOrdersAndTypesThatMeanTheSame) {
  const std::string expected =
      "v 0.000000 0.000000 0.500000 v 1.000000 0.000000 0.500000 v 1.000000 1.000000 0.500000 "
      "v 0.000000 1.000000 0.500000 f 0 1 2 f 0 2 3 ";
  const std::string faces = "4 0 1 2 3\n";
  std::string header =
      "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
      "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n";
  std::vector<std::string> files = {
      header + "0 0 .5\n1 0 .5\n1 1 .5\n0 1 .5\n" + faces,
      header + "-0 0 .5 1 0 0.5 1 +1 5e-1 0 1 .5 4 0 1 +2 3",
  };
  std::string windows = files[0];
  for (std::size_t at = 0; (at = windows.find('\n', at)) != std::string::npos; at += 2) {
    windows.insert(at, "\r");
  }
  files.push_back(windows);
  for (const bool isBig : {false, true}) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
      std::string bytes;
      for (const char* const line :
           {"ply", isBig ? "format binary_big_endian 1.0" : "format binary_little_endian 1.0",
            "comment  by hand ", "obj_info x", "element camera 2", "property list uint16 float64 m",
            "property int8 k", "element vertex 4", "property list uchar short s",
            "property float64 z", "property uint8 red", "property int16 x", "property uint32 y",
            "element face 1", "property double quality", "property list int8 uint16 vertex_index",
            "property list uint uint n", "element nothing 99999999999999999", "end_header"}) {
        bytes += line + end;
      }
      for (int camera = 0; camera < 2; ++camera) {
        append(bytes, std::uint16_t{2}, isBig);
        for (const double value : {1.0, 2.0}) append(bytes, value, isBig);
        bytes += '\n';
      }
      for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
        bytes += '\1';
        append(bytes, std::int16_t{-1}, isBig);
        append(bytes, 0.5, isBig);
        bytes += '\xFF';
        append(bytes, static_cast<std::int16_t>(x), isBig);
        append(bytes, static_cast<std::uint32_t>(y), isBig);
      }
      append(bytes, 9.0, isBig);
      bytes += '\4';
      for (std::uint16_t i = 0; i < 4; ++i) append(bytes, i, isBig);
      for (const std::uint32_t value : {1U, 77U}) append(bytes, value, isBig);
      files.push_back(bytes);
    }
  }
  for (const std::string& file : files) {
    MemoryRequest request(file);
    ASSERT_TRUE(request.Run(createPlyReader).IsSuccess()) << request.errors[0] << file;
    EXPECT_EQ(describe(request.model), expected) << file;
    EXPECT_TRUE(request.warnings.empty()) << request.warnings[0];
    const bool isFloat = file.find("property float x") != std::string::npos;
    EXPECT_EQ(request.model.parts[0].meshes[0].isSinglePrecision, isFloat);
  }
}

constexpr char kStart[] = "ply\nformat ascii 1.0\n";
constexpr char kTriangle[] =
    "element vertex 3\nproperty float x\nproperty float y\nproperty float z\n";
constexpr char kPoints[] = "0 0 0\n3 4 0\n0 1 0\n";

TEST(PlyReader, EdgesStripsAndFacesBecomeWhatTheyAre) {
  const struct {
    std::string bytes;
    std::string expected;
    std::string warning;
  } cases[] = {
      {"element edge 4\nproperty int vertex2\nproperty uchar a\nproperty int "
       "vertex1\nend_header\n" +
           std::string(kPoints) + "1 9 0\n2 9 1\n1 9 1\n0 9 2",
       "l 0.000000 3.000000 0.000000 9.242641 l 3.000000 3.000000 0.000000 l 0.000000 0.000000 "
       "1.000000 ",
       ""},
      {"element tristrips 1\nproperty list int int vertex_indices\nend_header\n" +
           std::string(kPoints) + "9 0 1 2 0 0 -1 2 1 0\n",
       "f 0 1 2 f 1 0 2 f 2 1 0 ", ""},
      {"element face 3\nproperty list uchar int vertex_indices\nend_header\n" +
           std::string(kPoints) + "2 0 1 3 2 1 2 3 0 1 2 rest",
       "f 2 1 2 f 0 1 2 ",
       "line 14: what follows the last element is not used|triangles with coinciding corners, kept "
       "as they are: 1|faces with fewer than three corners, left out: 1|"},
      {"end_header\n" + std::string(kPoints), "",
       "there are neither faces nor edges in the file, only 3 points|"},
  };
  for (const auto& c : cases) {
    MemoryRequest request(kStart + std::string("comment name:  Größe\t1\n") + kTriangle + c.bytes);
    ASSERT_TRUE(request.Run(createPlyReader).IsSuccess()) << request.errors[0];
    std::string text = describe(request.model);
    if (const std::size_t at = text.find_first_of("fl"); at != std::string::npos) {
      text.erase(0, at);
    } else {
      text.clear();
    }
    EXPECT_EQ(text, c.expected);
    std::string warnings;
    for (const std::string& warning : request.warnings) warnings += warning + '|';
    EXPECT_EQ(warnings, c.warning);
    EXPECT_TRUE(request.model.parts[0].name == KOVAString("Größe 1", "UTF-8"));
    EXPECT_TRUE(isSound(request.model));
  }
}

TEST(PlyReader, ErrorsNameTheLineOrTheByte) {
  const std::string face = "element face 1\nproperty list uchar int vertex_indices\n";
  const std::string binary = "ply\nformat binary_big_endian 1.0\n" + std::string(kTriangle) + face +
                             "end_header\n" + std::string(36, '\0');
  const std::string infinite = binary + std::string("\3", 1) + std::string(12, '\0');
  std::string nan = infinite;
  nan.replace(binary.size() - 8, 2, "\x7F\xC0");
  const std::string ascii = kStart + std::string(kTriangle) + face + "end_header\n" + kPoints;
  const struct {
    std::string bytes;
    const char* error;
  } cases[] = {
      {"", "byte 0: the file is empty"},
      {"solid\n", "line 1: 'ply' is expected, not 'solid'"},
      {"ply\n", "line 2: the file ends where 'end_header' is expected"},
      {"ply\nend_header\n", "line 2: the header ends without 'format'"},
      {"ply\nformat ascii 2.0\n", "line 2: the version 1.0 is expected, not '2.0'"},
      {"ply\nformat text 1.0\n",
       "line 2: 'ascii', 'binary_little_endian' or 'binary_big_endian' is expected, not 'text'"},
      {kStart + std::string("property int x\n"),
       "line 3: a property stands before the first element"},
      {kStart + std::string("element vertex\n"),
       "line 3: the file ends where a number of records is expected"},
      {kStart + std::string("element vertex -3\n"),
       "line 3: a number of records is expected, not '-3'"},
      {kStart + std::string("element a\x1B 1\nproperty list float int b\n"),
       "line 4: an integer type for the length of the list is expected, not 'float'"},
      {kStart + std::string("element a 1\nproperty long b\n"),
       "line 4: a type is expected, not 'long'"},
      {kStart + std::string(kTriangle) + "property int x\n",
       "line 7: the property 'x' stands here a second time"},
      {kStart + std::string("element face 1\nproperty list uchar float vertex_index\n"),
       "line 4: the property 'vertex_index' numbers vertices, so it must have an integer type"},
      {kStart + std::string("element vertex 1\nproperty float x\nend_header\n1"),
       "line 3: the element 'vertex' has no property 'y'"},
      {kStart + face + kTriangle + "end_header\n3 0 1 2\n" + kPoints,
       "line 3: the element 'face' stands before the vertices that it uses"},
      {kStart + std::string(kTriangle) + kTriangle,
       "line 7: the element 'vertex' stands here a second time"},
      {kStart + std::string("element vertex 18446744073709551615\nproperty char x\n"
                            "property char y\nproperty char z\nend_header\n0 0 0"),
       "line 3: 18446744073709551615 records of 'vertex' are promised, but only 5 bytes are left "
       "for them"},
      {binary, "byte 202: 1 records of 'face' are promised, but only 0 bytes are left for them"},
      {binary + "\3", "byte 203: the file ends in record 1 of 1 of 'face'"},
      {binary + std::string("\3\0\0\0\3", 5),
       "byte 203: 'face' has the vertex 3, but there are 3, numbered from 0"},
      {nan, "byte 194: the number 'nan' of record 3 of 'vertex' is outside the range that is used"},
      {ascii + "3 0 1\n", "line 14: the file ends in record 1 of 1 of 'face'"},
      {ascii + "3 0 1 -1\n", "line 13: 'face' has the vertex -1, but there are 3, numbered from 0"},
      {ascii + "-2 0 1 2\n", "line 13: a list of 'face' has the length -2"},
      {ascii + "3 0 1 two\n", "line 13: a number of record 1 of 'face' is expected, not 'two'"},
      {ascii + "99999999999999999999 1\n",
       "line 13: the number '99999999999999999999' of record 1 of 'face' is outside the range that "
       "is used"},
      {kStart + std::string(kTriangle) + "end_header\n0 0 0 0 0 0 0 1e39 0",
       "line 8: the number '1e39' of record 3 of 'vertex' is outside the range that is used"},
      {kStart + std::string(kTriangle) +
           "element edge 10\nproperty uchar vertex1\nproperty uchar vertex2\nend_header\n" +
           kPoints + "0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1 0 1",
       "line 7: 10 edges are more than there can be between 3 vertices"},
  };
  for (const auto& c : cases) {
    MemoryRequest request(c.bytes);
    EXPECT_TRUE(request.Run(createPlyReader).IsFailure()) << c.error;
    EXPECT_EQ(request.errors, std::vector<std::string>{c.error});
  }
  for (const std::string& whole : {ascii + "3 0 1 2", infinite}) {
    for (std::size_t count = 0; count < whole.size(); ++count) {
      MemoryRequest request(whole.substr(0, count));
      EXPECT_TRUE(request.Run(createPlyReader).IsFailure()) << count;
      EXPECT_EQ(request.errors.size(), 1U);
    }
  }
}

// The triangles have the polygon's area, each with the polygon's sense of rotation.
TEST(PolygonDivider, KeepsAreaAndSense) {
  std::vector<std::vector<Point>> polygons = {
      {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {1, 1, 0}},
      {{0, 0, 0}, {4, 4, 0}, {0, 3, 0}, {-4, 4, 0}},
      {{0, 0, 1}, {0, 2, 1}, {0, 2, 3}, {0, 4, 3}, {0, 4, 1}, {0, 6, 1}, {0, 6, 5}, {0, 0, 5}},
      // A square with a square hole, reached by a bridge.
      {{0, 0, 0},
       {9, 0, 0},
       {9, 9, 0},
       {0, 9, 0},
       {0, 0, 0},
       {3, 3, 0},
       {3, 6, 0},
       {6, 6, 0},
       {6, 3, 0},
       {3, 3, 0}},
  };
  std::vector<Point> star;
  std::vector<Point> spiral;
  for (int i = 0; i < 400; ++i) {
    const double angle = i * std::numbers::pi / 200;
    const double radius = i % 2 == 0 ? 1.0 : 5.0;
    star.push_back({radius * std::cos(angle), 3.0, radius * std::sin(angle)});
  }
  for (int i = 0; i < 200; ++i) {
    spiral.push_back({(1 + i * 0.1) * std::cos(i * 0.2), (1 + i * 0.1) * std::sin(i * 0.2), 7});
  }
  for (int i = 199; i >= 0; --i) {
    spiral.push_back({(1.5 + i * 0.1) * std::cos(i * 0.2), (1.5 + i * 0.1) * std::sin(i * 0.2), 7});
  }
  polygons.push_back(star);
  polygons.push_back(spiral);
  for (std::size_t i = polygons.size(); i-- > 0;) {
    polygons.push_back({polygons[i].rbegin(), polygons[i].rend()});
  }
  for (const std::vector<Point>& polygon : polygons) {
    KOVADynamicArray<Point> vertices;
    std::vector<std::uint32_t> corners;
    for (const Point& point : polygon) {
      corners.push_back(static_cast<std::uint32_t>(vertices.size()));
      vertices.add(point);
    }
    const auto cross = [](const Point& a, const Point& b, const Point& c) {
      return KOVAVector(b.x - a.x, b.y - a.y, b.z - a.z) ^
             KOVAVector(c.x - a.x, c.y - a.y, c.z - a.z);
    };
    KOVAVector whole(0.0, 0.0, 0.0);
    for (std::size_t i = 2; i < polygon.size(); ++i) {
      whole = whole + cross(polygon[0], polygon[i - 1], polygon[i]);
    }
    PolygonDivider divider;
    KOVADynamicArray<Triangle> triangles;
    divider.Divide(corners, vertices, triangles);
    ASSERT_EQ(triangles.size(), static_cast<int>(polygon.size()) - 2);
    double area = 0.0;
    for (const auto& [triangle] : triangles) {
      const KOVAVector piece =
          cross(vertices[static_cast<int>(triangle[0])], vertices[static_cast<int>(triangle[1])],
                vertices[static_cast<int>(triangle[2])]);
      EXPECT_GE(piece * whole, -1e-9);
      area += piece.Magnitude();
    }
    EXPECT_NEAR(area, whole.Magnitude(), 1e-9 * whole.Magnitude()) << polygon.size();
    EXPECT_EQ(divider.GetForcedCount(), 0U);
  }
}

// Many concave polygons whose corners cross cost no more than the limit.
TEST(PolygonDivider, CrossedPolygonsEndInTime) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
  KOVADynamicArray<Point> vertices;
  std::vector<std::uint32_t> corners;
  for (std::uint32_t i = 0; i < 10000; ++i) {
    vertices.add({coordinate(random), coordinate(random), 0.0});
    corners.push_back(i);
  }
  PolygonDivider divider;
  KOVADynamicArray<Triangle> triangles;
  for (int i = 0; i < 50; ++i) divider.Divide(corners, vertices, triangles);
  EXPECT_EQ(triangles.size(), 50 * 9998);
  EXPECT_EQ(divider.GetForcedCount(), 50U);
}

}  // namespace
}  // namespace kova::translators
