// Writes sample models: closed meshes as STL or PLY files, and a gear train as a STEP file. All of
// the project's own making, and the same bytes on every run.

#include "apps/kova-generate/MeshFile.h"
#include "apps/kova-generate/Shapes.h"
#include "apps/kova-generate/StepAssembly.h"
#include "kovabase/io/KOVAFileOutputStream.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using kova::generate::Facet;
using kova::generate::Point3D;
using kova::generate::Shape;

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

// The name behind the last '/' up to its last '.', and what follows that in lower case.
void splitName(const std::string& path, std::string& name, std::string& extension) {
  name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  extension.clear();
  if (dot == std::string::npos) return;
  for (const char c : name.substr(dot + 1)) {
    extension += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  name.resize(dot);
}

int run(int count, char** arguments) {
  std::vector<std::string> names{"gear"};
  std::string path;
  std::string format;
  std::uint64_t triangles = 20000;
  int teeth = 24;
  bool isAscii = false;
  int repeats = 1;
  double megabytes = 0;
  CLI::App app("Writes sample models: meshes as STL or PLY, an assembly as STEP.", "kova-generate");
  app.add_option("-f,--format", format, "What to write; the extension of FILE tells, else STL")
      ->check(CLI::IsMember({"stl", "ply", "step"}));
  app.add_option("FILE", path, "The file to write")->required();
  app.add_option("-s,--shape", names, "Shapes of a mesh, side by side; gear if none is given")
      ->check(CLI::IsMember({"gear", "knot"}))
      ->delimiter(',')
      ->group("Meshes");
  app.add_option("-n,--triangles", triangles, "Triangles of a knot")
      ->check(CLI::Range(100U, 100000000U))
      ->capture_default_str()
      ->group("Meshes");
  app.add_option("--teeth", teeth, "Teeth of a gear")
      ->check(CLI::Range(8, 200))
      ->capture_default_str()
      ->group("Meshes");
  app.add_flag("--ascii", isAscii, "Write text, in STL with a solid for each shape, not binary")
      ->group("Meshes");
  app.add_option("-r,--repeat", repeats, "How often to write the assembly, side by side")
      ->check(CLI::Range(1, 1000000))
      ->capture_default_str()
      ->group("Assembly");
  app.add_option("-m,--megabytes", megabytes, "Repeat until the file has so many million bytes")
      ->check(CLI::Range(0.0, 1000000.0))
      ->group("Assembly");
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }

  std::string name;
  std::string extension;
  splitName(path, name, extension);
  if (format.empty()) {
    format = extension == "stp" || extension == "step" ? "step"
             : extension == "ply"                      ? "ply"
                                                       : "stl";
  }
  KOVAFileOutputStream stream(path.c_str());
  if (format == "step") {
    kova::generate::writeGearTrain(stream, name, repeats,
                                   static_cast<std::uint64_t>(megabytes * 1e6));
  } else {
    std::vector<Shape> shapes;
    shapes.reserve(names.size());
    for (const std::string& shape : names) {
      shapes.push_back(shape == "gear" ? kova::generate::makeGear(teeth)
                                       : kova::generate::makeKnot(triangles));
    }
    placeSideBySide(shapes);
    if (format == "ply") {
      kova::generate::writePly(stream, shapes, isAscii);
    } else {
      kova::generate::writeStl(stream, shapes, isAscii);
    }
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
