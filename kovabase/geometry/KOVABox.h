#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAMorph2D.h"
#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/geometry/KOVAPoint2D.h"
#include "kovabase/geometry/KOVAPoint3D.h"

#include <cstddef>
#include <limits>
#include <type_traits>

class KOVAStreamFormatter;

/// A bounding box with sides along the axes: in the plane (`KOVABox2D`) or in space (`KOVABox3D`).
/// It is closed, so that one point makes a box of size 0, and empty until it is given a point.
///
/// Coordinates are in the caller's length unit and may be infinite. A coordinate that is NaN bounds
/// nothing: it is passed over, and the other coordinates of its point count. An axis that was given
/// NaNs alone leaves the box empty. No end is ever -0, so that the order of the points is not to be
/// seen in the result.
///
/// A plain value: distinct boxes may be used on distinct threads, and many threads may read one.
template <int kDimension>
class KOVABASE_API KOVABox {
 public:
  static_assert(kDimension == 2 || kDimension == 3);
  using Point = std::conditional_t<kDimension == 2, KOVAPoint2D, KOVAPoint3D>;
  using Morph = std::conditional_t<kDimension == 2, KOVAMorph2D, KOVAMorph3D>;

  /// Corners of a box: 4 or 8.
  static constexpr int kCornerCount = 1 << kDimension;

  /// The empty box.
  KOVABox() { SetToEmpty(); }
  explicit KOVABox(const Point& point) : KOVABox() { Extend(point); }
  /// @param corner, opposite  any two corners that face each other.
  KOVABox(const Point& corner, const Point& opposite) : KOVABox(corner) { Extend(opposite); }

  /// An empty box has no points; its corners mean nothing.
  void SetToEmpty();
  bool IsEmpty() const;

  /// Makes the box hold the point as well. A coordinate that is NaN extends nothing.
  void Extend(const Point& point) {
    const double* const coordinates = point.GetStoredCoordinates();
    for (int axis = 0; axis < kDimension; ++axis) {
      ExtendAxis(axis, coordinates[axis], coordinates[axis]);
    }
  }
  /// By the other box; an empty one extends nothing.
  void Extend(const KOVABox& box);
  /// Extends by `count` points that lie one behind the other, coordinate by coordinate, with the
  /// same result as point by point to the bit. Null or a count of 0 does nothing.
  void Extend(const double* coordinates, std::size_t count);
  /// The same for single precision, of which every value is a double.
  void Extend(const float* coordinates, std::size_t count);

  /// Moves every side outwards by `distance`, a negative one inwards. A box of which a side would
  /// pass the opposite one becomes empty. An empty box and a NaN change nothing.
  void Expand(double distance);

  /// The corners with the least and with the greatest coordinates. Those of an empty box are not to
  /// be relied upon.
  Point GetLow() const { return Point(_low); }
  Point GetHigh() const { return Point(_high); }
  /// @param index  0 to `kCornerCount` - 1: bit i chooses the high end along axis i, and further
  ///   bits mean nothing.
  Point GetCorner(int index) const;
  /// The point in the middle; the origin when the box is empty, NaN along an axis that is unbounded
  /// both ways.
  Point GetCenter() const;
  /// The lengths of the sides; 0 when the box is empty.
  Point GetSize() const;
  /// The length of the diagonal, by a plain sum of squares; 0 when the box is empty.
  double GetDiagonal() const { return GetSize().Length(); }

  /// Inside, on a side, or outside by at most `tolerance` along each axis. An empty box contains no
  /// point, and every box contains the empty one.
  bool Contains(const Point& point, double tolerance = 0.0) const;
  bool Contains(const KOVABox& box, double tolerance = 0.0) const;
  /// Whether the two share a point, or miss each other by at most `tolerance` along each axis. An
  /// empty box meets nothing.
  bool Intersects(const KOVABox& box, double tolerance = 0.0) const;

  /// The box of the transformed corners. It contains every transformed point of this box exactly,
  /// without a tolerance: rounding keeps the order of values, so that no point between the corners
  /// comes out beyond them. An axis on which a corner has no value (infinity times 0) is unbounded.
  KOVABox GetTransformed(const Morph& morph) const;

  /// Exact; all empty boxes are equal.
  bool operator==(const KOVABox& other) const;

 private:
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();
  static constexpr std::size_t kAxes = kDimension;

  // A NaN compares as false, so that the end stays. Adding 0 makes -0 to +0 and leaves all else.
  void ExtendAxis(int axis, double low, double high) {
    low += 0.0;
    high += 0.0;
    _low[axis] = low < _low[axis] ? low : _low[axis];
    _high[axis] = high > _high[axis] ? high : _high[axis];
  }

  // Axis by axis. An axis without a value holds low = +infinity and high = -infinity, so that any
  // value replaces both.
  double _low[kAxes];
  double _high[kAxes];
};

extern template class KOVABox<2>;
extern template class KOVABox<3>;

using KOVABox2D = KOVABox<2>;
using KOVABox3D = KOVABox<3>;

/// Writes "(0, 0, 0) to (1, 2, 3)" or "empty", no line end.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVABox2D& box);
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVABox3D& box);
