#include "translators/model/ModelTools.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace kova::translators {
namespace {

Curve makeCurve(std::uint32_t firstPoint, std::uint32_t pointCount, int layer) {
  Curve curve;
  curve.firstPoint = firstPoint;
  curve.pointCount = pointCount;
  curve.length = 1.0;
  curve.looks.layer = layer;
  return curve;
}

void place(Model& model, int part, const KOVAMorph3D& placement, int layer, const char* name) {
  Instance instance;
  instance.part = part;
  instance.placement = placement;
  instance.looks.layer = layer;
  instance.name = KOVAString(name, "UTF-8");
  model.instances.add(instance);
}

/// A part of two curves, on layer 1 and on none, and a mesh on layer 2; and a part of one curve.
Model makeModel() {
  Model model;
  model.unit = KOVAUnitInch;
  Part bracket;
  bracket.name = KOVAString("Bügel/links", "UTF-8");
  for (const double x : {0.0, 1.0, 5.0, 6.0}) bracket.points.add({x, 0.0, 0.0});
  bracket.curves.add(makeCurve(2, 2, 1));
  bracket.curves.add(makeCurve(0, 2, 0));
  Mesh mesh;
  for (const double y : {0.0, 1.0, 2.0}) mesh.vertices.add({0.0, y, y * y});
  mesh.triangles.add({{0, 1, 2}});
  mesh.isSinglePrecision = true;
  mesh.looks.layer = 2;
  bracket.meshes.add(mesh);
  model.parts.add(bracket);
  Part pin;
  pin.name = KOVAString("Pin");
  pin.points.add({0.0, 0.0, 0.0});
  pin.points.add({0.0, 0.0, 1.0});
  pin.curves.add(makeCurve(0, 2, 0));
  model.parts.add(pin);

  place(model, 0, KOVAMorph3D(), 0, "");
  place(model, 0, KOVAMorph3D(KOVAPoint3D(10.0, 0.0, 0.0), 2.0), 7, "BÜGEL 2");
  place(model, 1, KOVAMorph3D(KOVAPoint3D(0.0, 0.0, -3.0)), 3, "");
  return model;
}

/// Every instance with its place and what its part holds: "0: 0,1 5,6 | 1 mesh".
std::string describe(const Model& model) {
  std::string text;
  for (const Instance& instance : model.instances) {
    const Part& part = model.parts[instance.part];
    text += text.empty() ? "" : "; ";
    text += std::to_string(static_cast<int>(instance.placement.GetTranslation()[0])) + ":";
    for (const Curve& curve : part.curves) {
      for (std::uint32_t i = 0; i < curve.pointCount; ++i) {
        const Point& point = part.points[static_cast<int>(curve.firstPoint + i)];
        text += (i == 0 ? " " : ",") + std::to_string(static_cast<int>(point.x));
      }
    }
    text += " of " + std::to_string(part.points.size());
    for (int i = 0; i < part.meshes.size(); ++i) text += " mesh";
  }
  return text;
}

TEST(ModelToolsTest, SummaryCountsWhatStandsInTheModel) {
  const Summary summary = summarize(makeModel());
  EXPECT_EQ(summary.parts, 2U);
  EXPECT_EQ(summary.instances, 3U);
  EXPECT_EQ(summary.edges, 5U);
  EXPECT_EQ(summary.triangles, 2U);
  EXPECT_DOUBLE_EQ(summary.edgeLength, 2.0 + 2.0 * 2.0 + 1.0);
  ASSERT_TRUE(summary.hasBox);
  EXPECT_EQ(summary.lowest, (Point{0.0, 0.0, -3.0}));
  EXPECT_EQ(summary.highest, (Point{22.0, 4.0, 8.0}));
  EXPECT_FALSE(summarize(Model()).hasBox);
}

TEST(ModelToolsTest, ScalingReachesEveryLengthAndNoCopy) {
  Model model = makeModel();
  const Model before = model;
  ASSERT_TRUE(scaleModel(model, 25.4, KOVAUnitMillimeter));
  EXPECT_EQ(model.unit, KOVAUnitMillimeter);
  const Summary scaled = summarize(model);
  EXPECT_DOUBLE_EQ(scaled.edgeLength, 7.0 * 25.4);
  EXPECT_DOUBLE_EQ(scaled.highest.x, 22.0 * 25.4);
  EXPECT_DOUBLE_EQ(scaled.lowest.z, -3.0 * 25.4);
  EXPECT_EQ(model.instances[1].placement.GetScale(), 2.0);
  EXPECT_FALSE(model.parts[0].meshes[0].isSinglePrecision);
  EXPECT_EQ(summarize(before).highest, (Point{22.0, 4.0, 8.0}));
  EXPECT_EQ(summarize(before).edgeLength, 7.0);

  Model halved = before;
  ASSERT_TRUE(scaleModel(halved, 0.5, KOVAUnitUnknown));
  EXPECT_TRUE(halved.parts[0].meshes[0].isSinglePrecision);
}

TEST(ModelToolsTest, ScalingThatLeavesTheNumbersIsRefused) {
  Model model = makeModel();
  model.parts[1].points[1].z = 1e306;
  for (const double factor : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), 1e6,
                              std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(scaleModel(model, factor, KOVAUnitMeter)) << factor;
  }
  EXPECT_EQ(model.unit, KOVAUnitInch);
  EXPECT_EQ(summarize(model).highest.x, 22.0);
}

TEST(ModelToolsTest, LayersOfInstancesHoldForPiecesWithoutOne) {
  struct Case {
    std::vector<int> layers;
    const char* kept;
    std::uint64_t parts;
  };
  const Case cases[] = {
      {{0, 1, 2, 3, 7}, "0: 5,6 0,1 of 4 mesh; 10: 5,6 0,1 of 4 mesh; 0: 0,0 of 2", 2},
      {{0}, "0: 0,1 of 2", 1},
      {{1}, "0: 5,6 of 2; 10: 5,6 of 2", 1},
      {{7, 2}, "0: of 0 mesh; 10: 0,1 of 2 mesh", 2},
      {{3}, "0: 0,0 of 2", 1},
      {{9}, "", 0},
      {{}, "", 0},
  };
  const Model whole = makeModel();
  for (const Case& c : cases) {
    Model model = whole;
    const int count = static_cast<int>(c.layers.size());
    keepLayers(model, KOVALayerFilterC(count, count != 0 ? c.layers.data() : nullptr, "", true,
                                       KOVALayerFilterC::kDefaultType));
    EXPECT_EQ(describe(model), c.kept);
    EXPECT_EQ(summarize(model).parts, c.parts) << c.kept;
  }
  Model model = whole;
  keepLayers(model, KOVALayerFilterC(0, nullptr, "", true, KOVALayerFilterC::kAllLayers));
  EXPECT_EQ(describe(model), describe(whole));
}

TEST(ModelToolsTest, NamesOfInstancesAndPartsAreFoundByPattern) {
  struct Case {
    const char* pattern;
    int count;
  };
  const Case cases[] = {
      {"*", 3},       {"pin", 1},     {"PIN?", 0},       {"p?n", 1},  {"bügel*", 2},
      {"BÜGEL 2", 1}, {"*/links", 2}, {"b?gel/l*n*", 2}, {"", 0},     {"**n**n*", 0},
      {"*i*", 3},     {"bugel*", 0},  {"Bügel/link", 0}, {"?ü*s", 2}, {"*?*?*?*", 3},
  };
  const Model model = makeModel();
  for (const Case& c : cases) {
    KOVASelectionSet set("", true);
    EXPECT_EQ(select(model, KOVAString(c.pattern, "UTF-8"), set), c.count) << c.pattern;
    EXPECT_EQ(set.SelectionSetLength(), c.count) << c.pattern;
  }

  Model rest = model;
  KOVASelectionSet set("", true);
  select(rest, "pin", set);
  keepSelected(rest, set);
  EXPECT_EQ(describe(rest), "0: 0,0 of 2");
  EXPECT_EQ(summarize(rest).parts, 1U);
  EXPECT_EQ(describe(model), describe(makeModel()));
}

}  // namespace
}  // namespace kova::translators
