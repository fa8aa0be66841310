#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Base of the objects that are told apart by what they are, not by what they hold: exceptions
/// above all, which are caught as their base and as copies of what was raised.
class KOVABASE_API Gk_Marker {
 public:
  Gk_Marker() = default;
  Gk_Marker(const Gk_Marker&) = default;
  Gk_Marker& operator=(const Gk_Marker&) = default;
  virtual ~Gk_Marker();

  /// True when both objects are of the same most derived class. A copy therefore equals its
  /// original, and an object of a derived class never equals one of its base.
  bool operator==(const Gk_Marker& other) const noexcept;
  bool operator!=(const Gk_Marker& other) const noexcept { return !(*this == other); }
};
