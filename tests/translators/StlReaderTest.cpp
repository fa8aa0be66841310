#include "tests/translators/ReaderFixture.h"
#include "translators/stl/StlReader.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kova::translators {
namespace {

void appendUnsigned(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

// Triangles of nine coordinates each.
std::string makeBinary(const std::string& comment, std::uint32_t count,
                       const std::vector<float>& coordinates) {
  std::string bytes = comment;
  bytes.resize(80, '\0');
  appendUnsigned(bytes, count, 4);
  for (std::size_t i = 0; i < coordinates.size(); ++i) {
    if (i % 9 == 0) bytes.append(12, '\xFF');
    appendUnsigned(bytes, std::bit_cast<std::uint32_t>(coordinates[i]), 4);
    if (i % 9 == 8) bytes.append(2, '\0');
  }
  return bytes;
}

const std::vector<float> kTwoTriangles = {0, 0, 0,     1, 0, 0, 0, 1, 0,
                                          1, 0, -0.0F, 0, 1, 0, 1, 1, .1F};

std::string makeFacet(const std::string& vertices = "vertex 0 0 0 vertex 1 0 0 vertex 0 1 0") {
  return "facet normal 0 0 1 outer loop " + vertices + " endloop endfacet\n";
}

TEST(StlReader, BinaryIsRecognisedByItsLengthWhateverItsComment) {
  for (const char* comment : {"", "solid name", "solid x facet normal", "Größe \xFF"}) {
    {
      MemoryRequest outcome(makeBinary(comment, 2, kTwoTriangles));
      ASSERT_TRUE(outcome.Run(createStlReader).IsSuccess()) << comment << outcome.errors[0];
      EXPECT_TRUE(outcome.warnings.empty());
      ASSERT_EQ(outcome.model.parts.size(), 1);
      const Mesh& mesh = outcome.model.parts[0].meshes[0];
      EXPECT_TRUE(outcome.model.parts[0].name.isEmpty());
      EXPECT_TRUE(mesh.isSinglePrecision);
      EXPECT_EQ(mesh.vertices.size(), 4);
      ASSERT_EQ(mesh.triangles.size(), 2);
      EXPECT_EQ(mesh.triangles[1].corners[0], 1U);
      EXPECT_EQ(mesh.triangles[1].corners[1], 2U);
      EXPECT_EQ(mesh.vertices[3], (Point{1, 1, double{.1F}}));
    }
  }
}

TEST(StlReader, BinaryOddities) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  std::vector<float> bad = kTwoTriangles;
  bad[9 + 4] = nan;
  std::vector<float> worse = kTwoTriangles;
  worse[0] = -infinity;
  const std::vector<float> flat = {0, 0, 0, 0, 0, 0, 1, 1, 1};
  struct Case {
    std::string bytes;
    const char* error;
    const char* warning;
  } cases[] = {
      {"", "byte 0: the file is empty", ""},
      {std::string(50, '\0'),
       "byte 50: the file ends inside the header of a binary STL file, which takes 84 bytes; it is "
       "no ASCII STL file either",
       ""},
      {makeBinary("", 3, kTwoTriangles),
       "byte 184: the file ends here, but its header promises 3 triangles, 234 bytes in all", ""},
      {makeBinary("", 0xFFFFFFFF, kTwoTriangles),
       "byte 184: the file ends here, but its header promises 4294967295 triangles, 214748364834 "
       "bytes in all",
       ""},
      {makeBinary("", 0, kTwoTriangles),
       "byte 80: the header promises no triangles, but more bytes follow", ""},
      {makeBinary("", 2, bad),
       "byte 158: corner 2 of triangle 2 has a coordinate that is not a finite number", ""},
      {makeBinary("", 2, worse),
       "byte 96: corner 1 of triangle 1 has a coordinate that is not a finite number", ""},
      {makeBinary("", 1, kTwoTriangles), "",
       "byte 134: 50 bytes after the last triangle are not used"},
      {makeBinary("", 0, {}), "", "there are no triangles in the file"},
      {makeBinary("", 1, flat), "", "triangles with coinciding corners, kept as they are: 1"},
  };
  for (const Case& c : cases) {
    MemoryRequest outcome(c.bytes);
    outcome.Run(createStlReader);
    EXPECT_EQ(outcome.result.IsFailure(), *c.error != 0) << c.error << c.warning;
    EXPECT_EQ(outcome.errors,
              *c.error != 0 ? std::vector<std::string>{c.error} : std::vector<std::string>());
    EXPECT_EQ(outcome.warnings,
              *c.warning != 0 ? std::vector<std::string>{c.warning} : std::vector<std::string>());
  }
}

TEST(StlReader, AsciiFormsThatMeanTheSame) {
  const std::string facet = makeFacet();
  std::string mac =
      "solid\rfacet normal 0 0 1\router loop\rvertex 0 0 0\rvertex 1 0 0\rvertex 0 1 0\r"
      "endloop\rendfacet\rendsolid";
  const std::string forms[] = {
      "solid\n" + facet + "endsolid",
      "\xEF\xBB\xBFsolid\n" + facet + "endsolid\n\n",
      " \t\nSOLID\r\nFACET NORMAL -nan(ind) 1.#QNAN nan\r\nOUTER LOOP VERTEX 0 0 0 VERTEX 1 0 0 "
      "VERTEX 0 1 0 ENDLOOP ENDFACET\r\nENDSOLID\r\n",
      mac,
      "solid\n" + makeFacet("vertex -0 +0.0 0e9 vertex +1.0E+0 1e-9999 -1e-999 vertex .0 1. 0") +
          "endsolid",
      "solid\n\f\v" + facet + "endsolid whatever follows on the line # is its name",
  };
  for (const std::string& form : forms) {
    {
      MemoryRequest outcome(form);
      ASSERT_TRUE(outcome.Run(createStlReader).IsSuccess()) << form << outcome.errors[0];
      ASSERT_EQ(outcome.model.parts.size(), 1);
      const Mesh& mesh = outcome.model.parts[0].meshes[0];
      ASSERT_EQ(mesh.vertices.size(), 3);
      EXPECT_EQ(mesh.vertices[0], (Point{0, 0, 0}));
      EXPECT_EQ(mesh.vertices[1], (Point{1, 0, 0})) << form;
      EXPECT_EQ(mesh.vertices[2], (Point{0, 1, 0}));
    }
  }
}

TEST(StlReader, SolidsBecomePartsWithTheirNames) {
  MemoryRequest outcome("solid  left  wheel \r\n" + makeFacet() + makeFacet() +
                        "endsolid left\nsolid Größe\n" + makeFacet() +
                        "endsolid\nsolid empty\nendsolid\nsolid Gr\xF6\xDF\x65\n" +
                        makeFacet("vertex 1 1 1 vertex 1 1 1 vertex 0 0 0") + "endsolid\n");
  ASSERT_TRUE(outcome.Run(createStlReader).IsSuccess());
  ASSERT_EQ(outcome.model.parts.size(), 3);
  EXPECT_TRUE(outcome.model.parts[0].name == KOVAString("left  wheel"));
  EXPECT_EQ(outcome.model.parts[0].meshes[0].triangles.size(), 2);
  EXPECT_TRUE(outcome.model.parts[1].name == KOVAString("Größe", "UTF-8"));
  EXPECT_TRUE(outcome.model.parts[2].name == KOVAString("Größe", "UTF-8"));
  EXPECT_EQ(outcome.warnings,
            (std::vector<std::string>{"triangles with coinciding corners, kept as they are: 1",
                                      "solids without triangles, left out: 1"}));
}

TEST(StlReader, AsciiErrorsNameTheLine) {
  const std::string word(300, 'x');
  const struct {
    std::string bytes;
    const char* error;
  } cases[] = {
      {"hello", "line 1: 'solid' is expected, not 'hello'"},
      {" \n\r\n\r\n", "line 4: the file ends where 'solid' is expected"},
      {"solid a\n", "line 2: the file ends where 'facet' or 'endsolid' is expected"},
      {"solid a\nendsolid a\ngarbage",
       "line 3: 'solid' or the end of the file is expected, not 'garbage'"},
      {"solid\nfacet normal 0 0\nouter loop", "line 3: a number is expected, not 'outer'"},
      {"solid\n" + makeFacet("vertex 0 0 0 vertex 1 0 0"),
       "line 2: 'vertex' is expected, not 'endloop'"},
      {"solid\n\n" + makeFacet("vertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nvertex 0 0 1"),
       "line 6: 'endloop' is expected, not 'vertex'"},
      {"solid\n" + makeFacet("vertex 0 0 zero"), "line 2: a number is expected, not 'zero'"},
      {"solid\n" + makeFacet("vertex 0 0 1,5"), "line 2: a number is expected, not '1,5'"},
      {"solid\n" + makeFacet("vertex 0x1p3 0 0"), "line 2: a number is expected, not '0x1p3'"},
      {"solid\n" + makeFacet("vertex +-1 0 0"), "line 2: a number is expected, not '+-1'"},
      {"solid\n" + makeFacet("vertex nan 0 0"),
       "line 2: the coordinate 'nan' is outside the range of single precision"},
      {"solid\n" + makeFacet("vertex 0 -1e999 0"),
       "line 2: the coordinate '-1e999' is outside the range of single precision"},
      {"solid\n" + makeFacet("vertex 0 0 3.5e38"),
       "line 2: the coordinate '3.5e38' is outside the range of single precision"},
      {"solid\nfacet\x01 normal", "line 2: 'facet' or 'endsolid' is expected, not 'facet\\x01'"},
      {"solid\n" + word,
       "line 2: 'facet' or 'endsolid' is expected, not "
       "'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'..."},
  };
  for (const auto& c : cases) {
    MemoryRequest outcome(c.bytes);
    outcome.Run(createStlReader);
    EXPECT_TRUE(outcome.result.IsFailure()) << c.error;
    EXPECT_EQ(outcome.errors, std::vector<std::string>{c.error});
  }
}

// The file becomes shorter while it is read.
TEST(StlReader, AFileThatCannotBeReadOnIsNoShortFile) {
  std::string ascii = "solid\n";
  for (int i = 0; i < 20000; ++i) ascii += makeFacet();
  std::vector<float> coordinates;
  for (int i = 0; i < 10000; ++i) {
    coordinates.insert(coordinates.end(), kTwoTriangles.begin(), kTwoTriangles.end());
  }
  for (const std::string& bytes : {ascii + "endsolid\n", makeBinary("", 20000, coordinates)}) {
    MemoryRequest outcome("");
    const TemporaryFile file(bytes);
    const KOVAFormatReaderHandle reader =
        createStlReader({file.GetFile(), nullptr, 0, outcome.report, outcome.options,
                         outcome.header, outcome.model});
    std::filesystem::resize_file(file.GetPath(), 500000);
    const RecordingListener listener;
    EXPECT_EQ(runReader(reader), KOVAResultCode::kFileOpenError);
    // The buffer has its say before.
    ASSERT_FALSE(listener.errors.empty());
    EXPECT_NE(listener.errors.back().find("cannot be read any further"), std::string::npos);
  }
}

// Words, numbers and line ends fall on every offset of the window's end.
TEST(StlReader, AsciiAcrossTheEndsOfTheWindow) {
  std::string facets;
  for (int i = 0; i < 4500; ++i) {
    const std::string number = std::to_string(i);
    facets += makeFacet("vertex " + number + " 0.125 0\r\nvertex 1 " + number +
                        ".25 0\nvertex 0 1 -" + number);
  }
  for (std::size_t shift = 0; shift < 120; shift += shift < 40 ? 1 : 7) {
    MemoryRequest outcome("solid" + std::string(shift, ' ') + "\n" + facets + "endsolid\nx");
    outcome.Run(createStlReader);
    // The last line tells that all lines were counted.
    ASSERT_EQ(outcome.errors,
              std::vector<std::string>{
                  "line 13503: 'solid' or the end of the file is expected, not 'x'"});
    const Mesh& mesh = outcome.model.parts[0].meshes[0];
    ASSERT_EQ(mesh.triangles.size(), 4500);
    EXPECT_EQ(mesh.vertices[static_cast<int>(mesh.triangles[4499].corners[1])],
              (Point{1, 4499.25, 0}));
  }
}

TEST(StlReader, CutFilesAreNeverTakenForWholeOnes) {
  const std::string ascii = "solid a\n" + makeFacet() + makeFacet() + "endsolid";
  const std::string binary = makeBinary("solid a", 2, kTwoTriangles);
  for (const std::string& whole : {ascii, binary}) {
    for (std::size_t count = 0; count < whole.size(); ++count) {
      {
        MemoryRequest outcome(whole.substr(0, count));
        outcome.Run(createStlReader);
        EXPECT_TRUE(outcome.result.IsFailure()) << count;
        EXPECT_EQ(outcome.errors.size(), 1U);
      }
    }
  }
}

TEST(StlReader, MutatedFilesFailOnceOrGiveASoundModel) {
  std::mt19937 random(11);
  const std::string ascii = "solid a\n" + makeFacet() +
                            makeFacet("vertex 1e3 -2.5 0 vertex 1 1 1 vertex 2 2 2") +
                            "endsolid a\nsolid b\n" + makeFacet() + "endsolid b\n";
  const std::string binary = makeBinary("solid a", 2, kTwoTriangles);
  for (const std::string& whole : {ascii, binary}) {
    for (int i = 0; i < 20000; ++i) {
      std::string bytes = whole;
      for (auto changes = 1 + random() % 3; changes > 0; --changes) {
        const std::size_t at = random() % bytes.size();
        switch (random() % 4) {
          case 0: bytes[at] = static_cast<char>(bytes[at] ^ (1 << random() % 8)); break;
          case 1: bytes[at] = static_cast<char>(random()); break;
          case 2: bytes.erase(at, 1 + random() % 8); break;
          default: bytes.insert(at, bytes.substr(random() % bytes.size(), random() % 16)); break;
        }
        if (bytes.empty()) bytes = " ";
      }
      MemoryRequest outcome(bytes);
      outcome.Run(createStlReader);
      ASSERT_EQ(outcome.errors.size(), outcome.result.IsFailure() ? 1U : 0U);
      ASSERT_TRUE(outcome.result.IsFailure() || isSound(outcome.model));
    }
  }
}

}  // namespace
}  // namespace kova::translators
