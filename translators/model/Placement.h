#pragma once

#include "kovabase/geometry/KOVAMorph3D.h"
#include "translators/model/Model.h"

namespace kova::translators {

/// A placement as three rows of four numbers, for moving many points.
class Placement {
 public:
  explicit Placement(const KOVAMorph3D& morph);

  Point operator()(const Point& p) const {
    return {_rows[0][0] * p.x + _rows[0][1] * p.y + _rows[0][2] * p.z + _rows[0][3],
            _rows[1][0] * p.x + _rows[1][1] * p.y + _rows[1][2] * p.z + _rows[1][3],
            _rows[2][0] * p.x + _rows[2][1] * p.y + _rows[2][2] * p.z + _rows[2][3]};
  }

  /// Points stay exactly what they are.
  bool IsIdentity() const { return _isIdentity; }
  /// Triangles must turn the order of their corners to show the same side.
  bool IsMirror() const { return _isMirror; }
  /// What lengths are multiplied by. The cube root of the determinant, so that it is exact for the
  /// rotations and uniform scales of which placements are made.
  double GetLengthFactor() const { return _lengthFactor; }

 private:
  double _rows[3][4];
  double _lengthFactor;
  bool _isIdentity;
  bool _isMirror;
};

}  // namespace kova::translators
