#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "tests/translators/ReaderFixture.h"
#include "translators/obj/ObjWriter.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace kova::translators {
namespace {

Part makePart(const char* name, double shift, bool isSinglePrecision) {
  Part part;
  part.name = KOVAString(name, "UTF-8");
  part.mesh.isSinglePrecision = isSinglePrecision;
  for (const Point& point : {Point{shift, 0, 0}, Point{shift, 1, 0}, Point{shift, 0, -1e-7}}) {
    part.mesh.vertices.add(point);
  }
  part.mesh.triangles.add({{0, 1, 2}});
  part.mesh.triangles.add({{2, 1, 0}});
  return part;
}

TEST(ObjWriter, WritesGroupsWithNamesOfTheirOwn) {
  Model model;
  model.name = KOVAString("case", "UTF-8");
  model.parts.add(makePart("Größe 3\t#1\\", double{0.1F}, true));
  model.parts.add(makePart("", 0.1, false));
  model.parts.add(makePart("case", 1e10, false));
  model.parts.add(makePart("case_2", 123456.789, false));
  KOVAStringOutputStream stream;
  RecordingReport report;
  EXPECT_TRUE(ObjWriter().Write(model, stream, report).IsSuccess());
  EXPECT_STREQ(stream.GetBytes(),
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

// More than one block, so that the failure comes in the middle.
TEST(ObjWriter, AFullDiskIsTheResult) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "this system has no /dev/full";
  Model model;
  Part part = makePart("x", 0.1, false);
  for (int i = 0; i < 60000; ++i) part.mesh.triangles.add({{0, 1, 2}});
  model.parts.add(part);
  KOVAFileOutputStream stream("/dev/full");
  RecordingReport report;
  EXPECT_EQ(ObjWriter().Write(model, stream, report), KOVAResultCode::kFileSaveError);
  EXPECT_TRUE(report.errors.empty());
}

}  // namespace
}  // namespace kova::translators
