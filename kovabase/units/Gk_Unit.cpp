#include "kovabase/units/Gk_Unit.h"

bool Gk_Unit::operator==(const Gk_Unit& other) const {
  return _isSet == other._isSet && _factor == other._factor && _name == other._name;
}

double Gk_Unit::mapTo(const Gk_Unit& other) const {
  const bool isKnown = _isSet && other._isSet && _factor != 0.0 && other._factor != 0.0;
  return isKnown ? _factor / other._factor : 1.0;
}
