#pragma once

#include "apps/kova-translate/preview/Styles.h"
#include "apps/kova-translate/preview/Surface.h"
#include "apps/kova-translate/preview/View.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kova::translate::preview {

/// The lines of curves on the page: cut into pieces by depth, so that near ones are strong and hide
/// far ones by a halo, and without what lies behind the surface.
class Lines {
 public:
  struct Page {
    double width;
    double height;
    /// Of all curves.
    Range depths;
    /// Hides what lies behind it; may be null.
    const Surface* surface;
    SurfacePlace surfacePlace;
  };

  /// @param coarseness  0 draws everything, with halos and shadows. From 1 on every curve is to be
  ///   looked at before the first one is added, and only what is in front of its neighbourhood is
  ///   drawn; the neighbourhoods grow with the number.
  /// @param mostBytes  of path data.
  Lines(const Page& page, int coarseness, std::size_t mostBytes);

  /// The points of a curve, at least two.
  void Look(const std::vector<ViewPoint>& points, int style);
  void Add(const std::vector<ViewPoint>& points, int style);
  void AddShadow(const std::vector<ViewPoint>& points);

  /// Whether there was no room for all lines: a coarser drawing has.
  bool IsFull() const { return _bytes > _mostBytes; }

  /// Adds SVG elements in tenths of a unit.
  /// @param area  that the lines spread over, in square units.
  void Write(const Styles& styles, double area, std::string& svg) const;
  /// Path data in tenths of a unit.
  const std::string& GetShadows() const { return _shadows; }

  static constexpr double kGridPerUnit = 10.0;

 private:
  /// What a line is seen against. On triangles of its own style it is an edge between them.
  enum class Ground { kNothing, kTriangles, kSameStyle };

  /// A piece of a curve at one level of depth.
  struct Chunk {
    /// -1 when nobody sees it.
    int level = -1;
    Ground ground = Ground::kNothing;
    std::vector<ViewPoint> points;
    /// It begins at the curve's beginning, or ends at its end.
    bool isFirst = false;
    bool isLast = false;
  };

  bool IsFine() const { return _cover.empty(); }
  int GetLevel(double depth) const;
  /// @return the level, -1 when nobody sees the point.
  int Find(const ViewPoint& point, int style, Ground& ground) const;
  template <typename Function>
  void ForEachChunk(const std::vector<ViewPoint>& points, int style, const Function& use);
  template <typename Function>
  void VisitCells(const Chunk& chunk, const Function& visit);
  bool Claim(const Chunk& chunk);
  void PutHalo(const Chunk& chunk, bool isClosed, double curveSize);

  const Page _page;
  const std::size_t _mostBytes;
  const double _cellSize;
  const int _gridWidth;
  const int _gridHeight;
  Chunk _chunk;
  std::vector<ViewPoint> _halo;
  /// One more than the level of what is in front in a cell, 0 for nothing, or that it is drawn.
  /// Empty in a fine drawing.
  std::vector<std::uint8_t> _cover;
  /// By level and style; with the style -1 the edges between triangles.
  std::map<std::pair<int, int>, std::string> _paths;
  std::map<int, std::string> _halos;
  std::string _shadows;
  std::size_t _bytes = 0;
  double _length = 0.0;
};

}  // namespace kova::translate::preview
