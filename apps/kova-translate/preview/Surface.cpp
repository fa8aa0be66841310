#include "apps/kova-translate/preview/Surface.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>
#include <tuple>
#include <utility>

namespace kova::translate::preview {

namespace {

constexpr std::uint16_t kNoStyle = 0xFFFF;
constexpr double kNormalUnit = 32767.0;
/// Faces that are seen nearly from their edge are as steep as this; where the normal changes, the
/// second. There a round surface turns away from the eye, and what lies behind it is not part of
/// it.
constexpr float kMostSlope = 50.0F;
constexpr float kMostRoundSlope = 6.0F;

struct Normal {
  float x;
  float y;
  float z;
};

float dot(const Normal& a, const Normal& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

}  // namespace

void PathWriter::MoveTo(int x, int y) {
  _text += 'M';
  PutNumber(x, false);
  PutNumber(y, true);
  _x = x;
  _y = y;
  _isInLine = false;
}

void PathWriter::LineTo(int x, int y) {
  if (!_isInLine) _text += 'l';
  PutNumber(x - _x, _isInLine);
  PutNumber(y - _y, true);
  _x = x;
  _y = y;
  _isInLine = true;
}

void PathWriter::Close() { _text += 'z'; }

void PathWriter::PutNumber(int value, bool needsGap) {
  if (needsGap && value >= 0) _text += ' ';
  char digits[16];
  _text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

std::vector<GridPoint> simplify(const std::vector<GridPoint>& line, double tolerance) {
  if (line.size() < 3) return line;
  std::vector<GridPoint> kept{line.front()};
  GridPoint anchor = line.front();
  // The directions, relative to the first one, in which the line may go on.
  bool hasDirection = false;
  double first = 0.0;
  double low = 0.0;
  double high = 0.0;
  double farthest = 0.0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    for (;;) {
      const double dx = line[i].x - anchor.x;
      const double dy = line[i].y - anchor.y;
      const double distance = std::sqrt(dx * dx + dy * dy);
      if (!hasDirection && distance <= tolerance) break;
      const double angle = distance > 0.0 ? std::atan2(dy, dx) : 0.0;
      if (!hasDirection) {
        hasDirection = true;
        first = angle;
        low = -std::numbers::pi;
        high = std::numbers::pi;
      }
      const double turn = std::remainder(angle - first, 2.0 * std::numbers::pi);
      const bool isForward = distance > tolerance && distance >= farthest - tolerance;
      if (isForward && turn >= low && turn <= high) {
        const double room = std::asin(tolerance / distance);
        low = std::max(low, turn - room);
        high = std::min(high, turn + room);
        farthest = std::max(farthest, distance);
        break;
      }
      anchor = line[i - 1];
      kept.push_back(anchor);
      hasDirection = false;
      farthest = 0.0;
    }
  }
  kept.push_back(line.back());
  return kept;
}

Surface::Surface(int width, int height)
    : _width(width),
      _height(height),
      _cells(GetIndex(0, height)),
      _styles(GetIndex(0, height), kNoStyle) {}

void Surface::AddTriangle(const ViewPoint (&corners)[3], int style) {
  const auto& [a, b, c] = corners;
  const double ux = b.x - a.x;
  const double uy = b.y - a.y;
  const double uz = b.depth - a.depth;
  const double vx = c.x - a.x;
  const double vy = c.y - a.y;
  const double vz = c.depth - a.depth;
  double nx = uy * vz - uz * vy;
  double ny = uz * vx - ux * vz;
  double nz = ux * vy - uy * vx;
  const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
  if (!(length > 0.0)) return;
  if (nz < 0.0) {
    nx = -nx;
    ny = -ny;
    nz = -nz;
  }
  _area += nz / 2.0;
  ++_triangles;
  const auto normalX = static_cast<std::int16_t>(std::lround(nx / length * kNormalUnit));
  const auto normalY = static_cast<std::int16_t>(std::lround(ny / length * kNormalUnit));
  const auto narrowStyle = static_cast<std::uint16_t>(style);
  const double nearest = std::max({a.depth, b.depth, c.depth});
  const double farthest = std::min({a.depth, b.depth, c.depth});

  const int top = std::max(0, static_cast<int>(std::ceil(std::min({a.y, b.y, c.y}) - 0.5)));
  const int bottom =
      std::min(_height - 1, static_cast<int>(std::floor(std::max({a.y, b.y, c.y}) - 0.5)));
  bool isPut = false;
  for (int y = top; y <= bottom; ++y) {
    const double middle = y + 0.5;
    double left = 1e300;
    double right = -1e300;
    for (int i = 0; i < 3; ++i) {
      const ViewPoint& p = corners[i];
      const ViewPoint& q = corners[i == 2 ? 0 : i + 1];
      if ((p.y <= middle) == (q.y <= middle)) continue;
      const double x = p.x + (middle - p.y) * (q.x - p.x) / (q.y - p.y);
      left = std::min(left, x);
      right = std::max(right, x);
    }
    if (left > right) continue;
    const int begin = std::max(0, static_cast<int>(std::ceil(left - 0.5)));
    const int end = std::min(_width - 1, static_cast<int>(std::floor(right - 0.5)));
    for (int x = begin; x <= end; ++x) {
      const double depth =
          nz > 0.0 ? a.depth - ((x + 0.5 - a.x) * nx + (middle - a.y) * ny) / nz : nearest;
      Put(x, y, static_cast<float>(std::clamp(depth, farthest, nearest)), normalX, normalY,
          narrowStyle);
      isPut = true;
    }
  }
  if (isPut) return;
  // What is smaller than a cell shows as one, so that thin things and fine meshes have no holes.
  const double x = std::floor((a.x + b.x + c.x) / 3.0);
  const double y = std::floor((a.y + b.y + c.y) / 3.0);
  if (!(x >= 0.0 && x < _width && y >= 0.0 && y < _height)) return;
  Put(static_cast<int>(x), static_cast<int>(y),
      static_cast<float>((a.depth + b.depth + c.depth) / 3.0), normalX, normalY, narrowStyle);
}

void Surface::Put(int x, int y, float depth, std::int16_t normalX, std::int16_t normalY,
                  std::uint16_t style) {
  const std::size_t index = GetIndex(x, y);
  if (_styles[index] != kNoStyle && _cells[index].depth >= depth) return;
  _cells[index] = {depth, normalX, normalY};
  _styles[index] = style;
}

Surface::Sight Surface::Look(const ViewPoint& point, int& style) const {
  constexpr double kClose = 2.5;
  // Where a surface falls away from the eye, its own edges may be this far before it.
  constexpr double kOwnClose = 12.0;
  const int own = style;
  // The cells about the point: lines along an edge of the surface are not to come and go.
  const int x = static_cast<int>(std::clamp(point.x, 0.0, _width - 1.0));
  const int y = static_cast<int>(std::clamp(point.y, 0.0, _height - 1.0));
  bool isCovered = false;
  bool isSeen = false;
  for (int j = std::max(0, y - 1); j <= std::min(_height - 1, y + 1); ++j) {
    for (int i = std::max(0, x - 1); i <= std::min(_width - 1, x + 1); ++i) {
      const std::size_t index = GetIndex(i, j);
      if (_styles[index] == kNoStyle) {
        isSeen = true;
        continue;
      }
      isCovered = true;
      const double distance = point.depth - _cells[index].depth;
      if (distance >= -kClose && distance <= (_styles[index] == own ? kOwnClose : kClose)) {
        style = _styles[index];
        return Sight::kOn;
      }
      if (distance > 0.0) isSeen = true;
    }
  }
  if (!isCovered) return Sight::kBeside;
  return isSeen ? Sight::kBefore : Sight::kBehind;
}

/// Makes the drawing of an image: finds the areas, then the lines between them, each of which is
/// simplified once for both of its sides.
class Surface::Tracer {
 public:
  struct Settings {
    int shades;
    int leastArea;
    double tolerance;
    bool keepsSteps;
  };

  Tracer(const Surface& surface, const Settings& settings)
      : _surface(surface),
        _settings(settings),
        _width(surface._width),
        _height(surface._height),
        _isFine(surface._area < 9.0 * static_cast<double>(surface._triangles)) {}

  /// @param mostSides  of cells that may lie on borders; with more there is no drawing.
  std::optional<Drawing> Trace(std::size_t mostSides) {
    FindShades();
    FindAreas();
    MergeSmallAreas();
    if (FindBorders() > mostSides) return std::nullopt;
    FollowBorders(kAll, [this](Border& border) {
      border.points = simplify(border.points, _settings.tolerance);
      _borders.push_back(std::move(border));
    });
    PutAreas();
    PutLines();
    return std::move(_drawing);
  }

 private:
  using Area = std::int32_t;
  static constexpr Area kOutside = -1;

  enum Kind : unsigned { kPlain, kEdge, kStep, kOutline };
  static constexpr unsigned kAll = 4;

  /// A piece of border with an area to its left and one to its right.
  struct Border {
    std::vector<GridPoint> points;
    Area left;
    Area right;
    bool isClosed;
  };

  /// A border as a side of its left area.
  struct Side {
    Area area;
    std::int64_t start;
    std::uint32_t border;
    bool isReversed;
  };

  Normal GetNormal(std::size_t cell) const {
    const double x = _surface._cells[cell].normalX / kNormalUnit;
    const double y = _surface._cells[cell].normalY / kNormalUnit;
    return {static_cast<float>(x), static_cast<float>(y),
            static_cast<float>(std::sqrt(std::max(0.0, 1.0 - x * x - y * y)))};
  }

  /// How much nearer the surface becomes from one cell to the next.
  static float GetSlope(float across, const Normal& normal, float most) {
    return std::fabs(across) >= most * normal.z ? std::copysign(most, -across) : -across / normal.z;
  }

  /// Whether two neighbours are not parts of one surface: the difference of their depths is none
  /// that one's slope, or the other's, or some of each would give.
  bool IsStep(std::size_t a, std::size_t b) const {
    const Normal na = GetNormal(a);
    const Normal nb = GetNormal(b);
    const bool isBeside = b - a == 1;
    const float most = dot(na, nb) > 0.999F ? kMostSlope : kMostRoundSlope;
    const auto [low, high] = std::minmax(
        {GetSlope(isBeside ? na.x : na.y, na, most), GetSlope(isBeside ? nb.x : nb.y, nb, most)});
    const float steepest = std::max(std::fabs(low), std::fabs(high));
    const float room = _isFine ? 3.0F + 0.5F * steepest : 1.5F + 0.1F * steepest;
    const float difference = _surface._cells[b].depth - _surface._cells[a].depth;
    return difference < low - room || difference > high + room;
  }

  bool IsSurface(std::size_t cell) const { return _surface._styles[cell] != kNoStyle; }

  void FindShades() {
    _shades.assign(_surface._cells.size(), 0);
    for (int y = 0; y < _height; ++y) {
      for (int x = 0; x < _width; ++x) {
        const std::size_t cell = _surface.GetIndex(x, y);
        if (!IsSurface(cell)) continue;
        const Normal normal = _isFine ? GetSmoothNormal(x, y) : GetNormal(cell);
        // The light comes from the upper left, from behind the viewer. Half of it goes around, so
        // that faces in the shade differ too.
        constexpr Normal kLight{-0.424F, -0.707F, 0.566F};
        const float light = 0.5F + 0.5F * dot(normal, kLight);
        const float share = light * std::sqrt(light);
        const int last = _settings.shades - 1;
        const int shade = static_cast<int>(std::lround(share * static_cast<float>(last)));
        _shades[cell] = static_cast<std::uint8_t>(shade * (kShades - 1) / last);
      }
    }
  }

  Normal GetSmoothNormal(int x, int y) const {
    const std::size_t cell = _surface.GetIndex(x, y);
    const Normal normal = GetNormal(cell);
    Normal sum{0.0F, 0.0F, 0.0F};
    for (int j = std::max(0, y - 1); j <= std::min(_height - 1, y + 1); ++j) {
      for (int i = std::max(0, x - 1); i <= std::min(_width - 1, x + 1); ++i) {
        const std::size_t other = _surface.GetIndex(i, j);
        if (_surface._styles[other] != _surface._styles[cell]) continue;
        const Normal n = GetNormal(other);
        if (dot(n, normal) < 0.8F) continue;
        sum = {sum.x + n.x, sum.y + n.y, sum.z + n.z};
      }
    }
    const float length = std::sqrt(dot(sum, sum));
    return {sum.x / length, sum.y / length, sum.z / length};
  }

  Area FindRoot(Area area) {
    while (_areas[static_cast<std::size_t>(area)] != area) {
      Area& parent = _areas[static_cast<std::size_t>(area)];
      parent = _areas[static_cast<std::size_t>(parent)];
      area = parent;
    }
    return area;
  }

  /// An area is called by its first cell.
  void FindAreas() {
    _areas.assign(_surface._cells.size(), kOutside);
    const auto join = [this](std::size_t a, std::size_t b) {
      if (!IsSurface(a) || _surface._styles[a] != _surface._styles[b] || _shades[a] != _shades[b] ||
          IsStep(a, b)) {
        return;
      }
      const Area rootA = FindRoot(static_cast<Area>(a));
      const Area rootB = FindRoot(static_cast<Area>(b));
      _areas[static_cast<std::size_t>(std::max(rootA, rootB))] = std::min(rootA, rootB);
    };
    for (int y = 0; y < _height; ++y) {
      for (int x = 0; x < _width; ++x) {
        const std::size_t cell = _surface.GetIndex(x, y);
        if (!IsSurface(cell)) continue;
        _areas[cell] = static_cast<Area>(cell);
        if (x > 0) join(cell - 1, cell);
        if (y > 0) join(cell - static_cast<std::size_t>(_width), cell);
      }
    }
    for (std::size_t cell = 0; cell < _areas.size(); ++cell) {
      if (_areas[cell] != kOutside) _areas[cell] = FindRoot(static_cast<Area>(cell));
    }
  }

  /// Gives every small area to a neighbour, mostly that with which it shares the longest border:
  /// the neighbours vote cell by cell, and one that differs from the favourite takes a vote away.
  void MergeSmallAreas() {
    std::vector<std::int32_t> sizes(_areas.size(), 0);
    for (const Area area : _areas) {
      if (area != kOutside) ++sizes[static_cast<std::size_t>(area)];
    }
    std::vector<Area> favourites(_areas.size(), kOutside);
    std::vector<std::int16_t> votes(_areas.size(), 0);
    const auto vote = [&](Area area, Area neighbour) {
      const auto index = static_cast<std::size_t>(area);
      if (sizes[index] >= _settings.leastArea) return;
      if (favourites[index] == neighbour) {
        if (votes[index] < 0x7FFF) ++votes[index];
      } else if (votes[index] == 0) {
        favourites[index] = neighbour;
        votes[index] = 1;
      } else {
        --votes[index];
      }
    };
    const auto touch = [&](std::size_t a, std::size_t b) {
      if (_areas[a] == _areas[b] || _areas[a] == kOutside || _areas[b] == kOutside) return;
      // What hides another thing does not become a part of it, as long as there is room for both.
      if (_settings.keepsSteps && IsStep(a, b)) return;
      vote(_areas[a], _areas[b]);
      vote(_areas[b], _areas[a]);
    };
    for (int y = 0; y < _height; ++y) {
      for (int x = 0; x < _width; ++x) {
        const std::size_t cell = _surface.GetIndex(x, y);
        if (x > 0) touch(cell - 1, cell);
        if (y > 0) touch(cell - static_cast<std::size_t>(_width), cell);
      }
    }
    for (std::size_t small = 0; small < favourites.size(); ++small) {
      if (favourites[small] == kOutside) continue;
      Area lesser = FindRoot(static_cast<Area>(small));
      Area greater = FindRoot(favourites[small]);
      if (lesser == greater) continue;
      // The larger one gives its look to both.
      if (sizes[static_cast<std::size_t>(lesser)] > sizes[static_cast<std::size_t>(greater)]) {
        std::swap(lesser, greater);
      }
      _areas[static_cast<std::size_t>(lesser)] = greater;
      sizes[static_cast<std::size_t>(greater)] += sizes[static_cast<std::size_t>(lesser)];
    }
    for (std::size_t cell = 0; cell < _areas.size(); ++cell) {
      if (_areas[cell] != kOutside) _areas[cell] = FindRoot(static_cast<Area>(cell));
    }
  }

  Area GetArea(int x, int y) const {
    return x >= 0 && y >= 0 && x < _width && y < _height ? _areas[_surface.GetIndex(x, y)]
                                                         : kOutside;
  }

  std::size_t GetCorner(int x, int y) const {
    return static_cast<std::size_t>(y) * (static_cast<std::size_t>(_width) + 1) +
           static_cast<std::size_t>(x);
  }

  // The borders that leave a corner to the right and down, which of them are done, and from the
  // shifts on their kinds.
  enum Flag : std::uint8_t { kRight = 1, kDown = 2, kRightDone = 4, kDownDone = 8 };
  static constexpr int kRightKindShift = 4;
  static constexpr int kDownKindShift = 6;

  /// @return how many sides of cells are borders.
  std::size_t FindBorders() {
    std::size_t count = 0;
    _corners.assign(GetCorner(0, _height + 1), 0);
    for (int y = 0; y <= _height; ++y) {
      for (int x = 0; x <= _width; ++x) {
        const Area here = GetArea(x, y);
        const Area above = GetArea(x, y - 1);
        const Area left = GetArea(x - 1, y);
        unsigned flags = 0;
        if (x < _width && here != above) {
          const bool isOutline = here == kOutside || above == kOutside;
          const Kind kind =
              isOutline ? kOutline : GetKind(_surface.GetIndex(x, y - 1), _surface.GetIndex(x, y));
          flags |= kRight | static_cast<unsigned>(kind) << kRightKindShift;
          ++count;
        }
        if (y < _height && here != left) {
          const bool isOutline = here == kOutside || left == kOutside;
          const Kind kind =
              isOutline ? kOutline : GetKind(_surface.GetIndex(x - 1, y), _surface.GetIndex(x, y));
          flags |= kDown | static_cast<unsigned>(kind) << kDownKindShift;
          ++count;
        }
        _corners[GetCorner(x, y)] = static_cast<std::uint8_t>(flags);
      }
    }
    return count;
  }

  Kind GetKind(std::size_t first, std::size_t second) const {
    if (IsStep(first, second)) return kStep;
    if (_surface._styles[first] != _surface._styles[second]) return kEdge;
    constexpr float kSharp = 0.87F;
    return dot(GetNormal(first), GetNormal(second)) < kSharp ? kEdge : kPlain;
  }

  /// A piece of border by its corner. Directions: 0 right, 1 down, 2 left, 3 up.
  struct Place {
    std::size_t corner;
    bool isRight;
  };
  Place GetPlace(int x, int y, int direction) const {
    return {GetCorner(direction == 2 ? x - 1 : x, direction == 3 ? y - 1 : y), direction % 2 == 0};
  }

  /// Whether there is a border that is being followed now.
  bool HasBorder(int x, int y, int direction) const {
    if ((direction == 2 && x == 0) || (direction == 3 && y == 0)) return false;
    const auto [corner, isRight] = GetPlace(x, y, direction);
    const unsigned flags = _corners[corner];
    if ((flags & (isRight ? kRight : kDown)) == 0) return false;
    return _followed == kAll ||
           (flags >> (isRight ? kRightKindShift : kDownKindShift) & 3U) == _followed;
  }

  bool IsDone(int x, int y, int direction) const {
    const auto [corner, isRight] = GetPlace(x, y, direction);
    return (_corners[corner] & (isRight ? kRightDone : kDownDone)) != 0;
  }

  void SetDone(int x, int y, int direction) {
    const auto [corner, isRight] = GetPlace(x, y, direction);
    _corners[corner] |= isRight ? kRightDone : kDownDone;
  }

  /// Where borders end or more than two meet.
  bool IsNode(int x, int y) const {
    int count = 0;
    for (int direction = 0; direction < 4; ++direction) count += HasBorder(x, y, direction);
    return count != 2 && count != 0;
  }

  /// Follows the borders of one kind, or all, and gives each of them, from node to node or as a
  /// closed line, to `use`.
  template <typename Function>
  void FollowBorders(unsigned kind, const Function& use) {
    _followed = kind;
    for (std::uint8_t& flags : _corners) {
      flags &= static_cast<std::uint8_t>(~(kRightDone | kDownDone));
    }
    for (const bool areNodes : {true, false}) {
      for (int y = 0; y <= _height; ++y) {
        for (int x = 0; x <= _width; ++x) {
          // What is left after all borders between nodes are closed lines; each of them has a
          // corner with a border to the right.
          const std::size_t corner = GetCorner(x, y);
          const std::size_t above = y > 0 ? GetCorner(x, y - 1) : corner;
          const unsigned near = _corners[corner] | (_corners[above] & kDown) |
                                (x > 0 ? _corners[corner - 1] & kRight : 0U);
          if ((near & (kRight | kDown)) == 0) continue;
          if (!areNodes && (_corners[corner] & kRight) == 0) continue;
          if (areNodes != IsNode(x, y)) continue;
          for (int direction = 0; direction < (areNodes ? 4 : 1); ++direction) {
            if (!HasBorder(x, y, direction) || IsDone(x, y, direction)) continue;
            Border border = Follow(x, y, direction);
            use(border);
          }
        }
      }
    }
  }

  Border Follow(int x, int y, int direction) {
    constexpr int kStepX[] = {1, 0, -1, 0};
    constexpr int kStepY[] = {0, 1, 0, -1};
    // The cell to the left of where the border goes, and the one to its right.
    constexpr int kLeftX[] = {0, 0, -1, -1};
    constexpr int kLeftY[] = {-1, 0, 0, -1};
    constexpr int kRightX[] = {0, -1, -1, 0};
    constexpr int kRightY[] = {0, 0, -1, -1};
    Border border;
    border.left = GetArea(x + kLeftX[direction], y + kLeftY[direction]);
    border.right = GetArea(x + kRightX[direction], y + kRightY[direction]);
    border.isClosed = !IsNode(x, y);
    const GridPoint start{x, y};
    if (!border.isClosed) border.points.push_back({2 * x, 2 * y});
    for (;;) {
      SetDone(x, y, direction);
      // Middles of the cells' sides lie closer to the true line than the corners.
      border.points.push_back({2 * x + kStepX[direction], 2 * y + kStepY[direction]});
      x += kStepX[direction];
      y += kStepY[direction];
      if (border.isClosed ? x == start.x && y == start.y : IsNode(x, y)) break;
      for (int turn = 0; turn < 4; ++turn) {
        if (turn != (direction + 2) % 4 && HasBorder(x, y, turn)) {
          direction = turn;
          break;
        }
      }
    }
    border.points.push_back(border.isClosed ? border.points.front() : GridPoint{2 * x, 2 * y});
    return border;
  }

  void PutLines() {
    // Shorter ones are noise.
    constexpr std::size_t kShortest = 12;
    const std::pair<Kind, std::string*> kinds[] = {
        {kEdge, &_drawing.edges}, {kStep, &_drawing.steps}, {kOutline, &_drawing.outlines}};
    for (const auto& [kind, text] : kinds) {
      FollowBorders(kind, [&, path = text](const Border& border) {
        if (border.points.size() < kShortest && !border.isClosed) return;
        PutLine(simplify(border.points, _settings.tolerance), border.isClosed, *path);
      });
    }
  }

  static void PutLine(const std::vector<GridPoint>& line, bool isClosed, std::string& text) {
    PathWriter path(text);
    path.MoveTo(line.front().x, line.front().y);
    const std::size_t count = line.size() - (isClosed ? 1 : 0);
    for (std::size_t i = 1; i < count; ++i) path.LineTo(line[i].x, line[i].y);
    if (isClosed) path.Close();
  }

  static std::int64_t GetKey(const GridPoint& point) {
    return std::int64_t{point.y} << 32 | static_cast<std::uint32_t>(point.x);
  }

  /// Chains the borders around each area to closed lines.
  void PutAreas() {
    std::vector<Side> sides;
    for (std::uint32_t i = 0; i < _borders.size(); ++i) {
      const Border& border = _borders[i];
      if (border.left != kOutside) {
        sides.push_back({border.left, GetKey(border.points.front()), i, false});
      }
      if (border.right != kOutside) {
        sides.push_back({border.right, GetKey(border.points.back()), i, true});
      }
    }
    const auto order = [](const Side& a, const Side& b) {
      return std::tie(a.area, a.start, a.border) < std::tie(b.area, b.start, b.border);
    };
    std::sort(sides.begin(), sides.end(), order);
    std::vector<bool> isDone(sides.size(), false);
    for (std::size_t first = 0; first < sides.size(); ++first) {
      if (isDone[first]) continue;
      const auto cell = static_cast<std::size_t>(sides[first].area);
      PathWriter path(_drawing.areas[{_surface._styles[cell], _shades[cell]}]);
      const std::int64_t start = sides[first].start;
      std::size_t next = first;
      bool isFirst = true;
      for (;;) {
        isDone[next] = true;
        const Side& side = sides[next];
        const Border& border = _borders[side.border];
        const std::size_t count = border.points.size();
        const auto at = [&](std::size_t i) {
          return border.points[side.isReversed ? count - 1 - i : i];
        };
        if (isFirst) path.MoveTo(at(0).x, at(0).y);
        isFirst = false;
        const std::int64_t end = GetKey(at(count - 1));
        for (std::size_t i = 1; i < count - (end == start ? 1 : 0); ++i) {
          path.LineTo(at(i).x, at(i).y);
        }
        if (end == start) break;
        // Where the area meets itself in a corner there are two ways on; either will do.
        auto found = static_cast<std::size_t>(
            std::lower_bound(sides.begin(), sides.end(), Side{side.area, end, 0, false}, order) -
            sides.begin());
        while (found < sides.size() && isDone[found] && sides[found].area == side.area &&
               sides[found].start == end) {
          ++found;
        }
        if (found == sides.size() || sides[found].area != side.area || sides[found].start != end) {
          break;
        }
        next = found;
      }
      path.Close();
    }
  }

  const Surface& _surface;
  const Settings _settings;
  const int _width;
  const int _height;
  /// Triangles are not much larger than cells: their normals are smoothed.
  const bool _isFine;
  std::vector<std::uint8_t> _shades;
  std::vector<Area> _areas;
  std::vector<std::uint8_t> _corners;
  unsigned _followed = kAll;
  std::vector<Border> _borders;
  Drawing _drawing;
};

Surface::Drawing Surface::Draw(std::size_t mostBytes) const {
  constexpr int kAttempts = 6;
  Tracer::Settings settings{kShades, 8, 1.4, true};
  for (int attempt = 1;; ++attempt) {
    // A side of a cell takes about four bytes in the end.
    const std::size_t mostSides = attempt < kAttempts ? mostBytes / 3 : ~std::size_t{0};
    if (std::optional<Drawing> drawing = Tracer(*this, settings).Trace(mostSides)) {
      // So many edges are not edges but the roughness of a surface.
      if (drawing->edges.size() > mostBytes / 8) drawing->edges.clear();
      std::size_t bytes = drawing->outlines.size() + drawing->steps.size() + drawing->edges.size();
      for (const auto& [look, text] : drawing->areas) bytes += text.size();
      if (bytes <= mostBytes || attempt == kAttempts) return *std::move(drawing);
    }
    settings.shades = std::max(8, settings.shades / 2);
    settings.leastArea *= 4;
    settings.tolerance *= 1.4;
    settings.keepsSteps = false;
  }
}

}  // namespace kova::translate::preview
