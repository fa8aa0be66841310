#include "kovabase/geometry/Gk_LinMap.h"

#include "kovabase/geometry/Gk_Def.h"
#include "kovabase/geometry/Gk_Func.h"
#include "kovabase/io/KOVAStreamFormatter.h"

#include <cmath>

Gk_LinMap::Gk_LinMap(double scale, double offset)
    : _scale(scale),
      _offset(offset),
      _isPlain(Gk_Func::equal(std::fabs(scale), 1.0, Gk_Def::FuzzReal) &&
               Gk_Func::equal(offset, 0.0, Gk_Def::FuzzReal)),
      _isReversed(scale < 0.0) {}

double Gk_LinMap::invert(double y) const {
  if (Gk_Func::equal(_scale, 0.0, Gk_Def::FuzzReal)) return 0.0;
  if (_isPlain) return _isReversed ? -y : y;
  return (y - _offset) / _scale;
}

Gk_LinMap Gk_LinMap::inverse() const { return Gk_LinMap(1.0 / _scale, -_offset / _scale); }

void Gk_LinMap::compose(const Gk_LinMap& other, bool otherAfter) {
  if (other.isIdentity()) return;
  const double offset = otherAfter ? other(_offset) : (*this)(other._offset);
  *this = Gk_LinMap(other._scale * _scale, offset);
}

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const Gk_LinMap& map) {
  return formatter << "scale " << map.getScale() << ", offset " << map.getOffset();
}
