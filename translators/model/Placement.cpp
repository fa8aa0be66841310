#include "translators/model/Placement.h"

#include <cmath>

namespace kova::translators {

Placement::Placement(const KOVAMorph3D& morph) : _isIdentity(morph.isIdentity()) {
  double origin[3] = {0.0, 0.0, 0.0};
  Transform(origin[0], origin[1], origin[2], morph);
  for (int axis = 0; axis < 3; ++axis) {
    double unit[3] = {0.0, 0.0, 0.0};
    unit[axis] = 1.0;
    Transform(unit[0], unit[1], unit[2], morph, true);
    for (int row = 0; row < 3; ++row) _rows[row][axis] = unit[row];
  }
  for (int row = 0; row < 3; ++row) _rows[row][3] = origin[row];
  const auto& m = _rows;
  const double determinant = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                             m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                             m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  // Also that of a negative scale, which the morph's own answer leaves out.
  _isMirror = determinant < 0.0;
  _lengthFactor = _isIdentity ? 1.0 : std::cbrt(std::fabs(determinant));
}

}  // namespace kova::translators
