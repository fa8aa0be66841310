#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/KOVAUnit.h"

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

/// Linear amounts from 0 to 1, as the formats give them.
struct Colour {
  float red;
  float green;
  float blue;

  bool operator==(const Colour& other) const = default;
};

/// What is the same for curves, meshes and instances. What an instance says holds for the pieces
/// of its part that say nothing themselves.
struct Looks {
  /// The number of a layer of the model; 0 is none.
  int layer = 0;
  /// An index into the colours of the model; -1 is none.
  int colour = -1;
};

/// A curve as a chain of points of its part, of which there are at least two. A closed curve
/// repeats its first point.
struct Curve {
  std::uint32_t firstPoint = 0;
  std::uint32_t pointCount = 0;
  /// The length of the curve itself, not of its chords; finite.
  double length = 0.0;
  Looks looks;
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
  Looks looks;
};

/// One named piece of a model, in its own coordinates.
struct Part {
  /// Empty when the file gives no name; names need not differ.
  KOVAString name;
  /// Of all curves; finite.
  KOVADynamicArray<Point> points;
  KOVADynamicArray<Curve> curves;
  KOVADynamicArray<Mesh> meshes;
};

/// A part as it stands in the model.
struct Instance {
  /// An index into the parts of the model.
  int part = 0;
  /// From the part's coordinates to those of the model; everything that it moves stays finite.
  KOVAMorph3D placement;
  /// Empty when the file gives none: then the name of the part holds.
  KOVAString name;
  Looks looks;
};

struct Layer {
  /// From 1 on; each number once.
  int number = 0;
  KOVAString name;
};

struct Model {
  /// What the model is called where its parts have no names of their own, such as the name of its
  /// file without folder and extension.
  KOVAString name;
  /// Of every length in the model; unknown when the file names none.
  KOVAUnit unit = KOVAUnitUnknown;
  KOVADynamicArray<Part> parts;
  /// In the order in which writers write them. A part may stand several times or not at all.
  KOVADynamicArray<Instance> instances;
  KOVADynamicArray<Colour> colours;
  KOVADynamicArray<Layer> layers;
};

/// Adds a part and one instance of it where it is.
inline void addPart(Model& model, const Part& part) {
  Instance instance;
  instance.part = model.parts.size();
  model.parts.add(part);
  model.instances.add(instance);
}

/// What an instance is called: its own name, else that of its part, else that of the model.
inline const KOVAString& getName(const Model& model, const Instance& instance) {
  if (!instance.name.isEmpty()) return instance.name;
  const KOVAString& part = model.parts[instance.part].name;
  return part.isEmpty() ? model.name : part;
}

}  // namespace kova::translators
