// Writes sample meshes as STL files: closed surfaces of the project's own making, the same bytes
// on every run.

#include "apps/kova-generate/Shapes.h"
#include "kovabase/io/KOVAFileOutputStream.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using kova::generate::Facet;
using kova::generate::Point3D;
using kova::generate::Shape;

Point3D normalOf(const Facet& facet) {
  const auto& [a, b, c] = facet;
  const Point3D u{b.x - a.x, b.y - a.y, b.z - a.z};
  const Point3D v{c.x - a.x, c.y - a.y, c.z - a.z};
  const Point3D n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
  const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
  if (length == 0) return {0, 0, 0};
  return {n.x / length, n.y / length, n.z / length};
}

// Moves each shape to the right of the one before.
void placeSideBySide(std::vector<Shape>& shapes) {
  constexpr double kGap = 10;
  double edge = 0;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    double lowest = 0;
    double highest = 0;
    for (const Facet& facet : shapes[i].facets) {
      for (const Point3D& point : facet) {
        lowest = std::min(lowest, point.x);
        highest = std::max(highest, point.x);
      }
    }
    const double shift = i == 0 ? 0 : edge + kGap - lowest;
    for (Facet& facet : shapes[i].facets) {
      for (Point3D& point : facet) point.x += shift;
    }
    edge = highest + shift;
  }
}

void writeUnsigned(KOVAOutputStream& stream, std::uint32_t value, int bytes) {
  char text[4];
  for (int i = 0; i < bytes; ++i) text[i] = static_cast<char>(value >> (8 * i) & 0xFF);
  stream.Write(text, static_cast<std::size_t>(bytes));
}

void writeBinary(KOVAOutputStream& stream, const std::vector<Shape>& shapes) {
  std::size_t facets = 0;
  for (const Shape& shape : shapes) facets += shape.facets.size();
  std::string comment = "solid in spite of this word a binary file, made by kova-generate";
  comment.resize(80, ' ');
  stream.Write(comment.data(), comment.size());
  writeUnsigned(stream, static_cast<std::uint32_t>(facets), 4);
  for (const Shape& shape : shapes) {
    for (const Facet& facet : shape.facets) {
      for (const Point3D& point : {normalOf(facet), facet[0], facet[1], facet[2]}) {
        for (const double value : {point.x, point.y, point.z}) {
          writeUnsigned(stream, std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
        }
      }
      writeUnsigned(stream, 0, 2);
    }
  }
}

void writeAsciiPoint(KOVAOutputStream& stream, const char* keyword, const Point3D& point) {
  stream.Write(keyword);
  for (const double value : {point.x, point.y, point.z}) {
    std::array<char, 32> text;
    text[0] = ' ';
    // Adding zero leaves no negative zero.
    const float number = static_cast<float>(value) + 0.0F;
    const char* end = std::to_chars(text.data() + 1, text.data() + text.size(), number,
                                    std::chars_format::scientific)
                          .ptr;
    stream.Write(text.data(), static_cast<std::size_t>(end - text.data()));
  }
  stream.Write("\n");
}

void writeAscii(KOVAOutputStream& stream, const std::vector<Shape>& shapes) {
  for (const Shape& shape : shapes) {
    stream.Write(("solid " + shape.name + "\n").c_str());
    for (const Facet& facet : shape.facets) {
      writeAsciiPoint(stream, "  facet normal", normalOf(facet));
      stream.Write("    outer loop\n");
      for (const Point3D& point : facet) writeAsciiPoint(stream, "      vertex", point);
      stream.Write("    endloop\n  endfacet\n");
    }
    stream.Write(("endsolid " + shape.name + "\n").c_str());
  }
}

int run(int count, char** arguments) {
  std::vector<std::string> names{"gear"};
  std::string path;
  std::uint64_t triangles = 20000;
  int teeth = 24;
  bool isAscii = false;
  CLI::App app("Writes sample meshes as STL files.", "kova-generate");
  app.add_option("-s,--shape", names, "Shapes to write, side by side; gear if none is given")
      ->check(CLI::IsMember({"gear", "knot"}))
      ->delimiter(',');
  app.add_option("-n,--triangles", triangles, "Triangles of a knot")
      ->check(CLI::Range(100U, 100000000U))
      ->capture_default_str();
  app.add_option("--teeth", teeth, "Teeth of a gear")
      ->check(CLI::Range(8, 200))
      ->capture_default_str();
  app.add_flag("--ascii", isAscii, "Write ASCII STL with a solid for each shape, not binary");
  app.add_option("FILE", path, "The file to write")->required();
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }

  std::vector<Shape> shapes;
  shapes.reserve(names.size());
  for (const std::string& name : names) {
    shapes.push_back(name == "gear" ? kova::generate::makeGear(teeth)
                                    : kova::generate::makeKnot(triangles));
  }
  placeSideBySide(shapes);
  KOVAFileOutputStream stream(path.c_str());
  if (isAscii) {
    writeAscii(stream, shapes);
  } else {
    writeBinary(stream, shapes);
  }
  if (stream.Close().IsFailure()) {
    std::fprintf(stderr, "kova-generate: '%s' cannot be written: %s\n", path.c_str(),
                 stream.GetFailureReason());
    return 1;
  }
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return run(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kova-generate: %s\n", error.what());
    return 3;
  }
}
