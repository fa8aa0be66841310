#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "tests/translators/ReaderFixture.h"
#include "translators/interface/Text.h"
#include "translators/model/ModelTools.h"
#include "translators/step/StepReader.h"
#include "translators/step/StepText.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <numbers>
#include <string>

namespace kova::translators::step {

namespace {

constexpr char kHeader[] =
    "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('a part','of two'),'2;1');\n"
    "FILE_NAME('caf\\X2\\00E9\\X0\\','2026-01-02',('Ida'),(''),'pre','sys','');\n"
    "FILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\n";
constexpr char kEnd[] = "ENDSEC;\nEND-ISO-10303-21;\n";

std::string makeFile(const std::string& records) { return kHeader + records + kEnd; }

// Contexts: #1 in millimetres and degrees, #2 in inches and radians.
constexpr char kUnits[] =
    "#1=(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#3,#4))"
    "REPRESENTATION_CONTEXT('',''));\n"
    "#2=(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#5,#6))"
    "REPRESENTATION_CONTEXT('',''));\n"
    "#3=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.));\n"
    "#4=(CONVERSION_BASED_UNIT('DEGREE',#7)NAMED_UNIT(#9)PLANE_ANGLE_UNIT());\n"
    "#5=(CONVERSION_BASED_UNIT('INCH',#8)LENGTH_UNIT()NAMED_UNIT(#9));\n"
    "#6=(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.));\n"
    "#7=PLANE_ANGLE_MEASURE_WITH_UNIT(PLANE_ANGLE_MEASURE(0.01745329252),#6);\n"
    "#8=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#3);\n"
    "#9=DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.);\n"
    "#10=CARTESIAN_POINT('',(0.,0.,0.));#11=DIRECTION('',(0.,0.,1.));\n"
    "#12=DIRECTION('',(1.,0.,0.));#13=AXIS2_PLACEMENT_3D('',#10,#11,#12);\n"
    "#14=CARTESIAN_POINT('',(1.,0.,0.));#15=CARTESIAN_POINT('',(0.,1.,0.));\n"
    "#16=CARTESIAN_POINT('',(1.,1.,0.));#17=DIRECTION('',(0.,1.,0.));\n"
    "#18=VECTOR('',#12,1.);#19=LINE('',#10,#18);#20=CIRCLE('',#13,1.);\n"
    "#21=VERTEX_POINT('',#10);#22=VERTEX_POINT('',#14);#23=VERTEX_POINT('',#15);\n"
    "#24=EDGE_CURVE('',#21,#22,#19,.T.);\n";

// A file without products that shows `items`, in millimetres and degrees.
std::string makeShape(const std::string& items, const std::string& records) {
  return makeFile(kUnits + records + "#99=SHAPE_REPRESENTATION('shape',(" + items + "),#1);\n");
}

// A product with the definition #n and the representation #(n+4).
std::string makeProduct(int n, const std::string& name, const std::string& items, int context) {
  const auto id = [n](int k) { return "#" + std::to_string(n + k); };
  return id(0) + "=PRODUCT_DEFINITION('',''," + id(1) + ",$);" +  //
         id(1) + "=PRODUCT_DEFINITION_FORMATION('',''," + id(2) + ");" + id(2) + "=PRODUCT('id','" +
         name + "','',());" + id(3) + "=PRODUCT_DEFINITION_SHAPE('',''," + id(0) + ");" + id(4) +
         "=SHAPE_REPRESENTATION('',(" + items + "),#" + std::to_string(context) + ");" + id(5) +
         "=SHAPE_DEFINITION_REPRESENTATION(" + id(3) + "," + id(4) + ");\n";
}

// The occurrence #n of the product #child in #parent, moved by the placements.
std::string makeOccurrence(int n, const std::string& name, int parent, int child,
                           const std::string& items, bool isReversed = false) {
  const auto id = [n](int k) { return "#" + std::to_string(n + k); };
  const std::string first = "#" + std::to_string((isReversed ? parent : child) + 4);
  const std::string second = "#" + std::to_string((isReversed ? child : parent) + 4);
  return id(0) + "=NEXT_ASSEMBLY_USAGE_OCCURRENCE('1','" + name + "','',#" +
         std::to_string(parent) + ",#" + std::to_string(child) + ",$);" + id(1) +
         "=PRODUCT_DEFINITION_SHAPE('',''," + id(0) + ");" + id(2) +
         "=CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(" + id(3) + "," + id(1) + ");" + id(3) +
         "=(REPRESENTATION_RELATIONSHIP('',''," + first + "," + second +
         ")REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(" + id(4) +
         ")SHAPE_REPRESENTATION_RELATIONSHIP());" + id(4) + "=ITEM_DEFINED_TRANSFORMATION('',''," +
         items + ");\n";
}

class Trial : public MemoryRequest {
 public:
  explicit Trial(std::string text) : MemoryRequest(std::move(text)) {
    Run(createReader);
    summary = summarize(model);
  }
  std::string GetPartName(int part) const { return encodeText(model.parts[part].name); }
  std::string GetFirstWarning() const { return warnings.empty() ? "" : warnings[0]; }

  Summary summary;
};

void expectBox(const Summary& summary, const Point& lowest, const Point& highest) {
  EXPECT_TRUE(summary.hasBox);
  EXPECT_NEAR(summary.lowest.x, lowest.x, 1e-9);
  EXPECT_NEAR(summary.lowest.y, lowest.y, 1e-9);
  EXPECT_NEAR(summary.lowest.z, lowest.z, 1e-9);
  EXPECT_NEAR(summary.highest.x, highest.x, 1e-9);
  EXPECT_NEAR(summary.highest.y, highest.y, 1e-9);
  EXPECT_NEAR(summary.highest.z, highest.z, 1e-9);
}

TEST(StepReader, DecodesStrings) {
  const struct {
    const char* raw;
    const char* text;
  } kCases[] = {
      {"it''s", "it's"},
      {"a\\\\b", "a\\b"},
      {"\\X\\E9t\\X\\e9", "\u00E9t\u00E9"},
      {"\\X2\\00C400D6\\X0\\!", "\u00C4\u00D6!"},
      {"\\X2\\D83DDE00\\X0\\", "\U0001F600"},
      {"\\X4\\0001F60000000041\\X0\\", "\U0001F600A"},
      {"\\S\\a\\S\\'' ", "\u00E1\u00A7 "},
      {"\\PB\\\\S\\1\\PA\\\\S\\1", "\u0105\u00B1"},
      {"\xC3\xA4 \xC3\xB6", "\u00E4 \u00F6"},
      {"\xE4", "\u00E4"},
      {"one\r\n line\\N\\two", "one line two"},
      {"  \\X\\20 ", "    "},
      // Malformed ones stand as they are.
      {"\\X2\\00E\\X0\\", "\\X2\\00E\\X0\\"},
      {"\\X4\\0041\\X0\\", "\\X4\\0041\\X0\\"},
      {"\\X2\\0041", "\\X2\\0041"},
      {"\\X\\G1\\S\\", "\\X\\G1\\S\\"},
      {"\\", "\\"},
  };
  for (const auto& test : kCases) {
    EXPECT_EQ(encodeText(decodeString(test.raw)), test.text) << test.raw;
  }
}

TEST(StepReader, TakesTheHeader) {
  Trial trial(makeShape("#24", ""));
  EXPECT_TRUE(trial.result.IsSuccess());
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  trial.header.Write(formatter);
  EXPECT_STREQ(stream.GetBytes(),
               "Description : a part, of two\nImplementation level : 2;1\nName : caf\u00E9\n"
               "Time stamp : 2026-01-02\nAuthor : Ida\nPreprocessor version : pre\n"
               "Originating system : sys\nSchema : AUTOMOTIVE_DESIGN\n");
}

TEST(StepReader, HandsOutOneEntityReaderPerRecord) {
  std::string text = makeFile(std::string(kUnits) + makeProduct(100, "p", "#24", 1) +
                              "ENDSEC;DATA;#4000000000=FOO('');");
  const Report report(RecordingListener::kFile);
  const KOVAOptions options;
  KOVAFileHeader header;
  Model model;
  const ReadRequest request{KOVAFileHandle(),
                            reinterpret_cast<unsigned char*>(text.data()),
                            text.size(),
                            report,
                            options,
                            header,
                            model};
  KOVAReader reader(createReader(request));
  EXPECT_TRUE(reader.ReadHeaderSection().IsSuccess());
  EXPECT_TRUE(reader.ReadFileInfoSection().IsSuccess());
  EXPECT_TRUE(reader.ReadDataSection().IsSuccess());
  // Units, contexts and products; besides them stands the step that found the records.
  EXPECT_EQ(reader.GetFileInfoEntityList().size(), 1 + 8 + 5);
  KOVADynamicArray<KOVAEntityReader*> data = reader.GetDataEntityList();
  ASSERT_EQ(data.size(), 16 + 1 + 1);
  int id = -1;
  EXPECT_TRUE(data[1]->GetEntityId(id).IsSuccess());
  EXPECT_EQ(id, 10);
  EXPECT_EQ(encodeText(data[1]->GetEntityType()), "CARTESIAN_POINT");
  EXPECT_TRUE(data[17]->GetEntityId(id).IsFailure());
  std::FILE* const stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  data[17]->DumpData(5, stream);
  std::rewind(stream);
  char dump[200] = {};
  EXPECT_GT(std::fread(dump, 1, sizeof dump - 1, stream), 0U);
  std::fclose(stream);
  EXPECT_NE(std::string(dump).find("#4000"), std::string::npos) << dump;
  EXPECT_TRUE(reader.Resolve().IsSuccess());
  reader.ReleaseEntityReaders();
  EXPECT_EQ(reader.GetDataEntityList().size(), 0);
}

TEST(StepReader, NamesErrorsOfSyntax) {
  const std::string header = kHeader;  // seven lines
  const struct {
    std::string text;
    const char* error;
  } kCases[] = {
      {"", "the file is empty"},
      {"solid x", "line 1: it does not begin with 'ISO-10303-21;'"},
      {"ISO-10303-21;\nHEADER;\nFILE_NAME('a'\n);\n",
       "line 5: the file ends within the header section"},
      {header + "#1=A(1,);", "line 8: ')' stands where a parameter is expected"},
      {header + "#1=A((1,2);\n#2=B();", "line 8: ';' stands where ',' or ')' is expected"},
      {header + "#1=A(1)\n#2=B();", "line 9: '#' stands where ';' is expected"},
      {header + "#1=A('x);\n#2=B();",
       "line 8: the file ends within a string of the record that begins here"},
      {header + "\n#1=A(1.5.2);", "line 9: '.' stands where ',' or ')' is expected"},
      {header + "#1=(A()B);", "line 8: ')' stands where '(' is expected"},
      {header + "#1=A(.T);", "line 8: ')' stands where the rest of an enumeration is expected"},
      {header + "#1=A(1 2);", "line 8: '2' stands where ',' or ')' is expected"},
      {header + "#1=;", "line 8: a keyword and its parameters are expected"},
      {header + "# 1=A();", "line 8: '#' without the digits of an id"},
      {header + "#1=2A();", "line 8: a keyword and its parameters are expected"},
      {header + "#1=-A();", "line 8: a keyword and its parameters are expected"},
      {header + "#x=A();", "line 8: '#' without the digits of an id"},
      {header + "#99999999999999999999=A();", "line 8: the id #99999999999999999999 is too large"},
      {header + "#1=A(@);", "line 8: '@' stands where a parameter is expected"},
      {header + "/* no end", "line 8: a comment that has no end, or a stray '/'"},
      {header + "X=A();", "line 8: a record ('#1=...') or 'ENDSEC;' is expected"},
      {header + "ENDSEC;\nFOO;",
       "line 9: 'FOO' stands where a section or 'END-ISO-10303-21;' is expected"},
  };
  for (const auto& test : kCases) {
    Trial trial(test.text);
    EXPECT_TRUE(trial.result.IsFailure());
    ASSERT_EQ(trial.errors.size(), 1U) << test.text;
    EXPECT_NE(trial.errors[0].find(test.error), std::string::npos)
        << trial.errors[0] << "\nwanted " << test.error;
  }
}

TEST(StepReader, RefusesEveryTruncation) {
  const std::string text =
      makeFile(std::string(kUnits) + makeProduct(100, "p", "#24,#20", 1) + "/* end */");
  const std::size_t whole = text.rfind(';') + 1;
  for (std::size_t size = 0; size < whole; ++size) {
    Trial trial(text.substr(0, size));
    EXPECT_TRUE(trial.result.IsFailure()) << size;
    EXPECT_EQ(trial.errors.size(), 1U) << size;
  }
  EXPECT_TRUE(Trial(text.substr(0, whole)).result.IsSuccess());
}

TEST(StepReader, ReadsAnyLayout) {
  // Comments, line ends, several sections, forward references, ids that leave gaps.
  const std::string text =
      "\xEF\xBB\xBF/* first */ISO-10303-21 ;\r\nHEADER;FILE_SCHEMA(('X'));ENDSEC;\r\n"
      "ANCHOR;\n<a>=#1;\nENDSEC;\nDATA('one',('X'));\r#18446744073709551615 /*'*/= "
      "SHAPE_REPRESENTATION\t( 'it''s;' , (#5 /*,*/) , $ ) ;\rENDSEC;\nDATA;#5=POLYLINE('',(#6,"
      "#4000000000));#6=CARTESIAN_POINT('',(+1.,-2.E+0,.5));!USER('x');ENDSEC;\nEND-ISO-10303-21;";
  const std::string fixed = [&] {
    std::string result = text;
    result.replace(result.find("!USER('x');"), 11,
                   "#4000000000=CARTESIAN_POINT('',(1,1E0,0.5));#7=!USER('x',\"0FF\",(),*);");
    return result;
  }();
  Trial trial(fixed);
  EXPECT_TRUE(trial.result.IsSuccess()) << (trial.errors.empty() ? "" : trial.errors[0]);
  ASSERT_EQ(trial.summary.edges, 1U);
  EXPECT_DOUBLE_EQ(trial.summary.edgeLength, 3.0);
  EXPECT_EQ(trial.GetPartName(0), "it's;");
  EXPECT_EQ(trial.model.unit, KOVAUnitUnknown);
  EXPECT_EQ(trial.GetFirstWarning(), "line 3: the section ANCHOR is not translated");
}

TEST(StepReader, ReadsCurves) {
  constexpr double kPi = std::numbers::pi;
  const std::string poles =
      "#200=CARTESIAN_POINT('',(0.,0.,0.));#201=CARTESIAN_POINT('',(1.,1.,0.));"
      "#202=CARTESIAN_POINT('',(2.,0.,0.));#203=CARTESIAN_POINT('',(3.,1.,0.));";
  const double parabola = std::sqrt(2.0) + std::asinh(1.0);  // (0,0) (1,1) (2,0) as a Bezier curve
  const struct {
    const char* records;
    double length;
  } kCases[] = {
      {"#50=CIRCLE('',#13,2.);", 4 * kPi},
      {"#50=TRIMMED_CURVE('',#20,(PARAMETER_VALUE(0.)),(PARAMETER_VALUE(90.)),.T.,.PARAMETER.);",
       kPi / 2},
      {"#50=TRIMMED_CURVE('',#20,(PARAMETER_VALUE(0.)),(PARAMETER_VALUE(90.)),.F.,.PARAMETER.);",
       3 * kPi / 2},
      // The point is preferred though there is a parameter, which says something else.
      {"#50=TRIMMED_CURVE('',#20,(PARAMETER_VALUE(7.),#14),(#15,PARAMETER_VALUE(8.)),.T.,"
       ".CARTESIAN.);",
       kPi / 2},
      {"#51=VECTOR('',#17,4.);#52=LINE('',#14,#51);"
       "#50=TRIMMED_CURVE('',#52,(PARAMETER_VALUE(1.)),(PARAMETER_VALUE(2.5)),.T.,.PARAMETER.);",
       6.0},
      {"#50=POLYLINE('',(#10,#14,#16));", 2.0},
      {"#51=POLYLINE('',(#10,#14));#52=TRIMMED_CURVE('',#20,(#14),(#15),.T.,.CARTESIAN.);"
       "#53=COMPOSITE_CURVE_SEGMENT(.CONTINUOUS.,.T.,#51);"
       "#54=COMPOSITE_CURVE_SEGMENT(.DISCONTINUOUS.,.T.,#52);"
       "#50=COMPOSITE_CURVE('',(#53,#54),.F.);",
       1.0 + kPi / 2},
      {"#50=BEZIER_CURVE('',2,(#200,#201,#202),.UNSPECIFIED.,.F.,.F.);", parabola},
      {"#50=QUASI_UNIFORM_CURVE('',2,(#200,#201,#202),.UNSPECIFIED.,.F.,.F.);", parabola},
      {"#50=UNIFORM_CURVE('',1,(#200,#201,#202),.UNSPECIFIED.,.F.,.F.);", 2 * std::sqrt(2.0)},
      {"#50=B_SPLINE_CURVE_WITH_KNOTS('',2,(#200,#201,#202),.UNSPECIFIED.,.F.,.F.,(3,3),(0.,1.),"
       ".UNSPECIFIED.);",
       parabola},
      // A quarter of a circle.
      {"#50=(BOUNDED_CURVE()B_SPLINE_CURVE(2,(#14,#16,#15),.UNSPECIFIED.,.F.,.F.)"
       "B_SPLINE_CURVE_WITH_KNOTS((3,3),(0.,1.),.UNSPECIFIED.)CURVE()"
       "GEOMETRIC_REPRESENTATION_ITEM()RATIONAL_B_SPLINE_CURVE((1.,0.7071067811865476,1.))"
       "REPRESENTATION_ITEM(''));",
       kPi / 2},
      {"#50=(BOUNDED_CURVE()B_SPLINE_CURVE(2,(#14,#16,#15),.UNSPECIFIED.,.F.,.F.)BEZIER_CURVE()"
       "CURVE()GEOMETRIC_REPRESENTATION_ITEM()RATIONAL_B_SPLINE_CURVE((1.,0.7071067811865476,1.))"
       "REPRESENTATION_ITEM(''));",
       kPi / 2},
      {"#50=SURFACE_CURVE('',#20,(#77),.PCURVE_S1.);#77=PCURVE('',#77,#77);", 2 * kPi},
      {"#50=EDGE_CURVE('',#22,#23,#20,.T.);", kPi / 2},
      {"#50=EDGE_CURVE('',#22,#23,#20,.F.);", 3 * kPi / 2},
      {"#50=EDGE_CURVE('',#22,#22,#51,.T.);#51=SEAM_CURVE('',#20,(),.CURVE_3D.);", 2 * kPi},
      {"#50=SUBEDGE('',#22,#23,#51);#51=EDGE_CURVE('',#22,#22,#20,.T.);", kPi / 2},
      {"#50=PARABOLA('',#13,0.5);#51=CARTESIAN_POINT('',(0.5,1.,0.));#52=VERTEX_POINT('',#51);"
       "#53=EDGE_CURVE('',#21,#52,#50,.T.);#54=ORIENTED_EDGE('',*,*,#53,.F.);",
       -1.0},
  };
  for (const auto& test : kCases) {
    const bool isEdge = test.length < 0.0;
    Trial trial(makeShape(isEdge ? "#54" : "#50", poles + test.records));
    EXPECT_TRUE(trial.result.IsSuccess());
    EXPECT_EQ(trial.warnings.size(), 0U) << trial.GetFirstWarning() << "\n" << test.records;
    ASSERT_EQ(trial.summary.edges, 1U) << test.records;
    // y^2 = 2 x from 0 to y = 1.
    const double length = isEdge ? (std::sqrt(2.0) + std::asinh(1.0)) / 2 : test.length;
    EXPECT_NEAR(trial.summary.edgeLength, length, 1e-5 * length) << test.records;
    EXPECT_EQ(trial.model.unit, KOVAUnitMillimeter);
  }
}

TEST(StepReader, LeavesOutWhatItCannotUse) {
  const struct {
    const char* records;
    const char* warning;
  } kCases[] = {
      {"#50=GEOMETRIC_CURVE_SET('',(#52,#53));#52=OFFSET_CURVE_3D('',#20,1.,.F.,#11);\n"
       "#53=OFFSET_CURVE_3D('',#20,2.,.F.,#11);",
       "#52=OFFSET_CURVE_3D is not translated (the first of 2)"},
      {"#50=CIRCLE('',#13,0.);", "#50=CIRCLE: a radius or distance is not above 0"},
      {"#50=CIRCLE('',#13,'a');", "#50=CIRCLE: parameter 3 is no number"},
      {"#50=CIRCLE('',#13,1.E999);", "#50=CIRCLE: a radius or distance is not above 0"},
      {"#50=CIRCLE('',#12,1.);", "#12=DIRECTION: it is referred to as a placement in space"},
      {"#50=CIRCLE('',#12345678901234567890,1.);",
       "#50=CIRCLE: the file does not define #12345678901234567890"},
      {"#50=CIRCLE();", "#50=CIRCLE: parameter 2 is missing"},
      {"#50=POLYLINE('',(#14,#52));#52=CARTESIAN_POINT('',(1.E400,0.,0.));",
       "#52=CARTESIAN_POINT: a coordinate is too large"},
      {"#50=LINE('',#10,#18);", "#50=LINE: a curve without ends is not translated"},
      {"#50=TRIMMED_CURVE('',#50,(#14),(#15),.T.,.CARTESIAN.);",
       "#50=TRIMMED_CURVE: curves are nested too deep, or in a circle"},
      {"#50=B_SPLINE_CURVE_WITH_KNOTS('',1,(#10,#14),.U.,.F.,.F.,(2,99999999999),(0.,1.),.U.);",
       "the knots and their multiplicities do not fit the poles"},
      {"#50=ORIENTED_EDGE('',*,*,#50,.T.);", ""},
      {"#50=CIRCLE('',#13,1.);\n#50=CIRCLE('',#13,2.);",
       "#50=CIRCLE: the id stands for a record of line 25 already, which holds"},
  };
  for (const auto& test : kCases) {
    Trial trial(makeShape("#24,#50,#51",
                          std::string("#51=AXIS2_PLACEMENT_3D('',#10,$,$);\n") + test.records));
    EXPECT_TRUE(trial.result.IsSuccess()) << test.records;
    bool isTold = *test.warning == '\0';
    for (const std::string& warning : trial.warnings) {
      isTold |= warning.find(test.warning) != std::string::npos;
    }
    EXPECT_TRUE(isTold) << trial.GetFirstWarning() << "\nwanted " << test.warning;
    EXPECT_GE(trial.summary.edges, 1U);
  }
}

TEST(StepReader, CountsEachEdgeOfAShapeOnce) {
  // Two faces of a shell share an edge, which the solid and a wire use again; plane faces of
  // POLY_LOOP share a side.
  const std::string records =
      "#50=MANIFOLD_SOLID_BREP('',#51);#51=CLOSED_SHELL('',(#52,#53));"
      "#52=ADVANCED_FACE('',(#54),$,.T.);#53=FACE_SURFACE('',(#55),$,.T.);"
      "#54=FACE_OUTER_BOUND('',#56,.T.);#55=FACE_BOUND('',#57,.F.);"
      "#56=EDGE_LOOP('',(#58,#59));#57=EDGE_LOOP('',(#60));"
      "#58=ORIENTED_EDGE('',*,*,#24,.T.);#59=ORIENTED_EDGE('',*,*,#61,.T.);"
      "#60=ORIENTED_EDGE('',*,*,#24,.F.);#61=EDGE_CURVE('',#22,#23,#20,.T.);"
      "#62=CONNECTED_EDGE_SET('',(#24));#63=EDGE_BASED_WIREFRAME_MODEL('',(#62));"
      "#64=FACETED_BREP('',#65);#65=CLOSED_SHELL('',(#66,#67));#66=FACE('',(#68));"
      "#67=FACE('',(#69));#68=FACE_BOUND('',#70,.T.);#69=FACE_BOUND('',#71,.T.);"
      "#70=POLY_LOOP('',(#10,#14,#16));#71=POLY_LOOP('',(#16,#15,#10));"
      "#72=GEOMETRIC_CURVE_SET('',(#14,#73));#73=POLYLINE('',(#10,#16));";
  Trial trial(makeShape("#50,#63,#64,#72", records));
  EXPECT_TRUE(trial.result.IsSuccess());
  EXPECT_EQ(trial.summary.edges, 2U + 5U + 1U);
  EXPECT_NEAR(trial.summary.edgeLength, 1.0 + std::numbers::pi / 2 + 4.0 + 2 * std::sqrt(2.0),
              1e-6);
  EXPECT_EQ(trial.GetFirstWarning(), "line 19: #14=CARTESIAN_POINT is not translated");
}

TEST(StepReader, PlacesPartsOfDifferentUnits) {
  // An inch part, twice in a millimetre assembly: moved by 10 along x; turned about z by a quarter
  // and moved by 20 along y, with the representations the other way around.
  const std::string placements =
      "#30=CARTESIAN_POINT('',(10.,0.,0.));#31=AXIS2_PLACEMENT_3D('',#30,$,$);"
      "#32=CARTESIAN_POINT('',(0.,20.,0.));#33=AXIS2_PLACEMENT_3D('',#32,#11,#17);"
      "#34=CARTESIAN_POINT('',(1.,0.,0.));#35=AXIS2_PLACEMENT_3D('',#34,#11,#12);";
  const std::string parts =
      makeProduct(100, "all", "#31,#33", 1) + makeProduct(200, "", "#24,#13,#35", 2);
  Trial trial(makeFile(kUnits + placements + parts + makeOccurrence(300, "a", 100, 200, "#13,#31") +
                       makeOccurrence(400, "b", 100, 200, "#33,#35", true)));
  EXPECT_TRUE(trial.result.IsSuccess());
  EXPECT_EQ(trial.warnings.size(), 0U) << trial.GetFirstWarning();
  EXPECT_EQ(trial.model.unit, KOVAUnitMillimeter);
  EXPECT_EQ(trial.model.parts.size(), 1);
  EXPECT_EQ(trial.GetPartName(0), "id");
  ASSERT_EQ(trial.model.instances.size(), 2);
  EXPECT_EQ(encodeText(trial.model.instances[1].name), "b");
  EXPECT_DOUBLE_EQ(trial.summary.edgeLength, 2 * 25.4);
  // The second one ends where the inch point (1, 0, 0) is placed.
  expectBox(trial.summary, {0.0, 20.0 - 25.4, 0.0}, {35.4, 20.0, 0.0});
  // Seen from an inch assembly, the same file in inches.
  Trial inches(makeFile(kUnits + placements + makeProduct(100, "all", "#31", 2) +
                        makeProduct(200, "p", "#24", 1) +
                        makeOccurrence(300, "a", 100, 200, "#13,#31")));
  EXPECT_EQ(inches.model.unit, KOVAUnitInch);
  expectBox(inches.summary, {10.0, 0.0, 0.0}, {10.0 + 1 / 25.4, 0.0, 0.0});
}

TEST(StepReader, JoinsShapesOfAProductAndMapsOthers) {
  // The product's own representation is empty; its geometry is joined to it. A mapped item shows
  // another shape, twice as large and moved; the styled map gives its colour to it.
  const std::string records =
      makeProduct(100, "p", "#13,#40", 1) +
      "#30=SHAPE_REPRESENTATION_RELATIONSHIP('','',#104,#31);"
      "#31=ADVANCED_BREP_SHAPE_REPRESENTATION('',(#24),#1);"
      "#32=SHAPE_REPRESENTATION('mapped',(#24),#1);#33=REPRESENTATION_MAP(#13,#32);"
      "#40=MAPPED_ITEM('',#33,#41);#42=CARTESIAN_POINT('',(0.,0.,5.));"
      "#41=CARTESIAN_TRANSFORMATION_OPERATOR_3D('',$,$,#12,#17,#42,2.,#11);"
      "#50=STYLED_ITEM('',(#51),#40);#51=PRESENTATION_STYLE_ASSIGNMENT((#52));"
      "#52=SURFACE_STYLE_USAGE(.BOTH.,#53);#53=SURFACE_SIDE_STYLE('',(#54));"
      "#54=SURFACE_STYLE_FILL_AREA(#55);#55=FILL_AREA_STYLE('',(#56));"
      "#56=FILL_AREA_STYLE_COLOUR('',#57);#57=COLOUR_RGB('',1.,0.5,0.);\n";
  Trial trial(makeFile(kUnits + records));
  EXPECT_TRUE(trial.result.IsSuccess());
  EXPECT_EQ(trial.warnings.size(), 0U) << trial.GetFirstWarning();
  ASSERT_EQ(trial.model.parts.size(), 2);
  EXPECT_EQ(trial.GetPartName(0), "p");
  EXPECT_EQ(trial.GetPartName(1), "mapped");
  EXPECT_DOUBLE_EQ(trial.summary.edgeLength, 3.0);
  expectBox(trial.summary, {0.0, 0.0, 0.0}, {2.0, 0.0, 5.0});
  ASSERT_EQ(trial.model.instances.size(), 2);
  ASSERT_EQ(trial.model.instances[1].looks.colour, 0);
  EXPECT_EQ(trial.model.colours[0], (Colour{1.0F, 0.5F, 0.0F}));
}

TEST(StepReader, TellsOfShapesWithoutAProduct) {
  const std::string loose = "#90=SHAPE_REPRESENTATION('loose',(#24),#1);\n";
  Trial beside(makeFile(kUnits + makeProduct(100, "p", "#24", 1) + loose));
  EXPECT_EQ(beside.summary.edges, 1U);
  EXPECT_EQ(beside.GetFirstWarning(),
            "line 25: #90=SHAPE_REPRESENTATION: it belongs to no product and is not translated");
  // When products show nothing, they are all that there is.
  Trial alone(makeFile(kUnits + makeProduct(100, "p", "#13", 1) + loose));
  EXPECT_EQ(alone.summary.edges, 1U);
  EXPECT_EQ(alone.GetPartName(0), "loose");
}

TEST(StepReader, RefusesAssembliesWithoutEnd) {
  const std::string parts = makeProduct(100, "a", "", 1) + makeProduct(200, "b", "#24", 1);
  Trial cycle(makeFile(kUnits + parts + makeOccurrence(300, "", 100, 200, "#13,#13") +
                       makeOccurrence(400, "", 200, 100, "#13,#13")));
  EXPECT_TRUE(cycle.result.IsFailure());
  ASSERT_EQ(cycle.errors.size(), 1U);
  EXPECT_NE(cycle.errors[0].find("#100=PRODUCT_DEFINITION is a part of itself"), std::string::npos)
      << cycle.errors[0];

  // Each level twice in the one above: 2^60 edges. Without an edge they are nothing.
  for (const bool hasEdge : {true, false}) {
    std::string levels;
    for (int i = 0; i <= 60; ++i) {
      const int product = 1000 + 100 * i;
      levels += makeProduct(product, "", i == 60 && hasEdge ? "#24" : "", 1);
      if (i == 0) continue;
      levels += makeOccurrence(product + 10, "", product - 100, product, "#13,#13");
      levels += makeOccurrence(product + 20, "", product - 100, product, "#13,#13");
    }
    Trial tree(makeFile(kUnits + levels));
    EXPECT_EQ(tree.result.IsFailure(), hasEdge);
    EXPECT_EQ(tree.errors.size(), hasEdge ? 1U : 0U);
    EXPECT_EQ(tree.model.instances.size(), 0);
  }

  Trial map(makeShape("#40", "#40=MAPPED_ITEM('',#41,#13);#41=REPRESENTATION_MAP(#13,#99);"));
  EXPECT_TRUE(map.result.IsFailure());
  EXPECT_EQ(map.errors.size(), 1U);
}

TEST(StepReader, ReadsTessellations) {
  const std::string records =
      "#30=COORDINATES_LIST('',5,((0.,0.,0.),(1.,0.,0.),(1.,1.,0.),(0.,1.,0.),(0.,0.,1.)));"
      "#31=TRIANGULATED_FACE('',#30,4,((0.,0.,1.)),$,(),((1,2,3),(1,3,4)));"
      "#32=COMPLEX_TRIANGULATED_FACE('',#30,4,(),$,(5,1,2,4),((1,2,3,4)),((2,3,4)));"
      "#33=TESSELLATED_SHELL('',(#31,#32),$);"
      "#34=TRIANGULATED_SURFACE_SET('',#30,4,(),(),((1,2,9),(1,2,5)));"
      "#35=TESSELLATED_CURVE_SET('',#30,((1,2,3),(4,5)));"
      "#36=STYLED_ITEM('',(#37),#34);#37=PRESENTATION_STYLE_ASSIGNMENT((#38));"
      "#38=SURFACE_STYLE_RENDERING(.NORMAL_SHADING.,#39);#39=DRAUGHTING_PRE_DEFINED_COLOUR('Cyan')"
      ";";
  Trial trial(makeShape("#33,#34,#35", records));
  EXPECT_TRUE(trial.result.IsSuccess());
  EXPECT_EQ(
      trial.GetFirstWarning(),
      "line 24: #34=TRIANGULATED_SURFACE_SET: a triangle has a corner that is not in the list");
  EXPECT_EQ(trial.warnings.size(), 1U);
  ASSERT_EQ(trial.model.parts[0].meshes.size(), 2);
  const Mesh& shell = trial.model.parts[0].meshes[0];
  EXPECT_EQ(shell.vertices.size(), 5);
  ASSERT_EQ(shell.triangles.size(), 5);
  // The strip 5 1 2 4 as 5 1 2 and 2 1 4, the fan as 1 2 4; vertices are numbered as they come.
  const std::uint32_t expected[5][3] = {{0, 1, 2}, {0, 2, 3}, {4, 0, 1}, {1, 0, 3}, {0, 1, 3}};
  for (int i = 0; i < 5; ++i) {
    for (int k = 0; k < 3; ++k) EXPECT_EQ(shell.triangles[i].corners[k], expected[i][k]) << i;
  }
  EXPECT_EQ(trial.model.parts[0].meshes[1].triangles.size(), 1);
  EXPECT_EQ(trial.model.parts[0].meshes[1].looks.colour, 0);
  EXPECT_EQ(trial.summary.edges, 2U);
  EXPECT_DOUBLE_EQ(trial.summary.edgeLength, 2.0 + std::sqrt(2.0));
}

TEST(StepReader, GivesLayersAndColours) {
  // The face is red and on the layer "walls"; one of its edges is blue, one on the layer 7.
  const std::string records =
      "#50=ADVANCED_FACE('',(#51),$,.T.);#51=FACE_BOUND('',#52,.T.);#52=EDGE_LOOP('',(#53,#54,#55))"
      ";"
      "#53=ORIENTED_EDGE('',*,*,#24,.T.);#54=ORIENTED_EDGE('',*,*,#56,.T.);"
      "#55=ORIENTED_EDGE('',*,*,#57,.T.);#56=EDGE_CURVE('',#22,#23,#20,.T.);"
      "#57=EDGE_CURVE('',#23,#22,#20,.T.);"
      "#60=STYLED_ITEM('',(#61),#50);#61=PRESENTATION_STYLE_ASSIGNMENT((#65,#62));"
      "#62=SURFACE_STYLE_USAGE(.BOTH.,#63);#63=SURFACE_SIDE_STYLE('',(#64));"
      "#64=SURFACE_STYLE_RENDERING(.X.,#70);#65=CURVE_STYLE('',$,$,#72);"
      "#66=STYLED_ITEM('',(#65),#56);#67=OVER_RIDING_STYLED_ITEM('',(#68),#56,#66);"
      "#68=PRESENTATION_STYLE_ASSIGNMENT((#69));#69=CURVE_STYLE('',$,$,#71);"
      "#70=DRAUGHTING_PRE_DEFINED_COLOUR('red');#71=DRAUGHTING_PRE_DEFINED_COLOUR('blue');"
      "#72=COLOUR_RGB('',-1.,2.,0.5);"
      "#80=PRESENTATION_LAYER_ASSIGNMENT('walls','',(#50));"
      "#81=PRESENTATION_LAYER_ASSIGNMENT(' 1','',(#10));"
      "#82=PRESENTATION_LAYER_ASSIGNMENT('7','',(#57));";
  Trial trial(makeShape("#50", records));
  const Part& part = trial.model.parts[0];
  ASSERT_EQ(part.curves.size(), 3);
  const auto describe = [&](int curve) {
    const Looks& looks = part.curves[curve].looks;
    const Colour colour = trial.model.colours[looks.colour];
    return std::to_string(looks.layer) + (colour.red == 1.0F    ? " red"
                                          : colour.blue == 1.0F ? " blue"
                                                                : " other");
  };
  EXPECT_EQ(describe(0), "2 red");
  EXPECT_EQ(describe(1), "2 blue");
  EXPECT_EQ(describe(2), "7 red");
  ASSERT_EQ(trial.model.layers.size(), 3);
  EXPECT_EQ(trial.model.layers[0].number, 2);
  EXPECT_EQ(encodeText(trial.model.layers[0].name), "walls");
}

TEST(StepReader, SurvivesHostileNesting) {
  const std::string deep(100000, '(');
  const std::string end(100000, ')');
  Trial lists(makeShape("#24,#50", "#50=CIRCLE(" + deep + end + "," + deep + "1" + end + ",1.);"));
  EXPECT_TRUE(lists.result.IsSuccess());
  EXPECT_EQ(lists.warnings.size(), 1U) << lists.GetFirstWarning();
  Trial open(makeShape("#24", "#50=CIRCLE(" + deep + ");"));
  EXPECT_TRUE(open.result.IsFailure());

  // Curves of curves, shells of shells, and a curve that doubles itself at each of 60 levels.
  std::string curves = "#1000=POLYLINE('',(#10,#14));";
  std::string shells;
  std::string doubles;
  for (int i = 1; i <= 100000; ++i) {
    const std::string id = std::to_string(1000 + i);
    curves +=
        "#" + id + "=TRIMMED_CURVE('',#" + std::to_string(999 + i) + ",(#10),(#14),.T.,.X.);\n";
    shells += "#" + std::to_string(500000 + i) + "=ORIENTED_CLOSED_SHELL('',*,#" +
              std::to_string(500001 + i) + ",.T.);\n";
  }
  for (int i = 1; i <= 60; ++i) {
    const int id = 900000 + 2 * i;
    const std::string below = i == 1 ? "#1000" : "#" + std::to_string(id - 2);
    doubles += "#" + std::to_string(id + 1) + "=COMPOSITE_CURVE_SEGMENT(.X.,.T.," + below + ");#" +
               std::to_string(id) + "=COMPOSITE_CURVE('',(#" + std::to_string(id + 1) + ",#" +
               std::to_string(id + 1) + "),.F.);\n";
  }
  Trial nested(makeShape("#24,#101000,#500001,#900120,#900034", curves + shells + doubles));
  EXPECT_TRUE(nested.result.IsSuccess());
  EXPECT_EQ(nested.summary.edges, 1U);
}

TEST(StepReader, ReadsRealModels) {
  const std::filesystem::path folder = KOVA_SHARED_MODELS;
  const struct {
    const char* name;
    std::uint64_t edges;
    double length;
    Point lowest;
    Point highest;
    double tolerance;
  } kModels[] = {
      {"as1-oc-214.stp", 354, 8375.619, {-10, 0, -4}, {190, 150, 80}, 0.01},
      {"splinecage.stp",
       22,
       313.650,
       {-11.9989, -17.4140, -2.3454},
       {25.6042, 11.4310, 4.1218},
       0.05},
  };
  if (!std::filesystem::exists(folder / kModels[0].name)) {
    GTEST_SKIP() << "the models of " << folder << " are not there";
  }
  for (const auto& expected : kModels) {
    const RecordingListener listener;
    const Report report(RecordingListener::kFile);
    const KOVAOptions options;
    KOVAFileHeader header;
    Model model;
    const KOVAFileHandle file(new KOVAFile(KOVAFilePath((folder / expected.name).c_str())));
    const ReadRequest request{file, nullptr, 0, report, options, header, model};
    EXPECT_TRUE(runReader(createReader(request)).IsSuccess());
    EXPECT_EQ(listener.warnings.size(), 0U);
    const Summary summary = summarize(model);
    EXPECT_EQ(summary.edges, expected.edges);
    EXPECT_NEAR(summary.edgeLength, expected.length, 0.0005 * expected.length);
    EXPECT_NEAR(summary.lowest.x, expected.lowest.x, expected.tolerance);
    EXPECT_NEAR(summary.lowest.y, expected.lowest.y, expected.tolerance);
    EXPECT_NEAR(summary.lowest.z, expected.lowest.z, expected.tolerance);
    EXPECT_NEAR(summary.highest.x, expected.highest.x, expected.tolerance);
    EXPECT_NEAR(summary.highest.y, expected.highest.y, expected.tolerance);
    EXPECT_NEAR(summary.highest.z, expected.highest.z, expected.tolerance);
  }
}

}  // namespace

}  // namespace kova::translators::step
