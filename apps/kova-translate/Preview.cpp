#include "apps/kova-translate/Preview.h"

#include "apps/kova-translate/PreviewColours.h"
#include "apps/kova-translate/PreviewSurface.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "translators/model/Placement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace kova::translate {

namespace {

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
constexpr double kMostCells = 2.0e6;
constexpr double kShadowCellsPerUnit = 0.4;

constexpr std::size_t kMostSurfaceBytes = 1'900'000;
constexpr std::size_t kMostLineBytes = 800'000;
constexpr std::size_t kMostDotBytes = 200'000;
constexpr std::size_t kFewDotBytes = 1000;

// Lines are written in tenths of a unit.
constexpr double kGridPerUnit = 10.0;
constexpr int kLevels = 16;
/// Above so many points there is no room for halos and shadows.
constexpr std::uint64_t kMostFinePoints = 30'000;

constexpr SeenColour kPaper{0.985, -0.001, -0.003};
constexpr SeenColour kInk{0.30, -0.006, -0.025};

std::string toText(double value, int decimals) {
  char digits[400];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr;
  std::string text(digits, end);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string toText(double value) { return toText(value, 2); }

/// For people: four digits, or all that stand before the point.
std::string toLengthText(double value) {
  if (value == 0.0) return "0";
  if (!std::isfinite(value)) return "more than 1.7e+308";
  if (value >= 1e-3 && value < 1e7) {
    const int digits = static_cast<int>(std::floor(std::log10(value))) + 1;
    return toText(value, std::clamp(4 - digits, 0, 6));
  }
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::general, 4).ptr};
}

std::string toCountText(std::uint64_t count, const char* noun) {
  std::string digits = std::to_string(count);
  for (int i = static_cast<int>(digits.size()) - 3; digits.size() > 4 && i > 0; i -= 3) {
    digits.insert(static_cast<std::size_t>(i), "\u202F");
  }
  return digits + ' ' + noun + (count == 1 ? "" : "s");
}

/// As the content of an XML element: one line, without what XML does not take or what turns the
/// direction of the text, cut after `mostUnits` UTF-16 units.
std::string toXml(const KOVAString& text, int mostUnits) {
  KOVAString shown;
  const auto isHigh = [](unsigned unit) { return (unit & 0xFC00) == 0xD800; };
  const auto isLow = [](unsigned unit) { return (unit & 0xFC00) == 0xDC00; };
  for (int i = 0; i < text.length(); ++i) {
    if (shown.length() >= mostUnits) {
      shown.append(static_cast<unsigned short>(0x2026));
      break;
    }
    const unsigned short unit = text.charAt(i);
    if (isHigh(unit) && i + 1 < text.length() && isLow(text.charAt(i + 1))) {
      shown.append(unit);
      shown.append(text.charAt(++i));
    } else if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit >= 0xFFFE ||
               (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069)) {
      shown.append(static_cast<unsigned short>(' '));
    } else {
      shown.append(unit);
    }
  }
  // Lone surrogates become replacement characters here.
  KOVAStringOutputStream bytes;
  bytes.Write(shown);
  std::string xml;
  for (const char c : std::string_view(bytes.GetBytes(), bytes.GetByteCount())) {
    switch (c) {
      case '&': xml += "&amp;"; break;
      case '<': xml += "&lt;"; break;
      case '>': xml += "&gt;"; break;
      default: xml += c;
    }
  }
  return xml;
}

const char* getUnitSymbol(KOVAUnit unit) {
  switch (unit) {
    case KOVAUnitNanometer: return "nm";
    case KOVAUnitMicrometer: return "µm";
    case KOVAUnitMillimeter: return "mm";
    case KOVAUnitCentimeter: return "cm";
    case KOVAUnitDecimeter: return "dm";
    case KOVAUnitMeter: return "m";
    case KOVAUnitInch: return "in";
    case KOVAUnitFoot: return "ft";
    case KOVAUnitMile: return "mi";
    case KOVAUnitKilometer: return "km";
    case KOVAUnitMilliinch: return "mil";
    case KOVAUnitMicroinch: return "µin";
    default: return "";
  }
}

struct Range {
  double low = 1e300;
  double high = -1e300;

  void Add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  double GetSize() const { return high - low; }
  double GetMiddle() const { return low + GetSize() / 2.0; }
};

/// From the coordinates of the model to the page.
class View {
 public:
  explicit View(const Summary& summary) {
    const double largest = std::max({std::fabs(summary.lowest.x), std::fabs(summary.lowest.y),
                                     std::fabs(summary.lowest.z), std::fabs(summary.highest.x),
                                     std::fabs(summary.highest.y), std::fabs(summary.highest.z)});
    // Near 1, so that no step of what follows leaves the range of numbers.
    const int exponent = largest > 0.0 ? std::clamp(std::ilogb(largest), -1000, 1000) : 0;
    _factor = std::ldexp(1.0, -exponent);
    const auto middle = [this](double low, double high) {
      return low * _factor / 2.0 + high * _factor / 2.0;
    };
    _centre = {middle(summary.lowest.x, summary.highest.x),
               middle(summary.lowest.y, summary.highest.y),
               middle(summary.lowest.z, summary.highest.z)};
    _ground = summary.lowest.z * _factor - _centre.z;
  }

  /// To the page. Before `Fit` in other units.
  ViewPoint operator()(const Point& point) const {
    return Turn({point.x * _factor - _centre.x, point.y * _factor - _centre.y,
                 point.z * _factor - _centre.z});
  }

  /// Of the shadow of the point on the ground.
  ViewPoint GetShadow(const Point& point) const {
    const double height = point.z * _factor - _centre.z - _ground;
    return Turn({point.x * _factor - _centre.x + height * 0.17,
                 point.y * _factor - _centre.y + height * 0.27, _ground});
  }

  /// Where a unit vector along an axis goes on the page.
  ViewPoint GetAxis(int axis) const { return {kRows[0][axis], -kRows[1][axis], kRows[2][axis]}; }

  void Fit(double scale, double x, double y) {
    _scale = scale;
    _x = x;
    _y = y;
  }

  /// Units of the page for one of the model.
  double GetScale() const { return _scale * _factor; }

 private:
  // Right, up and towards the viewer, who looks from 55 degrees right of the y axis' far side: x
  // goes to the right and a little to the front, y away. 28 degrees above the ground.
  static constexpr double kRows[3][3] = {
      {0.819152, 0.573576, 0.0}, {-0.269278, 0.384567, 0.882948}, {0.506436, -0.723264, 0.469472}};

  ViewPoint Turn(const Point& p) const {
    const auto along = [&p](const double(&row)[3]) {
      return row[0] * p.x + row[1] * p.y + row[2] * p.z;
    };
    return {_x + _scale * along(kRows[0]), _y - _scale * along(kRows[1]), _scale * along(kRows[2])};
  }

  double _factor = 1.0;
  Point _centre{0.0, 0.0, 0.0};
  double _ground = 0.0;
  double _scale = 1.0;
  double _x = 0.0;
  double _y = 0.0;
};

/// The colours of the model's pieces, under small numbers.
class Styles {
 public:
  explicit Styles(const Model& model) : _model(model) {
    std::vector<std::uint32_t> known;
    _isCoarse = false;
    for (const translators::Colour& colour : model.colours) known.push_back(Pack(colour));
    std::sort(known.begin(), known.end());
    known.erase(std::unique(known.begin(), known.end()), known.end());
    _isCoarse = known.size() > kMostColours;
  }

  int GetStyle(const Looks& piece, const Instance& instance) {
    int colour = piece.colour;
    if (!IsColour(colour)) colour = instance.looks.colour;
    const bool isOwn = !IsColour(colour);
    const std::uint32_t key = isOwn ? 1U << 31 | static_cast<std::uint32_t>(instance.part % kParts)
                                    : Pack(_model.colours[colour]);
    const auto [found, isNew] = _numbers.try_emplace(key, static_cast<int>(_colours.size()));
    if (isNew) {
      _colours.push_back(isOwn ? getPartColour(instance.part % kParts)
                               : Soften(SeenColour::FromColour(Unpack(key))));
      _areOwn.push_back(isOwn);
    }
    return found->second;
  }

  /// A face under a light from 0 to 1.
  SeenColour GetFaceColour(int style, double light) const {
    const SeenColour& base = _colours[static_cast<std::size_t>(style)];
    const double lightness = _areOwn[static_cast<std::size_t>(style)]
                                 ? base.lightness
                                 : std::clamp(base.lightness, 0.34, 0.86);
    const double shown = lightness * (0.58 + 0.54 * light);
    SeenColour face = base.WithLightness(std::min(shown, 0.955));
    const double fade = std::clamp((0.975 - face.lightness) / 0.12, 0.0, 1.0);
    face.greenRed *= fade;
    face.blueYellow *= fade;
    return face;
  }

  /// A line at full strength.
  SeenColour GetLineColour(int style) const {
    const SeenColour& base = _colours[static_cast<std::size_t>(style)];
    if (!_areOwn[static_cast<std::size_t>(style)]) {
      return base.WithLightness(std::clamp(base.lightness, 0.22, 0.60));
    }
    SeenColour line = base.WithLightness(base.lightness - 0.23);
    line.greenRed *= 1.3;
    line.blueYellow *= 1.3;
    return line;
  }

 private:
  static constexpr int kParts = 64;
  static constexpr std::size_t kMostColours = 64;

  /// The pure colours that files like to have are too loud side by side.
  static SeenColour Soften(const SeenColour& colour) {
    constexpr double kStrongest = 0.17;
    const double strength = std::hypot(colour.greenRed, colour.blueYellow);
    const double share = strength > kStrongest ? kStrongest / strength : 1.0;
    return {colour.lightness, colour.greenRed * share, colour.blueYellow * share};
  }

  bool IsColour(int index) const { return _model.colours.isValidIndex(index); }

  std::uint32_t Pack(const translators::Colour& colour) const {
    const auto toByte = [](float amount) {
      const float pinned = amount > 0.0F ? std::min(amount, 1.0F) : 0.0F;
      return static_cast<std::uint32_t>(std::lround(pinned * 255.0F));
    };
    const std::uint32_t packed =
        toByte(colour.red) << 16 | toByte(colour.green) << 8 | toByte(colour.blue);
    return _isCoarse ? (packed & 0xC0C0C0U) | 0x202020U : packed;
  }

  static translators::Colour Unpack(std::uint32_t packed) {
    const auto toAmount = [packed](unsigned shift) {
      return static_cast<float>(packed >> shift & 0xFF) / 255.0F;
    };
    return {toAmount(16), toAmount(8), toAmount(0)};
  }

  const Model& _model;
  bool _isCoarse;
  std::map<std::uint32_t, int> _numbers;
  std::vector<SeenColour> _colours;
  /// Not from the file.
  std::vector<bool> _areOwn;
};

/// Where the surface lies on the page.
struct SurfacePlace {
  double x = 0.0;
  double y = 0.0;
  double cellsPerUnit = 1.0;

  /// To cells.
  ViewPoint operator()(const ViewPoint& point) const {
    return {(point.x - x) * cellsPerUnit, (point.y - y) * cellsPerUnit, point.depth * cellsPerUnit};
  }
};

/// The lines of curves, sorted by depth and style, as path data.
class Lines {
 public:
  /// @param points  of all curves; decides how fine the drawing is.
  /// @param surface  hides what lies behind it; may be null.
  Lines(Range depths, std::uint64_t points, const PreviewSurface* surface,
        const SurfacePlace& surfacePlace, double height)
      : _depths(depths),
        _isFine(points <= kMostFinePoints),
        _surface(surface),
        _surfacePlace(surfacePlace),
        _gridHeight(static_cast<int>(height / kCoverUnits) + 1) {
    if (!_isFine) {
      _cover.assign(static_cast<std::size_t>(kGridWidth) * static_cast<std::size_t>(_gridHeight),
                    kUncovered);
    }
  }

  bool IsFine() const { return _isFine; }

  /// In dense drawings every curve is looked at first, and only what is in front is added later.
  void Look(const std::vector<ViewPoint>& points) {
    ForEachChunk(points, [this](const Chunk& chunk) {
      VisitCells(chunk, [&](std::uint8_t& cover) {
        cover = std::max(cover, static_cast<std::uint8_t>(chunk.level + 1));
      });
    });
  }

  void Add(const std::vector<ViewPoint>& points, int style) {
    const bool isClosed = points.front().x == points.back().x &&
                          points.front().y == points.back().y &&
                          points.front().depth == points.back().depth;
    const double size = _isFine ? GetLength(points) : 0.0;
    ForEachChunk(points, [&](const Chunk& chunk) {
      if (!_isFine && !Claim(chunk)) return;
      if (_bytes > kMostLineBytes) return;
      std::string& text = _paths[{chunk.level, style}];
      const std::size_t before = text.size();
      PutLine(chunk.points, text);
      if (_isFine) {
        PutHalo(chunk, isClosed, size);
        _length += GetLength(chunk.points);
      }
      _bytes += text.size() - before;
    });
  }

  void AddShadow(const std::vector<ViewPoint>& points) {
    if (_isFine) PutLine(points, _shadows);
  }

  void Write(const Styles& styles, double area, std::string& svg) const {
    // Many lines are thin, few are strong.
    const double density = _isFine ? _length / std::max(area, 1.0) : 1.0;
    const double weight = std::clamp(1.35 - 6.0 * density, 0.45, 1.2);
    for (int level = 0; level < kLevels; ++level) {
      const double nearness = (level + 1.0) / kLevels;
      const double width = (0.75 + 1.05 * nearness) * weight;
      if (const auto halo = _halos.find(level); halo != _halos.end()) {
        svg += "<path stroke=\"" + kPaper.ToText() + "\" stroke-width=\"" +
               toText((width + 2.6) * kGridPerUnit) + "\" stroke-linecap=\"butt\" d=\"" +
               halo->second + "\"/>\n";
      }
      for (auto path = _paths.lower_bound({level, -1});
           path != _paths.end() && path->first.first == level; ++path) {
        const SeenColour colour =
            kPaper.Mix(styles.GetLineColour(path->first.second), 0.40 + 0.60 * nearness);
        svg += "<path stroke=\"" + colour.ToText() + "\" stroke-width=\"" +
               toText(width * kGridPerUnit) + "\" d=\"" + path->second + "\"/>\n";
      }
    }
  }

  bool IsEmpty() const { return _paths.empty(); }
  const std::string& GetShadows() const { return _shadows; }

 private:
  static constexpr double kCoverUnits = 2.0;
  static constexpr int kGridWidth = static_cast<int>(kPageWidth / kCoverUnits) + 1;
  static constexpr std::uint8_t kUncovered = 0;
  static constexpr std::uint8_t kClaimed = 0xFF;

  /// A piece of a curve at one level of depth.
  struct Chunk {
    int level = -1;
    std::vector<ViewPoint> points;
    /// It begins at the curve's beginning, or ends at its end.
    bool isFirst = false;
    bool isLast = false;
  };

  int GetLevel(double depth) const {
    if (!(_depths.GetSize() > 0.0)) return kLevels - 1;
    const double share = (depth - _depths.low) / _depths.GetSize();
    return std::clamp(static_cast<int>(share * kLevels), 0, kLevels - 1);
  }

  bool IsSeen(const ViewPoint& point) const {
    return _surface == nullptr || _surface->IsSeen(_surfacePlace(point));
  }

  /// Cuts a curve where its level changes and where it goes behind the surface.
  template <typename Function>
  void ForEachChunk(const std::vector<ViewPoint>& points, const Function& use) {
    Chunk& chunk = _chunk;
    chunk.points.clear();
    const auto flush = [&](bool isLast) {
      chunk.isLast = isLast;
      if (!chunk.points.empty()) use(chunk);
      chunk.points.clear();
    };
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
      const ViewPoint& p = points[i];
      const ViewPoint& q = points[i + 1];
      const int levels = std::abs(GetLevel(p.depth) - GetLevel(q.depth));
      const double length = std::hypot(q.x - p.x, q.y - p.y);
      const int steps =
          std::max({1, levels != 0 ? 2 * levels : 0,
                    _surface != nullptr ? static_cast<int>(std::min(length / 2.0, 2000.0)) : 0});
      bool isStart = true;
      for (int step = 0; step < steps; ++step) {
        const auto at = [&](double position) {
          const double share = position / steps;
          return ViewPoint{std::lerp(p.x, q.x, share), std::lerp(p.y, q.y, share),
                           std::lerp(p.depth, q.depth, share)};
        };
        const ViewPoint middle = at(step + 0.5);
        const int level = IsSeen(middle) ? GetLevel(middle.depth) : -1;
        if (level != chunk.level) flush(false);
        chunk.level = level;
        if (level < 0) continue;
        if (chunk.points.empty()) {
          chunk.isFirst = i == 0 && step == 0;
          chunk.points.push_back(at(step));
          isStart = true;
        }
        // The steps of one segment are one line.
        if (!isStart) chunk.points.pop_back();
        isStart = false;
        chunk.points.push_back(at(step + 1));
      }
    }
    flush(true);
    chunk.level = -1;
  }

  template <typename Function>
  void VisitCells(const Chunk& chunk, const Function& visit) {
    std::size_t last = _cover.size();
    for (std::size_t i = 0; i + 1 < chunk.points.size(); ++i) {
      const ViewPoint& p = chunk.points[i];
      const ViewPoint& q = chunk.points[i + 1];
      const double length = std::hypot(q.x - p.x, q.y - p.y);
      const int steps = 1 + static_cast<int>(std::min(length / kCoverUnits, 2000.0));
      for (int step = 0; step < steps; ++step) {
        const double share = (step + 0.5) / steps;
        const double x = std::lerp(p.x, q.x, share) / kCoverUnits;
        const double y = std::lerp(p.y, q.y, share) / kCoverUnits;
        if (!(x >= 0.0 && y >= 0.0 && x < kGridWidth && y < _gridHeight)) continue;
        const std::size_t cell =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(kGridWidth) +
            static_cast<std::size_t>(x);
        if (cell == last) continue;
        last = cell;
        visit(_cover[cell]);
      }
    }
  }

  /// Whether the chunk is in front in much of its way, where no other one has been drawn.
  bool Claim(const Chunk& chunk) {
    int cells = 0;
    int claimed = 0;
    VisitCells(chunk, [&](std::uint8_t& cover) {
      ++cells;
      if (cover != kClaimed && cover <= chunk.level + 2) ++claimed;
    });
    if (claimed == 0 || claimed * 5 < cells * 2) return false;
    VisitCells(chunk, [&](std::uint8_t& cover) {
      if (cover <= chunk.level + 2) cover = kClaimed;
    });
    return true;
  }

  static double GetLength(const std::vector<ViewPoint>& points) {
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
      length += std::hypot(points[i + 1].x - points[i].x, points[i + 1].y - points[i].y);
    }
    return length;
  }

  static void PutLine(const std::vector<ViewPoint>& points, std::string& text) {
    PathWriter path(text);
    const auto toGrid = [](double value) {
      return static_cast<int>(std::lround(std::clamp(value, -1e5, 1e5) * kGridPerUnit));
    };
    path.MoveTo(toGrid(points.front().x), toGrid(points.front().y));
    for (std::size_t i = 1; i < points.size(); ++i) {
      path.LineTo(toGrid(points[i].x), toGrid(points[i].y));
    }
  }

  /// The halo leaves the ends of a curve free: other curves meet it there.
  void PutHalo(const Chunk& chunk, bool isClosed, double curveSize) {
    constexpr double kFree = 5.0;
    constexpr double kLeastSize = 32.0;
    // Small pieces would wipe each other out.
    if (curveSize < kLeastSize) return;
    _halo = chunk.points;
    const auto trim = [this] {
      double left = kFree;
      while (_halo.size() >= 2) {
        const ViewPoint p = _halo[_halo.size() - 1];
        const ViewPoint q = _halo[_halo.size() - 2];
        const double length = std::hypot(q.x - p.x, q.y - p.y);
        if (length > left) {
          const double share = left / length;
          _halo.back() = {std::lerp(p.x, q.x, share), std::lerp(p.y, q.y, share), p.depth};
          return;
        }
        left -= length;
        _halo.pop_back();
      }
    };
    if (!isClosed) {
      if (chunk.isLast) trim();
      if (chunk.isFirst) {
        std::reverse(_halo.begin(), _halo.end());
        trim();
      }
    }
    if (_halo.size() >= 2) PutLine(_halo, _halos[chunk.level]);
  }

  const Range _depths;
  const bool _isFine;
  const PreviewSurface* const _surface;
  const SurfacePlace _surfacePlace;
  const int _gridHeight;
  Chunk _chunk;
  std::vector<ViewPoint> _halo;
  std::vector<std::uint8_t> _cover;
  std::map<std::pair<int, int>, std::string> _paths;
  std::map<int, std::string> _halos;
  std::string _shadows;
  std::size_t _bytes = 0;
  double _length = 0.0;
};

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
      PreviewSurface shadow(toCells(kPageWidth, kShadowCellsPerUnit),
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
    _lines.emplace(_depths, _curvePoints, _surface ? &*_surface : nullptr, _surfacePlace,
                   _pageHeight);
    using Points = std::vector<ViewPoint>;
    if (!_lines->IsFine()) {
      ForEachCurve([&](const Points& points, const Points&, int) { _lines->Look(points); });
    }
    ForEachCurve([&](const Points& points, const Points& shadow, int style) {
      _lines->Add(points, style);
      if (!_surface) _lines->AddShadow(shadow);
    });
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
        path.MoveTo(static_cast<int>(std::lround(seen.x * kGridPerUnit)),
                    static_cast<int>(std::lround(seen.y * kGridPerUnit)));
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
    const std::string unit = getUnitSymbol(_model.unit);
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
    const std::string unit = getUnitSymbol(_model.unit);
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
              scaleBy(1.0 / kGridPerUnit) + "\" d=\"" + _lines->GetShadows() + "\"/></g>\n";
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
            _styles.GetFaceColour(style, shade / (PreviewSurface::kShades - 1.0)).ToText();
        _svg += "<path fill=\"" + colour + "\" stroke=\"" + colour + "\" d=\"" + text + "\"/>\n";
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
            scaleBy(1.0 / kGridPerUnit) + "\">\n";
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
  std::optional<PreviewSurface> _surface;
  PreviewSurface::Drawing _drawing;
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
