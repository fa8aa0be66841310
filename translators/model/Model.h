#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdint>

/// The neutral model: what readers fill and writers write, whatever the formats. It holds no
/// pointers into itself; copies share their arrays, as KOVADynamicArray does.
namespace kova::translators {

/// A position, in the length unit of the model.
struct Point {
  double x;
  double y;
  double z;

  bool operator==(const Point& other) const = default;
};

/// Three corners as indices into the vertices of the mesh, counter-clockwise seen from outside.
struct Triangle {
  std::uint32_t corners[3];
};

/// A surface of triangles over shared vertices. All coordinates are finite.
struct Mesh {
  KOVADynamicArray<Point> vertices;
  KOVADynamicArray<Triangle> triangles;
  /// Every coordinate is the value of a `float`: then its shortest text as a float says all.
  bool isSinglePrecision = false;
};

/// One named piece of a model.
struct Part {
  /// Empty when the file gives no name; names need not differ.
  KOVAString name;
  Mesh mesh;
};

struct Model {
  /// What the model is called where its parts have no names of their own, such as the name of its
  /// file without folder and extension.
  KOVAString name;
  KOVADynamicArray<Part> parts;
};

}  // namespace kova::translators
