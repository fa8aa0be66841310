#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/Gk_ROString.h"

/// A unit of length by name and by how many millimetres it has. A value that owns its name; holds
/// no pointer into itself.
class KOVABASE_API Gk_Unit {
 public:
  /// Unset: no name, factor 0.
  Gk_Unit() = default;
  /// @param name  zero-terminated, copied; null is empty.
  /// @param factor  millimetres in one unit; kept as it is given.
  Gk_Unit(const char* name, double factor) : _name(name), _factor(factor), _isSet(true) {}

  /// Whether it was built with a name and a factor.
  bool IsSet() const { return _isSet; }
  Gk_ROString getName() const { return _name; }
  /// Millimetres in one unit.
  double getFactor() const { return _factor; }

  /// Exact, of name, factor and being set.
  bool operator==(const Gk_Unit& other) const;

  /// What a value in this unit is multiplied by to be in the other; 1 when one of the two is unset
  /// or has the factor 0.
  double mapTo(const Gk_Unit& other) const;

 private:
  Gk_ROString _name;
  double _factor = 0.0;
  bool _isSet = false;
};
