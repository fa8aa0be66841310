#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kova::translate::preview {

/// A point as the viewer sees it: x to the right, y down, depth towards the viewer, all to the same
/// scale.
struct ViewPoint {
  double x;
  double y;
  double depth;
};

/// What is seen of triangles, first as an image of cells with depths, then as outlines of evenly
/// shaded areas. So the drawing depends on what there is to see and not on the number of triangles,
/// and what hides what is right also where triangles cross.
class Surface {
 public:
  /// How brightly an area is lit, from 0 to `kShades` - 1.
  static constexpr int kShades = 64;

  /// Areas and lines as SVG path data, in half cells. Every text is a sequence of subpaths.
  struct Drawing {
    /// By style and shade; to be filled by the even-odd rule. Neighbours share their border.
    std::map<std::pair<int, int>, std::string> areas;
    /// Where the surface ends.
    std::string outlines;
    /// Where a near piece hides a far one.
    std::string steps;
    /// Where the surface has an edge or changes its style.
    std::string edges;
  };

  /// @param width,height  in cells, each at least 1.
  Surface(int width, int height);

  /// Both sides of the triangle are seen. Corners are in cells; cell (0, 0) reaches from 0 to 1.
  /// @param style  from 0 to 65534.
  void AddTriangle(const ViewPoint (&corners)[3], int style);

  bool IsEmpty() const { return _triangles == 0; }

  /// How a point lies to what is seen of the triangles there.
  enum class Sight { kBeside, kBefore, kOn, kBehind };

  /// @param style  of the point; receives that of the triangle that the point is on, if any.
  Sight Look(const ViewPoint& point, int& style) const;

  /// The drawing in about `mostBytes` at most, more coarsely when needed.
  Drawing Draw(std::size_t mostBytes) const;

 private:
  class Tracer;

  struct Cell {
    float depth;
    /// Of the normal, which points to the viewer; in 32767ths.
    std::int16_t normalX;
    std::int16_t normalY;
  };

  void Put(int x, int y, float depth, std::int16_t normalX, std::int16_t normalY,
           std::uint16_t style);
  std::size_t GetIndex(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(_width) +
           static_cast<std::size_t>(x);
  }

  int _width;
  int _height;
  std::vector<Cell> _cells;
  /// `kNoStyle` where there is nothing.
  std::vector<std::uint16_t> _styles;
  std::uint64_t _triangles = 0;
  double _area = 0.0;
};

/// Path data in whole numbers, as short as it can be: the first point, then steps.
class PathWriter {
 public:
  explicit PathWriter(std::string& text) : _text(text) {}

  void MoveTo(int x, int y);
  void LineTo(int x, int y);
  void Close();

 private:
  void PutNumber(int value, bool needsGap);

  std::string& _text;
  int _x = 0;
  int _y = 0;
  bool _isInLine = false;
};

struct GridPoint {
  int x;
  int y;
};

/// Leaves out points so that no point of the line is farther than `tolerance` from what stays. The
/// ends stay. Takes time in proportion to the points.
std::vector<GridPoint> simplify(const std::vector<GridPoint>& line, double tolerance);

}  // namespace kova::translate::preview
