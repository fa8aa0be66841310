#include "tests/translators/ReaderFixture.h"
#include "translators/ply/PlyReader.h"
#include "translators/ply/PlyWriter.h"
#include "translators/stl/StlReader.h"
#include "translators/stl/StlWriter.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>

namespace kova::translators {
namespace {

Instance makeInstance(int part, const char* name, const KOVAMorph3D& placement) {
  Instance instance;
  instance.part = part;
  instance.name = KOVAString(name, "UTF-8");
  instance.placement = placement;
  return instance;
}

// A tetrahedron that stands three times, once mirrored, and a part of two meshes and a curve.
Model makeModel(bool isSinglePrecision) {
  Model model;
  model.name = KOVAString("Größe\n7", "UTF-8");
  Part tetrahedron;
  tetrahedron.name = KOVAString("solid part");
  Mesh mesh;
  mesh.isSinglePrecision = isSinglePrecision;
  const double size = isSinglePrecision ? double{0.1F} : 0.1;
  for (const Point& point : {Point{0, 0, 0}, {size, 0, 0}, {0, size, 0}, {0, 0, size}}) {
    mesh.vertices.add(point);
  }
  for (const auto& [a, b, c] : {std::tuple{0U, 2U, 1U}, {0, 1, 3}, {1, 2, 3}, {0, 3, 2}}) {
    mesh.triangles.add({{a, b, c}});
  }
  tetrahedron.meshes.add(mesh);
  addPart(model, tetrahedron);
  Part other;
  Mesh second;
  second.vertices = mesh.vertices;
  second.triangles.add({{1, 1, 2}});
  second.isSinglePrecision = isSinglePrecision;
  other.meshes.add(second);
  other.meshes.add(mesh);
  for (double x = 0; x < 3; ++x) other.points.add({x, 0, 0.5});
  other.curves.add({0, 3, 2.0, {}});
  addPart(model, other);
  if (isSinglePrecision) return model;
  const double mirror[9] = {0, 1, 0, 1, 0, 0, 0, 0, 1};
  const KOVAPoint3D shift(10, -20, 0.3);
  model.instances.add(makeInstance(0, "mirrored", KOVAMorph3D(KOVAAffine3D(mirror), shift, 2.0)));
  model.instances.add(makeInstance(1, "Größe\n7", KOVAMorph3D(shift, -3.0)));
  return model;
}

struct Way {
  CreateWriter write;
  CreateReader read;
  const char* option;
  const char* form;
  bool isExact;
};
const Way kWays[] = {
    {createStlWriter, createStlReader, "Stl.Write.Form", "binary", false},
    {createStlWriter, createStlReader, "Stl.Write.Form", "ASCII", true},
    {createPlyWriter, createPlyReader, "Ply.Write.Form", "little", true},
    {createPlyWriter, createPlyReader, "Ply.Write.Form", "big", true},
    {createPlyWriter, createPlyReader, "Ply.Write.Form", "ascii", true},
};

TEST(MeshWriters, WhatIsWrittenIsReadBack) {
  for (const Way& way : kWays) {
    for (const bool isSinglePrecision : {true, false}) {
      const Model model = makeModel(isSinglePrecision);
      WriteTrial trial;
      trial.options.AddOption(KOVAString(way.option), way.form);
      ASSERT_TRUE(trial.Run(way.write, model).IsSuccess()) << way.form << trial.errors[0];
      MemoryRequest request(trial.bytes);
      ASSERT_TRUE(request.Run(way.read).IsSuccess()) << way.form << request.errors[0];
      const std::vector<Point> expected = collectCorners(model);
      const std::vector<Point> corners = collectCorners(request.model);
      EXPECT_TRUE(areSameFloats(corners, expected)) << way.form;
      // The text of a float is read as a double that is near.
      EXPECT_TRUE(!way.isExact || isSinglePrecision || corners == expected) << way.form;
      if (way.read != createPlyReader) continue;
      const Part& part = request.model.parts[0];
      ASSERT_EQ(part.curves.size(), isSinglePrecision ? 1 : 2);
      EXPECT_EQ(part.curves[0].pointCount, 3U);
      EXPECT_EQ(part.curves[0].length, 2.0);
      EXPECT_EQ(part.meshes[0].isSinglePrecision, isSinglePrecision);
      EXPECT_TRUE(part.name == KOVAString("Größe 7", "UTF-8"));
    }
  }
}

TEST(StlWriter, BinaryHasNormalsAndNoWordSolid) {
  WriteTrial trial;
  Model model = makeModel(true);
  model.unit = KOVAUnitInch;
  ASSERT_TRUE(trial.Run(createStlWriter, model).IsSuccess());
  EXPECT_EQ(trial.warnings,
            std::vector<std::string>{"curves, which STL does not have, left out: 1"});
  ASSERT_EQ(trial.bytes.size(), 84U + 9 * 50);
  EXPECT_EQ(trial.bytes.substr(0, 32), std::string("Written by KOVABase, unit: INCH\0", 32));
  EXPECT_EQ(trial.bytes.substr(80, 4), std::string("\x09\0\0\0", 4));
  const float third = std::sqrt(1.0F / 3.0F);
  const float normals[][3] = {{0, 0, -1}, {0, -1, 0}, {third, third, third}, {-1, 0, 0}, {0, 0, 0}};
  for (std::size_t i = 0; i < std::size(normals); ++i) {
    float normal[3];
    std::memcpy(normal, trial.bytes.data() + 84 + 50 * i, sizeof normal);
    for (int axis = 0; axis < 3; ++axis) EXPECT_FLOAT_EQ(normal[axis], normals[i][axis]) << i;
  }
}

TEST(StlWriter, AsciiHasASolidForEachInstance) {
  WriteTrial trial;
  trial.options.AddOption(KOVAString("Stl.Write.Form"), "ascii");
  ASSERT_TRUE(trial.Run(createStlWriter, makeModel(false)).IsSuccess());
  const std::string start =
      "solid solid part\n"
      "facet normal 0 0 -1\n outer loop\n  vertex 0 0 0\n  vertex 0 0.1 0\n  vertex 0.1 0 0\n"
      " endloop\nendfacet\n";
  EXPECT_EQ(trial.bytes.substr(0, start.size()), start);
  std::string names;
  for (std::size_t at = 0; (at = trial.bytes.find("endsolid", at)) != std::string::npos; ++at) {
    names += trial.bytes.substr(at, trial.bytes.find('\n', at) - at) + '|';
  }
  EXPECT_EQ(names, "endsolid solid part|endsolid Größe 7|endsolid mirrored|endsolid Größe 7|");
}

TEST(PlyWriter, FacesHaveColours) {
  Model model;
  Part part = Part(makeModel(true).parts[0]);
  part.meshes.add(part.meshes[0]);
  part.meshes[0].looks.colour = 1;
  model.colours.add({0, 0, 0});
  model.colours.add({1, 0.5F, 0});
  addPart(model, part);
  WriteTrial trial;
  trial.options.AddOption(KOVAString("Ply.Write.Form"), "ascii");
  ASSERT_TRUE(trial.Run(createPlyWriter, model).IsSuccess());
  EXPECT_NE(trial.bytes.find("\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
                             "end_header\n0 0 0\n0.1 0 0\n"),
            std::string::npos)
      << trial.bytes;
  EXPECT_NE(trial.bytes.find("\n3 0 2 1 255 128 0\n"), std::string::npos) << trial.bytes;
  EXPECT_NE(trial.bytes.find("\n3 4 6 5 192 192 192\n"), std::string::npos) << trial.bytes;
}

TEST(MeshWriters, RefusedModelsLeaveTheFileAlone) {
  Model empty;
  Model wire = makeModel(true);
  for (Part& part : wire.parts) part.meshes = {};
  Model many;
  Part part;
  Mesh mesh;
  mesh.vertices.endGrow(100000);
  mesh.triangles.endGrow(100000);
  part.meshes.add(mesh);
  addPart(many, part);
  for (int i = 1; i < 43000; ++i) many.instances.add(Instance());
  Model far = makeModel(false);
  far.instances.add(makeInstance(0, "far", KOVAMorph3D(KOVAPoint3D(0, 1e39, 0))));

  const struct {
    CreateWriter write;
    const char* form;
    const Model& model;
    const char* error;
  } cases[] = {
      {createStlWriter, "binary", empty,
       "there are no triangles in the model, and STL has nothing else"},
      {createStlWriter, "ascii", wire,
       "there are no triangles in the model, and STL has nothing else"},
      {createPlyWriter, "big", empty, "there are neither triangles nor curves in the model"},
      {createStlWriter, "binary", many,
       "4300000000 triangles are more than a binary STL file below 4 GiB has room for, 85899344"},
      {createPlyWriter, "ascii", many,
       "4300000000 vertices are more than a PLY file can number, 2147483647"},
      {createStlWriter, "text", wire,
       "the option Stl.Write.Form is 'text'; it may be one of 'binary', 'ascii'"},
  };
  for (const auto& c : cases) {
    const TemporaryFile file("as it was");
    WriteTrial trial;
    trial.options.AddOption(
        KOVAString(c.write == createStlWriter ? "Stl.Write.Form" : "Ply.Write.Form"), c.form);
    trial.Run(c.write, c.model, file.GetFile());
    EXPECT_TRUE(trial.result.IsFailure());
    EXPECT_EQ(trial.errors, std::vector<std::string>{c.error});
    EXPECT_EQ(file.GetBytes(), "as it was");
  }
  WriteTrial trial;
  EXPECT_TRUE(trial.Run(createStlWriter, far).IsFailure());
  EXPECT_EQ(trial.errors,
            std::vector<std::string>{"the point (0, 1e+39, 0) of 'far' is outside the range of "
                                     "single precision, which STL has"});
}

TEST(MeshWriters, ProgressGrowsInStepsToTheEnd) {
  Model model;
  Part part;
  Mesh mesh;
  mesh.isSinglePrecision = true;
  for (int i = 0; i < 150000; ++i) {
    mesh.vertices.add({static_cast<double>(i), 0, 0});
    const auto corner = static_cast<std::uint32_t>(i);
    mesh.triangles.add({{corner, corner / 2, corner / 3}});
  }
  part.meshes.add(mesh);
  addPart(model, part);
  WriteTrial trial;
  ASSERT_TRUE(trial.Run(createPlyWriter, model).IsSuccess());
  EXPECT_EQ(trial.fractions.size(), 3U);
  MemoryRequest request(trial.bytes);
  ASSERT_TRUE(request.Run(createPlyReader).IsSuccess());
  EXPECT_EQ(request.fractions.size(), trial.bytes.size() >> 20);
  for (const auto& fractions : {trial.fractions, request.fractions}) {
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_GT(fractions.front(), 0.0);
    EXPECT_LE(fractions.back(), 1.0);
  }
}

}  // namespace
}  // namespace kova::translators
