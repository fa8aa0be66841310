#include "apps/kova-translate/Preview.h"
#include "apps/kova-translate/preview/Colours.h"
#include "apps/kova-translate/preview/Surface.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kova::translate {
namespace {

using preview::GridPoint;
using preview::SeenColour;
using translators::Curve;
using translators::Mesh;
using translators::Model;
using translators::Part;
using translators::Point;

std::string draw(const Model& model, const std::string& title) {
  KOVAStringOutputStream stream;
  writePreview(model, summarize(model), title, stream);
  return {stream.GetBytes(), stream.GetByteCount()};
}

void addCurve(Part& part, const std::vector<Point>& points) {
  Curve curve;
  curve.firstPoint = static_cast<std::uint32_t>(part.points.size());
  curve.pointCount = static_cast<std::uint32_t>(points.size());
  for (const Point& point : points) part.points.add(point);
  part.curves.add(curve);
}

/// The closed surface of a box about the origin.
Mesh makeBox(double size, int colour) {
  Mesh mesh;
  mesh.looks.colour = colour;
  for (unsigned i = 0; i < 8; ++i) {
    mesh.vertices.add(
        {(i & 1) != 0 ? size : -size, (i & 2) != 0 ? size : -size, (i & 4) != 0 ? size : -size});
  }
  for (const auto& [a, b, c, d] : {std::array<std::uint32_t, 4>{0, 2, 3, 1},
                                   {4, 5, 7, 6},
                                   {0, 1, 5, 4},
                                   {2, 6, 7, 3},
                                   {0, 4, 6, 2},
                                   {1, 3, 7, 5}}) {
    mesh.triangles.add({{a, b, c}});
    mesh.triangles.add({{a, c, d}});
  }
  return mesh;
}

/// "" for elements that are closed in order, with quoted attributes, and texts that XML takes.
std::string findFault(const std::string& xml) {
  std::vector<std::string> open;
  for (std::size_t i = 0; i < xml.size(); ++i) {
    const auto byte = static_cast<unsigned char>(xml[i]);
    if (byte < 0x20 && byte != '\n') return "control character";
    if (xml[i] == '&') {
      const std::string entity = xml.substr(i, xml.find(';', i) - i + 1);
      if (entity != "&amp;" && entity != "&lt;" && entity != "&gt;") return "entity " + entity;
    }
    if (xml[i] == '>') return "loose >";
    if (xml[i] != '<') continue;
    const std::size_t end = xml.find('>', i);
    if (end == std::string::npos) return "open <";
    const std::string tag = xml.substr(i + 1, end - i - 1);
    if (tag.find('<') != std::string::npos) return "< in " + tag;
    if (std::count(tag.begin(), tag.end(), '"') % 2 != 0) return "quotes of " + tag;
    if (tag[0] == '/') {
      if (open.empty() || open.back() != tag.substr(1)) return "end of " + tag;
      open.pop_back();
    } else if (tag.back() != '/') {
      open.push_back(tag.substr(0, tag.find(' ')));
    }
    i = end;
  }
  return open.empty() ? "" : "no end of " + open.back();
}

/// All but the texts.
std::string getDrawing(const std::string& svg) {
  const std::size_t begin = svg.find("<rect");
  return svg.substr(begin, svg.find("<text", begin) - begin);
}

TEST(PreviewTest, AnyNameStandsInValidXml) {
  struct Case {
    const char* title;
    const char* shown;
  };
  const Case cases[] = {
      {"Bügel <1> & \"2\"", "Bügel &lt;1&gt; &amp; \"2\""},
      {"a\x01\x1B[31m\nb\x7F", "a  [31m b "},
      {"bad \xFF\xC3 bytes", "bad \uFFFD\uFFFD bytes"},
      {"turned \u202E around", "turned   around"},
      {"]]>", "]]&gt;"},
  };
  Model model;
  Part part;
  // A lone surrogate and what is no character.
  part.name = KOVAString(u"\xD800 \xFFFE");
  part.name.append(KOVAString("<"));
  addCurve(part, {{0, 0, 0}, {1, 1, 1}});
  addPart(model, part);
  part.name = KOVAString("other");
  addPart(model, part);
  for (const Case& c : cases) {
    const std::string svg = draw(model, c.title);
    EXPECT_EQ(findFault(svg), "") << c.title;
    EXPECT_NE(svg.find(">" + std::string(c.shown) + "</text>"), std::string::npos) << c.title;
    EXPECT_NE(svg.find(">\uFFFD  &lt;</text>"), std::string::npos);
  }
}

TEST(PreviewTest, EverySizeCanBeDrawn) {
  struct Case {
    Point low;
    Point high;
    const char* size;
  };
  const double tiny = 4e-320;
  const Case cases[] = {
      {{0, 0, 0}, {190, 150.04, 84}, "190 × 150 × 84 in"},
      {{5, 5, 5}, {5, 5, 5}, "0 × 0 × 0 in"},
      {{0, 0, 0}, {0, 0, 12.3456}, "0 × 0 × 12.35 in"},
      {{-1e308, -1e308, 0}, {1e308, 0, 1}, "more than 1.7e+308 × 1e+308 × 1 in"},
      {{0, 0, 0}, {tiny, tiny, tiny}, "4e-320 × 4e-320 × 4e-320 in"},
      {{1e12, 1e12, 1e12}, {1e12 + 2, 1e12 + 1, 1e12}, "2 × 1 × 0 in"},
  };
  for (const Case& c : cases) {
    Model model;
    model.unit = KOVAUnitInch;
    Part part;
    addCurve(part, {c.low, c.high});
    addCurve(part, {c.low, {c.high.x, c.low.y, c.low.z}});
    Mesh mesh;
    for (const Point& p : {c.low, c.high, Point{c.low.x, c.high.y, c.low.z}}) mesh.vertices.add(p);
    mesh.triangles.add({{0, 1, 2}});
    part.meshes.add(mesh);
    addPart(model, part);
    const std::string svg = draw(model, "model");
    EXPECT_EQ(findFault(svg), "");
    EXPECT_NE(svg.find(std::string(">") + c.size + "<"), std::string::npos) << c.size;
    const std::string drawing = getDrawing(svg);
    for (const char* word : {"nan", "inf", "e+", "e-0", "e-1", "e-3"}) {
      EXPECT_EQ(drawing.find(word), std::string::npos) << word << " in " << c.size;
    }
  }
  EXPECT_NE(draw(Model(), "").find(">nothing to show</text>"), std::string::npos);
}

TEST(PreviewTest, WhatIsInsideABoxIsHidden) {
  Model box;
  box.colours.add({0.1F, 0.2F, 0.9F});
  box.colours.add({0.9F, 0.1F, 0.1F});
  Part part;
  part.meshes.add(makeBox(10.0, 0));
  addPart(box, part);
  Model filled = box;
  filled.parts = filled.parts.copy();
  filled.instances = filled.instances.copy();
  Part inner;
  inner.meshes.add(makeBox(8.0, 1));
  addCurve(inner, {{-9, -9, -9}, {9, 9, 9}});
  addPart(filled, inner);
  const std::string plain = getDrawing(draw(box, ""));
  EXPECT_EQ(getDrawing(draw(filled, "")), plain);
  // Three faces are seen, each in one piece, and the shadow.
  std::size_t faces = 0;
  for (std::size_t i = 0; (i = plain.find("<path fill=\"#", i)) != std::string::npos; ++i) ++faces;
  EXPECT_EQ(faces, 3U + 1U);

  // A line in front of the box stays.
  addCurve(part, {{9, -10.5, 0}, {-9, -10.5, 0}});
  Model lined;
  addPart(lined, part);
  EXPECT_GT(getDrawing(draw(lined, "")).size(), plain.size() + 50);
}

TEST(PreviewTest, LargeModelsGiveSmallFilesAndAlwaysTheSame) {
  std::uint32_t seed = 1;
  const auto next = [&seed] {
    seed = seed * 1664525U + 1013904223U;
    return (seed >> 8) / 16777216.0;
  };
  Model lines;
  Part part;
  for (int i = 0; i < 60'000; ++i) {
    const Point p{next(), next(), next()};
    addCurve(part, {p, {p.x + next() / 9, p.y + next() / 9, p.z + next() / 9}});
  }
  addPart(lines, part);

  Model rough;
  Mesh mesh;
  constexpr std::uint32_t kSide = 300;
  for (std::uint32_t y = 0; y < kSide; ++y) {
    for (std::uint32_t x = 0; x < kSide; ++x) mesh.vertices.add({x * 1.0, y * 1.0, 5.0 * next()});
  }
  for (std::uint32_t y = 0; y + 1 < kSide; ++y) {
    for (std::uint32_t x = 0; x + 1 < kSide; ++x) {
      const std::uint32_t i = y * kSide + x;
      mesh.triangles.add({{i, i + 1, i + kSide + 1}});
      mesh.triangles.add({{i, i + kSide + 1, i + kSide}});
    }
  }
  Part sheet;
  sheet.meshes.add(mesh);
  Mesh cloud;
  cloud.vertices = mesh.vertices;
  sheet.meshes.add(cloud);
  addPart(rough, sheet);

  for (const Model* model : {&lines, &rough}) {
    const std::string svg = draw(*model, "large");
    EXPECT_LT(svg.size(), 3'000'000U);
    EXPECT_GT(svg.size(), 100'000U);
    EXPECT_EQ(findFault(svg), "");
    EXPECT_EQ(svg, draw(*model, "large"));
  }
}

TEST(PreviewTest, SimplifiedLinesStayWithinTheTolerance) {
  // A circle, a line in steps as images have it, and one that turns back.
  std::vector<GridPoint> circle;
  for (int i = 0; i <= 720; ++i) {
    const double angle = i * 3.14159265358979 / 360.0;
    circle.push_back({static_cast<int>(std::lround(400.0 * std::cos(angle))),
                      static_cast<int>(std::lround(400.0 * std::sin(angle)))});
  }
  std::vector<GridPoint> steps;
  for (int x = 0; x < 500; ++x) steps.push_back({x, x / 7});
  const std::vector<GridPoint> spike{{0, 0}, {5, 0}, {50, 0}, {20, 0}, {20, 30}, {20, -30}};
  struct Case {
    const std::vector<GridPoint>& line;
    std::size_t mostPoints;
  };
  for (const Case& c : {Case{circle, 60}, Case{steps, 3}, Case{spike, 5}}) {
    const std::vector<GridPoint> kept = preview::simplify(c.line, 1.5);
    EXPECT_LE(kept.size(), c.mostPoints);
    for (const GridPoint& p : c.line) {
      double nearest = 1e9;
      for (std::size_t i = 0; i + 1 < kept.size(); ++i) {
        const double dx = kept[i + 1].x - kept[i].x;
        const double dy = kept[i + 1].y - kept[i].y;
        const double along =
            ((p.x - kept[i].x) * dx + (p.y - kept[i].y) * dy) / std::max(dx * dx + dy * dy, 1.0);
        const double share = std::clamp(along, 0.0, 1.0);
        nearest = std::min(nearest,
                           std::hypot(p.x - kept[i].x - share * dx, p.y - kept[i].y - share * dy));
      }
      EXPECT_LE(nearest, 1.5 + 1e-9) << p.x << ", " << p.y;
    }
  }
}

TEST(PreviewTest, ColoursComeBack) {
  struct Case {
    translators::Colour colour;
    const char* text;
  };
  const Case cases[] = {{{0.0F, 0.0F, 0.0F}, "#000000"},
                        {{1.0F, 1.0F, 1.0F}, "#ffffff"},
                        {{1.0F, 0.502F, 0.0F}, "#ff8000"},
                        {{0.2F, 0.4F, 0.8F}, "#3366cc"},
                        {{-3.0F, 7.0F, 0.6F}, "#00ff99"}};
  for (const Case& c : cases) {
    EXPECT_EQ(SeenColour::FromColour(c.colour).ToText(), c.text);
  }
}

}  // namespace
}  // namespace kova::translate
