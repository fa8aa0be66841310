#include "apps/kova-translate/Preview.h"

#include "apps/kova-translate/preview/Colours.h"
#include "apps/kova-translate/preview/Lines.h"
#include "apps/kova-translate/preview/PageText.h"
#include "apps/kova-translate/preview/Styles.h"
#include "apps/kova-translate/preview/Surface.h"
#include "apps/kova-translate/preview/View.h"
#include "translators/model/Placement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace kova::translate {

namespace {

using preview::kInk;
using preview::kPaper;
using preview::Lines;
using preview::PathWriter;
using preview::Range;
using preview::SeenColour;
using preview::Styles;
using preview::Surface;
using preview::SurfacePlace;
using preview::toCountText;
using preview::toLengthText;
using preview::toText;
using preview::toXml;
using preview::View;
using preview::ViewPoint;
using translators::Curve;
using translators::Instance;
using translators::Looks;
using translators::Mesh;
using translators::Model;
using translators::Part;
using translators::Placement;
using translators::Point;
using translators::Summary;
using translators::Triangle;

// The page, in the units of the drawing.
constexpr double kPageWidth = 1200.0;
constexpr double kLeastPageHeight = 520.0;
constexpr double kSideMargin = 56.0;
constexpr double kHeadHeight = 124.0;
constexpr double kFootHeight = 96.0;
constexpr double kMostModelHeight = 640.0;
constexpr double kLegendWidth = 220.0;
constexpr int kMostLegendEntries = 12;

// Cells of the surface in one unit, and in all.
constexpr double kCellsPerUnit = 2.0;
constexpr double kMostCells = 1.6e6;
constexpr double kShadowCellsPerUnit = 0.4;

constexpr std::size_t kMostSurfaceBytes = 1'900'000;
constexpr std::size_t kMostLineBytes = 2'400'000;
constexpr std::size_t kMostDotBytes = 200'000;
constexpr std::size_t kFewDotBytes = 1000;

/// Above so many points there is no room for halos and shadows.
constexpr std::uint64_t kMostFinePoints = 20'000;

void append(std::string& text, std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces) text += piece;
}

/// Draws one model.
class Preview {
 public:
  Preview(const Model& model, const Summary& summary, const std::string& title)
      : _model(model), _summary(summary), _title(title), _styles(model), _view(summary) {}

  void Write(KOVAOutputStream& stream) {
    Measure();
    FindLegend();
    ArrangePage();
    if (_summary.hasBox) {
      DrawSurface();
      DrawLines();
      DrawDots();
    }
    WritePage(stream);
  }

 private:
  static bool HasLooseVertices(const Mesh& mesh) {
    return mesh.triangles.size() == 0 && mesh.vertices.size() != 0;
  }

  template <typename Function>
  void ForEachInstance(const Function& use) const {
    for (const Instance& instance : _model.instances) {
      use(instance, _model.parts[instance.part], Placement(instance.placement));
    }
  }

  /// Finds the extent of the view and what there is to draw.
  void Measure() {
    ForEachInstance([this](const Instance&, const Part& part, const Placement& placement) {
      const auto add = [&](const KOVADynamicArray<Point>& points) {
        for (const Point& point : points) {
          const ViewPoint seen = _view(placement(point));
          _across.Add(seen.x);
          _down.Add(seen.y);
          _depths.Add(seen.depth);
        }
      };
      add(part.points);
      for (const Mesh& mesh : part.meshes) add(mesh.vertices);
      for (const Curve& curve : part.curves) _curvePoints += curve.pointCount;
    });
  }

  void ArrangePage() {
    if (!_summary.hasBox) {
      _pageHeight = kLeastPageHeight;
      return;
    }
    const double left = kSideMargin;
    const double right = kPageWidth - kSideMargin - (_legend.empty() ? 0.0 : kLegendWidth);
    double scale = 1e300;
    if (_across.GetSize() > 0.0) scale = (right - left) / _across.GetSize();
    if (_down.GetSize() > 0.0) scale = std::min(scale, kMostModelHeight / _down.GetSize());
    // Points in a line with the eye have a depth, though no size.
    if (scale > 1e200) scale = 1.0;
    const double modelHeight = _down.GetSize() * scale;
    _pageHeight = std::max(kLeastPageHeight, kHeadHeight + modelHeight + kFootHeight);
    _legendTop = kHeadHeight;
    const double middle = kHeadHeight + (_pageHeight - kHeadHeight - kFootHeight) / 2.0;
    const double x = (left + right) / 2.0 - _across.GetMiddle() * scale;
    const double y = middle - _down.GetMiddle() * scale;
    _view.Fit(scale, x, y);
    _across = {x + _across.low * scale, x + _across.high * scale};
    _down = {y + _down.low * scale, y + _down.high * scale};
    _depths = {_depths.low * scale, _depths.high * scale};
    _pageHeight = std::ceil(_pageHeight);
  }

  void DrawSurface() {
    if (_summary.triangles == 0) return;
    constexpr double kMargin = 2.0;
    const double width = _across.GetSize() + 2.0 * kMargin;
    const double height = _down.GetSize() + 2.0 * kMargin;
    _surfacePlace.x = _across.low - kMargin;
    _surfacePlace.y = _down.low - kMargin;
    _surfacePlace.cellsPerUnit = std::min(kCellsPerUnit, std::sqrt(kMostCells / (width * height)));
    const auto toCells = [](double units, double cellsPerUnit) {
      return static_cast<int>(std::ceil(units * cellsPerUnit));
    };
    {
      Surface shadow(toCells(kPageWidth, kShadowCellsPerUnit),
                     toCells(_pageHeight, kShadowCellsPerUnit));
      ForEachTriangle([&](const Point(&corners)[3], int) {
        ViewPoint seen[3];
        for (int i = 0; i < 3; ++i) {
          seen[i] = SurfacePlace{0.0, 0.0, kShadowCellsPerUnit}(_view.GetShadow(corners[i]));
        }
        shadow.AddTriangle(seen, 0);
      });
      for (const auto& [look, text] : shadow.Draw(100'000).areas) _shadow += text;
    }
    _surface.emplace(toCells(width, _surfacePlace.cellsPerUnit),
                     toCells(height, _surfacePlace.cellsPerUnit));
    ForEachTriangle([&](const Point(&corners)[3], int style) {
      ViewPoint seen[3];
      for (int i = 0; i < 3; ++i) seen[i] = _surfacePlace(_view(corners[i]));
      _surface->AddTriangle(seen, style);
    });
    _drawing = _surface->Draw(kMostSurfaceBytes);
  }

  template <typename Function>
  void ForEachTriangle(const Function& use) {
    ForEachInstance([&](const Instance& instance, const Part& part, const Placement& placement) {
      for (const Mesh& mesh : part.meshes) {
        const int style = _styles.GetStyle(mesh.looks, instance);
        const Point* const vertices = mesh.vertices.getArray();
        for (const Triangle& triangle : mesh.triangles) {
          const Point corners[3] = {placement(vertices[triangle.corners[0]]),
                                    placement(vertices[triangle.corners[1]]),
                                    placement(vertices[triangle.corners[2]])};
          use(corners, style);
        }
      }
    });
  }

  /// Gives the points of each curve, on the page, without those that are too close to see.
  template <typename Function>
  void ForEachCurve(const Function& use) {
    constexpr double kClose = 0.35;
    std::vector<ViewPoint> points;
    std::vector<ViewPoint> shadow;
    ForEachInstance([&](const Instance& instance, const Part& part, const Placement& placement) {
      for (const Curve& curve : part.curves) {
        points.clear();
        shadow.clear();
        const Point* const first = part.points.getArray() + curve.firstPoint;
        for (std::uint32_t i = 0; i < curve.pointCount; ++i) {
          const Point placed = placement(first[i]);
          const ViewPoint seen = _view(placed);
          if (points.size() >= 2 && i + 1 == curve.pointCount &&
              std::hypot(seen.x - points.back().x, seen.y - points.back().y) < kClose) {
            points.pop_back();
            shadow.pop_back();
          } else if (!points.empty() && i + 1 != curve.pointCount &&
                     std::hypot(seen.x - points.back().x, seen.y - points.back().y) < kClose) {
            continue;
          }
          points.push_back(seen);
          shadow.push_back(_view.GetShadow(placed));
        }
        if (points.size() >= 2) use(points, shadow, _styles.GetStyle(curve.looks, instance));
      }
    });
  }

  void DrawLines() {
    if (_curvePoints == 0) return;
    using Points = std::vector<ViewPoint>;
    const Lines::Page page{kPageWidth, _pageHeight, _depths, _surface ? &*_surface : nullptr,
                           _surfacePlace};
    const std::size_t mostBytes = _surface ? kMostLineBytes / 3 : kMostLineBytes;
    // At the coarsest there are fewer cells than bytes for them.
    for (int coarseness = _curvePoints <= kMostFinePoints ? 0 : 1; coarseness < 6; ++coarseness) {
      _lines.emplace(page, coarseness, mostBytes);
      if (coarseness != 0) {
        ForEachCurve(
            [&](const Points& points, const Points&, int style) { _lines->Look(points, style); });
      }
      ForEachCurve([&](const Points& points, const Points& shadow, int style) {
        _lines->Add(points, style);
        if (!_surface) _lines->AddShadow(shadow);
      });
      if (!_lines->IsFull()) break;
    }
  }

  /// Points that belong to no curve and no triangle.
  void DrawDots() {
    constexpr double kSpacing = 2.0;
    const int width = static_cast<int>(kPageWidth / kSpacing) + 1;
    std::vector<bool> isTaken;
    const auto add = [&](const KOVADynamicArray<Point>& points, const Placement& placement,
                         int style) {
      isTaken.resize(static_cast<std::size_t>(width) *
                     (static_cast<std::size_t>(_pageHeight / kSpacing) + 1));
      for (const Point& point : points) {
        const ViewPoint seen = _view(placement(point));
        const std::size_t cell =
            static_cast<std::size_t>(seen.y / kSpacing) * static_cast<std::size_t>(width) +
            static_cast<std::size_t>(seen.x / kSpacing);
        if (cell >= isTaken.size() || isTaken[cell] || _dotBytes > kMostDotBytes) continue;
        isTaken[cell] = true;
        std::string& text = _dots[style];
        const std::size_t before = text.size();
        PathWriter path(text);
        path.MoveTo(static_cast<int>(std::lround(seen.x * Lines::kGridPerUnit)),
                    static_cast<int>(std::lround(seen.y * Lines::kGridPerUnit)));
        text += "h0";
        _dotBytes += text.size() - before;
      }
    };
    ForEachInstance([&](const Instance& instance, const Part& part, const Placement& placement) {
      if (part.curves.size() == 0 && part.points.size() != 0) {
        add(part.points, placement, _styles.GetStyle(Looks(), instance));
      }
      for (const Mesh& mesh : part.meshes) {
        if (HasLooseVertices(mesh)) {
          add(mesh.vertices, placement, _styles.GetStyle(mesh.looks, instance));
        }
      }
    });
  }

  struct LegendEntry {
    KOVAString name;
    int style;
    std::uint64_t count;
  };

  /// Names the parts when there are few, each once.
  void FindLegend() {
    std::map<int, std::size_t> entries;
    for (const Instance& instance : _model.instances) {
      const Part& part = _model.parts[instance.part];
      if (part.name.isEmpty()) continue;
      const auto found = entries.find(instance.part);
      if (found != entries.end()) {
        ++_legend[found->second].count;
        continue;
      }
      Looks looks;
      if (part.meshes.size() != 0) {
        looks = part.meshes[0].looks;
      } else if (part.curves.size() != 0) {
        looks = part.curves[0].looks;
      } else {
        continue;
      }
      if (_legend.size() > kMostLegendEntries) break;
      entries.emplace(instance.part, _legend.size());
      _legend.push_back({part.name, _styles.GetStyle(looks, instance), 1});
    }
    if (_legend.size() > kMostLegendEntries || _legend.size() < 2) _legend.clear();
  }

  // The texts of the page.

  std::string GetSizeText() const {
    const std::string unit = preview::getUnitSymbol(_model.unit);
    if (!_summary.hasBox) return unit.empty() ? "nothing to show" : "nothing to show · " + unit;
    const auto size = [](double low, double high) { return toLengthText(high - low); };
    return size(_summary.lowest.x, _summary.highest.x) + " × " +
           size(_summary.lowest.y, _summary.highest.y) + " × " +
           size(_summary.lowest.z, _summary.highest.z) + (unit.empty() ? " (no unit)" : " " + unit);
  }

  std::string GetCountsText() const {
    std::string text = toCountText(_summary.parts, "part");
    const auto add = [&text](std::uint64_t count, const char* noun) {
      if (count != 0) text += " · " + toCountText(count, noun);
    };
    if (_summary.instances != _summary.parts) add(_summary.instances, "instance");
    add(_summary.edges, "edge");
    add(_summary.triangles, "triangle");
    return text;
  }

  void PutText(double x, double y, const char* look, const std::string& xml) {
    _svg +=
        "<text x=\"" + toText(x) + "\" y=\"" + toText(y) + "\" " + look + ">" + xml + "</text>\n";
  }

  void PutScaleBar() {
    const double scale = _view.GetScale();
    if (!_summary.hasBox || !(_across.GetSize() > 0.0 || _down.GetSize() > 0.0) ||
        !std::isnormal(scale)) {
      return;
    }
    // The longest of 1, 2 and 5 times a power of ten that stays short enough.
    constexpr double kMostUnits = 180.0;
    const double most = kMostUnits / scale;
    if (!std::isnormal(most)) return;
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    const double length = power * (most >= 5.0 * power ? 5.0 : most >= 2.0 * power ? 2.0 : 1.0);
    const double left = kSideMargin;
    const double y = _pageHeight - 40.0;
    const std::string right = toText(left + length * scale);
    _svg += "<path fill=\"none\" stroke=\"" + kInk.ToText() +
            "\" stroke-width=\"1.5\" stroke-linecap=\"square\" d=\"M" + toText(left) + " " +
            toText(y - 6.0) + "v6H" + right + "v-6\"/>\n";
    const std::string unit = preview::getUnitSymbol(_model.unit);
    PutText(left, y - 14.0, "font-size=\"14\" class=\"ink\"",
            toLengthText(length) + (unit.empty() ? "" : " " + unit));
  }

  void PutAxes() {
    constexpr double kLength = 34.0;
    constexpr double kHues[] = {25.0, 145.0, 260.0};
    const double x = kPageWidth - kSideMargin - 40.0;
    const double y = _pageHeight - 48.0;
    for (int axis = 0; axis < 3; ++axis) {
      const ViewPoint end = _view.GetAxis(axis);
      const std::string colour = SeenColour::FromHue(0.55, 0.14, kHues[axis]).ToText();
      _svg += "<path stroke=\"" + colour + "\" stroke-width=\"2\" stroke-linecap=\"round\" d=\"M" +
              toText(x) + " " + toText(y) + "l" + toText(kLength * end.x) + " " +
              toText(kLength * end.y) + "\"/>\n";
      PutText(x + (kLength + 11.0) * end.x, y + (kLength + 11.0) * end.y + 4.5,
              ("font-size=\"13\" text-anchor=\"middle\" fill=\"" + colour + "\"").c_str(),
              std::string(1, "xyz"[axis]));
    }
  }

  void PutLegend() {
    double y = _legendTop + 6.0;
    const double x = kPageWidth - kSideMargin - kLegendWidth + 34.0;
    for (const LegendEntry& entry : _legend) {
      const bool isFace = _summary.triangles != 0;
      const SeenColour colour =
          isFace ? _styles.GetFaceColour(entry.style, 0.7) : _styles.GetLineColour(entry.style);
      _svg += "<circle cx=\"" + toText(x) + "\" cy=\"" + toText(y) + "\" r=\"5\" fill=\"" +
              colour.ToText() + "\"/>\n";
      const std::string count = entry.count > 1 ? std::to_string(entry.count) : "";
      const int room = count.empty() ? 23 : 20 - static_cast<int>(count.size());
      std::string text = toXml(entry.name, room);
      if (!count.empty()) text += " <tspan class=\"soft\">× " + count + "</tspan>";
      PutText(x + 14.0, y + 4.8, "font-size=\"14\" class=\"ink\"", text);
      y += 24.0;
    }
  }

  void PutDrawing() {
    const std::string ink = kInk.ToText();
    const auto scaleBy = [](double factor) { return "scale(" + toText(factor, 6) + ")"; };
    if (!_shadow.empty()) {
      _svg += "<g filter=\"url(#soft)\"><path fill=\"" + ink +
              "\" fill-opacity=\"0.2\" fill-rule=\"evenodd\" transform=\"" +
              scaleBy(0.5 / kShadowCellsPerUnit) + "\" d=\"" + _shadow + "\"/></g>\n";
    }
    if (_lines && !_lines->GetShadows().empty()) {
      _svg += "<g filter=\"url(#soft)\"><path fill=\"none\" stroke=\"" + ink +
              "\" stroke-opacity=\"0.16\" stroke-width=\"24\" transform=\"" +
              scaleBy(1.0 / Lines::kGridPerUnit) + "\" d=\"" + _lines->GetShadows() + "\"/></g>\n";
    }
    if (_surface) {
      const double halfCells = 2.0 * _surfacePlace.cellsPerUnit;
      // Each area is a little larger than it is: no gaps show between neighbours.
      _svg += "<g fill-rule=\"evenodd\" stroke-linejoin=\"round\" stroke-width=\"" +
              toText(0.6 * halfCells) + "\" transform=\"translate(" + toText(_surfacePlace.x) +
              " " + toText(_surfacePlace.y) + ") " + scaleBy(1.0 / halfCells) + "\">\n";
      for (const auto& [look, text] : _drawing.areas) {
        const auto& [style, shade] = look;
        const std::string colour =
            _styles.GetFaceColour(style, shade / (Surface::kShades - 1.0)).ToText();
        append(_svg, {"<path fill=\"", colour, "\" stroke=\"", colour, "\" d=\"", text, "\"/>\n"});
      }
      const auto putLines = [&](const std::string& text, double width, double opacity) {
        if (text.empty()) return;
        _svg += "<path fill=\"none\" stroke=\"" + ink + "\" stroke-opacity=\"" + toText(opacity) +
                "\" stroke-linecap=\"round\" stroke-width=\"" + toText(width * halfCells) +
                "\" d=\"" + text + "\"/>\n";
      };
      putLines(_drawing.edges, 0.8, 0.45);
      putLines(_drawing.steps, 1.1, 0.75);
      putLines(_drawing.outlines, 1.5, 0.9);
      _svg += "</g>\n";
    }
    _svg += "<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\" transform=\"" +
            scaleBy(1.0 / Lines::kGridPerUnit) + "\">\n";
    if (_lines) _lines->Write(_styles, _across.GetSize() * _down.GetSize(), _svg);
    for (const auto& [style, text] : _dots) {
      _svg += "<path stroke=\"" + _styles.GetLineColour(style).ToText() + "\" stroke-width=\"" +
              (_dotBytes < kFewDotBytes ? "60" : "24") + "\" d=\"" + text + "\"/>\n";
    }
    _svg += "</g>\n";
  }

  void WritePage(KOVAOutputStream& stream) {
    KOVAString name =
        KOVAString::fromBytes(_title.data(), static_cast<int>(_title.size()), "UTF-8");
    if (name.isEmpty()) name = _model.name;
    const std::string height = toText(_pageHeight);
    const std::string width = toText(kPageWidth);
    _svg += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
            "\" viewBox=\"0 0 " + width + " " + height + "\" role=\"img\">\n<title>" +
            toXml(name, 200) + "</title>\n<desc>" + GetSizeText() + ", " + GetCountsText() +
            "</desc>\n";
    _svg +=
        "<defs><linearGradient id=\"paper\" x1=\"0\" y1=\"0\" x2=\"0\" y2=\"1\">"
        "<stop offset=\"0\" stop-color=\"" +
        kPaper.WithLightness(0.995).ToText() + "\"/><stop offset=\"1\" stop-color=\"" +
        kPaper.WithLightness(0.955).ToText() +
        "\"/></linearGradient>"
        "<filter id=\"soft\" x=\"-10%\" y=\"-10%\" width=\"120%\" height=\"120%\">"
        "<feGaussianBlur stdDeviation=\"6\"/></filter></defs>\n"
        "<style>text{font-family:\"Helvetica Neue\",Helvetica,Arial,\"Liberation Sans\","
        "\"DejaVu Sans\",sans-serif}.ink{fill:" +
        kInk.ToText() + "}.soft{fill:" + kPaper.Mix(kInk, 0.62).ToText() + "}</style>\n";
    _svg += "<rect width=\"" + width + "\" height=\"" + height + "\" fill=\"url(#paper)\"/>\n";
    PutDrawing();
    PutText(kSideMargin, 58.0, "font-size=\"26\" font-weight=\"600\" class=\"ink\"",
            toXml(name, 60));
    PutText(kSideMargin, 86.0, "font-size=\"17\" class=\"ink\"", GetSizeText());
    PutText(kSideMargin, 108.0, "font-size=\"14\" class=\"soft\"", GetCountsText());
    PutLegend();
    PutScaleBar();
    PutAxes();
    _svg += "</svg>\n";
    stream.Write(_svg.data(), _svg.size());
  }

  const Model& _model;
  const Summary& _summary;
  const std::string& _title;
  Styles _styles;
  View _view;
  Range _across;
  Range _down;
  Range _depths;
  std::uint64_t _curvePoints = 0;
  double _pageHeight = kLeastPageHeight;
  double _legendTop = 0.0;
  SurfacePlace _surfacePlace;
  std::vector<LegendEntry> _legend;
  std::optional<Surface> _surface;
  Surface::Drawing _drawing;
  std::string _shadow;
  std::optional<Lines> _lines;
  std::map<int, std::string> _dots;
  std::size_t _dotBytes = 0;
  std::string _svg;
};

}  // namespace

void writePreview(const Model& model, const Summary& summary, const std::string& title,
                  KOVAOutputStream& stream) {
  Preview(model, summary, title).Write(stream);
}

}  // namespace kova::translate
