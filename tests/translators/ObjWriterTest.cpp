#include "tests/translators/ReaderFixture.h"
#include "translators/obj/ObjWriter.h"

#include <gtest/gtest.h>

namespace kova::translators {
namespace {

Part makePart(const char* name, double shift, bool isSinglePrecision) {
  Part part;
  part.name = KOVAString(name, "UTF-8");
  Mesh mesh;
  mesh.isSinglePrecision = isSinglePrecision;
  for (const Point& point : {Point{shift, 0, 0}, Point{shift, 1, 0}, Point{shift, 0, -1e-7}}) {
    mesh.vertices.add(point);
  }
  mesh.triangles.add({{0, 1, 2}});
  mesh.triangles.add({{2, 1, 0}});
  part.meshes.add(mesh);
  return part;
}

TEST(ObjWriter, WritesGroupsWithNamesOfTheirOwn) {
  Model model;
  model.name = KOVAString("case", "UTF-8");
  addPart(model, makePart("Größe 3\t#1\\", double{0.1F}, true));
  addPart(model, makePart("", 0.1, false));
  addPart(model, makePart("case", 1e10, false));
  addPart(model, makePart("case_2", 123456.789, false));
  WriteTrial trial;
  EXPECT_TRUE(trial.Run(createObjWriter, model).IsSuccess());
  EXPECT_EQ(trial.bytes,
            "# Written by KOVABase\n"
            "# parts: 4, vertices: 12, triangles: 8\n"
            "g Größe_3__1_\n"
            "v 0.1 0 0\nv 0.1 1 0\nv 0.1 0 -1e-07\nf 1 2 3\nf 3 2 1\n"
            "g case\n"
            "v 0.1 0 0\nv 0.1 1 0\nv 0.1 0 -1e-07\nf 4 5 6\nf 6 5 4\n"
            "g case_2\n"
            "v 1e+10 0 0\nv 1e+10 1 0\nv 1e+10 0 -1e-07\nf 7 8 9\nf 9 8 7\n"
            "g case_2_2\n"
            "v 123456.789 0 0\nv 123456.789 1 0\nv 123456.789 0 -1e-07\n"
            "f 10 11 12\nf 12 11 10\n");
}

// Two curves of one list of points, and a part without anything to be written.
TEST(ObjWriter, PlacesInstancesAndWritesCurves) {
  Model model;
  Part part = makePart("a", 1, true);
  for (double x = 0; x < 4; ++x) part.points.add({x, 0.5, 0});
  part.curves.add({0, 2, 1.0, {}});
  part.curves.add({1, 3, 2.0, {}});
  addPart(model, part);
  addPart(model, Part());
  Instance mirrored;
  mirrored.name = KOVAString("b");
  mirrored.placement = KOVAMorph3D(KOVAPoint3D(10, 20, 30), -2);
  model.instances.add(mirrored);
  model.unit = KOVAUnitInch;

  WriteTrial trial;
  EXPECT_TRUE(trial.Run(createObjWriter, model).IsSuccess());
  EXPECT_EQ(trial.bytes,
            "# Written by KOVABase\n# parts: 2, vertices: 14, triangles: 4, curves: 4\n"
            "# unit: INCH\n"
            "g a\n"
            "v 1 0 0\nv 1 1 0\nv 1 0 -1e-07\nf 1 2 3\nf 3 2 1\n"
            "v 0 0.5 0\nv 1 0.5 0\nv 2 0.5 0\nv 3 0.5 0\nl 4 5\nl 5 6 7\n"
            "g b\n"
            "v 8 20 30\nv 8 18 30\nv 8 20 30.0000002\nf 8 10 9\nf 10 8 9\n"
            "v 10 19 30\nv 8 19 30\nv 6 19 30\nv 4 19 30\nl 11 12\nl 12 13 14\n");

  trial.options.AddOption(KOVAString("Obj.Write.Curves"), false);
  EXPECT_TRUE(trial.Run(createObjWriter, model).IsSuccess());
  EXPECT_EQ(trial.bytes.find("\nl "), std::string::npos);
  EXPECT_NE(trial.bytes.find("\nf 4 6 5\nf 6 4 5\n"), std::string::npos) << trial.bytes;
}

// More than one block, so that the failure comes in the middle.
TEST(ObjWriter, WhatTheSystemRefusesIsReportedOnce) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "this system has no /dev/full";
  Model model;
  Part part = makePart("x", 0.1, false);
  for (int i = 0; i < 60000; ++i) part.meshes[0].triangles.add({{0, 1, 2}});
  addPart(model, part);
  const struct {
    const char* path;
    const char* error;
  } cases[] = {
      {"/dev/full", "it cannot be written: the system did not take all of it"},
      {"/nonexistent/x.obj", "it cannot be written: No such file or directory"},
  };
  for (const auto& c : cases) {
    WriteTrial trial;
    trial.Run(createObjWriter, model, new KOVAFile(KOVAFilePath(c.path)));
    EXPECT_EQ(trial.result, KOVAResultCode::kFileSaveError);
    EXPECT_EQ(trial.errors, std::vector<std::string>{c.error});
  }
}

}  // namespace
}  // namespace kova::translators
