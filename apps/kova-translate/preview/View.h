#pragma once

#include "apps/kova-translate/preview/Surface.h"
#include "translators/model/ModelTools.h"

#include <algorithm>

namespace kova::translate::preview {

/// The extent along one axis; it begins with nothing.
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

/// From the coordinates of the model to the page: without perspective, seen from 55 degrees to the
/// right of the front and 28 degrees above the ground, z up. Any finite coordinates do.
class View {
 public:
  explicit View(const translators::Summary& summary);

  /// To the page; before `Fit` the same to another scale and about the origin.
  ViewPoint operator()(const translators::Point& point) const {
    return Turn({point.x * _factor - _centre.x, point.y * _factor - _centre.y,
                 point.z * _factor - _centre.z});
  }

  /// The shadow of the point on the ground, on which the model stands.
  ViewPoint GetShadow(const translators::Point& point) const;

  /// Where a unit vector along an axis goes on the page.
  static ViewPoint GetAxis(int axis) { return {kRows[0][axis], -kRows[1][axis], kRows[2][axis]}; }

  /// Enlarges what was seen before and moves it by (x, y).
  void Fit(double scale, double x, double y) {
    _scale = scale;
    _x = x;
    _y = y;
  }

  /// Units of the page for one of the model.
  double GetScale() const { return _scale * _factor; }

 private:
  // Right, up and towards the viewer.
  static constexpr double kRows[3][3] = {
      {0.819152, 0.573576, 0.0}, {-0.269278, 0.384567, 0.882948}, {0.506436, -0.723264, 0.469472}};

  ViewPoint Turn(const translators::Point& p) const {
    const auto along = [&p](const double(&row)[3]) {
      return row[0] * p.x + row[1] * p.y + row[2] * p.z;
    };
    return {_x + _scale * along(kRows[0]), _y - _scale * along(kRows[1]), _scale * along(kRows[2])};
  }

  // A power of two that brings the coordinates near 1, so that nothing leaves the range of numbers.
  double _factor = 1.0;
  translators::Point _centre{0.0, 0.0, 0.0};
  double _ground = 0.0;
  double _scale = 1.0;
  double _x = 0.0;
  double _y = 0.0;
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

}  // namespace kova::translate::preview
