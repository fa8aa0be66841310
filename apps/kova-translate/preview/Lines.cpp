#include "apps/kova-translate/preview/Lines.h"

#include "apps/kova-translate/preview/PageText.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kova::translate::preview {

namespace {

constexpr int kLevels = 16;
constexpr std::uint8_t kClaimed = 0xFF;
constexpr int kEdgeStyle = -1;

double getLength(const std::vector<ViewPoint>& points) {
  double length = 0.0;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    length += std::hypot(points[i + 1].x - points[i].x, points[i + 1].y - points[i].y);
  }
  return length;
}

void putLine(const std::vector<ViewPoint>& points, std::string& text) {
  PathWriter path(text);
  const auto toGrid = [](double value) {
    return static_cast<int>(std::lround(std::clamp(value, -1e5, 1e5) * Lines::kGridPerUnit));
  };
  path.MoveTo(toGrid(points.front().x), toGrid(points.front().y));
  for (std::size_t i = 1; i < points.size(); ++i) {
    path.LineTo(toGrid(points[i].x), toGrid(points[i].y));
  }
}

}  // namespace

Lines::Lines(const Page& page, int coarseness, std::size_t mostBytes)
    : _page(page),
      _mostBytes(mostBytes),
      _cellSize(2.0 * std::pow(1.5, coarseness - 1)),
      _gridWidth(static_cast<int>(page.width / _cellSize) + 1),
      _gridHeight(static_cast<int>(page.height / _cellSize) + 1) {
  if (coarseness == 0) return;
  _cover.assign(static_cast<std::size_t>(_gridWidth) * static_cast<std::size_t>(_gridHeight), 0);
}

void Lines::Look(const std::vector<ViewPoint>& points, int style) {
  if (IsFine()) return;
  ForEachChunk(points, style, [this](const Chunk& chunk) {
    VisitCells(chunk, [&](std::uint8_t& cover) {
      cover = std::max(cover, static_cast<std::uint8_t>(chunk.level + 1));
    });
  });
}

void Lines::Add(const std::vector<ViewPoint>& points, int style) {
  const bool isClosed = points.front().x == points.back().x &&
                        points.front().y == points.back().y &&
                        points.front().depth == points.back().depth;
  const double size = getLength(points);
  ForEachChunk(points, style, [&](const Chunk& chunk) {
    if (IsFull() || (!IsFine() && !Claim(chunk))) return;
    std::string& text =
        _paths[{chunk.level, chunk.ground == Ground::kSameStyle ? kEdgeStyle : style}];
    const std::size_t before = text.size();
    putLine(chunk.points, text);
    _bytes += text.size() - before;
    _length += getLength(chunk.points);
    if (IsFine() && chunk.ground == Ground::kNothing) PutHalo(chunk, isClosed, size);
  });
}

void Lines::AddShadow(const std::vector<ViewPoint>& points) {
  if (!IsFine() || IsFull()) return;
  const std::size_t before = _shadows.size();
  putLine(points, _shadows);
  _bytes += _shadows.size() - before;
}

void Lines::Write(const Styles& styles, double area, std::string& svg) const {
  // Many lines are thin, few are strong.
  const double density = _length / std::max(area, 1.0);
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
      const bool isEdge = path->first.second == kEdgeStyle;
      const SeenColour colour =
          isEdge ? kInk
                 : kPaper.Mix(styles.GetLineColour(path->first.second), 0.40 + 0.60 * nearness);
      svg += "<path stroke=\"" + colour.ToText() + "\" stroke-width=\"" +
             toText((isEdge ? 0.8 : width) * kGridPerUnit) +
             (isEdge ? "\" stroke-opacity=\"0.45" : "") + "\" d=\"" + path->second + "\"/>\n";
    }
  }
}

int Lines::GetLevel(double depth) const {
  if (!(_page.depths.GetSize() > 0.0)) return kLevels - 1;
  const double share = (depth - _page.depths.low) / _page.depths.GetSize();
  return std::clamp(static_cast<int>(share * kLevels), 0, kLevels - 1);
}

int Lines::Find(const ViewPoint& point, int style, Ground& ground) const {
  ground = Ground::kNothing;
  if (_page.surface != nullptr) {
    int below = style;
    const Surface::Sight sight = _page.surface->Look(_page.surfacePlace(point), below);
    if (sight == Surface::Sight::kBehind) return -1;
    if (sight != Surface::Sight::kBeside) ground = Ground::kTriangles;
    if (sight == Surface::Sight::kOn && below == style) ground = Ground::kSameStyle;
  }
  return GetLevel(point.depth);
}

/// Cuts a curve where its level changes and where it goes behind the surface.
template <typename Function>
void Lines::ForEachChunk(const std::vector<ViewPoint>& points, int style, const Function& use) {
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
                  _page.surface != nullptr ? static_cast<int>(std::min(length / 2.0, 2000.0)) : 0});
    bool isStart = true;
    for (int step = 0; step < steps; ++step) {
      const auto at = [&](double position) {
        const double share = position / steps;
        return ViewPoint{std::lerp(p.x, q.x, share), std::lerp(p.y, q.y, share),
                         std::lerp(p.depth, q.depth, share)};
      };
      const ViewPoint middle = at(step + 0.5);
      Ground ground = Ground::kNothing;
      const int level = Find(middle, style, ground);
      if (level != chunk.level || ground != chunk.ground) flush(false);
      chunk.level = level;
      chunk.ground = ground;
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
void Lines::VisitCells(const Chunk& chunk, const Function& visit) {
  std::size_t last = _cover.size();
  for (std::size_t i = 0; i + 1 < chunk.points.size(); ++i) {
    const ViewPoint& p = chunk.points[i];
    const ViewPoint& q = chunk.points[i + 1];
    const double length = std::hypot(q.x - p.x, q.y - p.y);
    const int steps = 1 + static_cast<int>(std::min(length / _cellSize, 2000.0));
    for (int step = 0; step < steps; ++step) {
      const double share = (step + 0.5) / steps;
      const double x = std::lerp(p.x, q.x, share) / _cellSize;
      const double y = std::lerp(p.y, q.y, share) / _cellSize;
      if (!(x >= 0.0 && y >= 0.0 && x < _gridWidth && y < _gridHeight)) continue;
      const std::size_t cell = static_cast<std::size_t>(y) * static_cast<std::size_t>(_gridWidth) +
                               static_cast<std::size_t>(x);
      if (cell == last) continue;
      last = cell;
      visit(_cover[cell]);
    }
  }
}

/// Whether the chunk is in front in much of its way, where no other one has been drawn.
bool Lines::Claim(const Chunk& chunk) {
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

/// The halo leaves the ends of a curve free: other curves meet it there.
void Lines::PutHalo(const Chunk& chunk, bool isClosed, double curveSize) {
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
  if (_halo.size() < 2) return;
  std::string& text = _halos[chunk.level];
  const std::size_t before = text.size();
  putLine(_halo, text);
  _bytes += text.size() - before;
}

}  // namespace kova::translate::preview
