#pragma once

#include "kovabase/foundation/KOVAExport.h"

class KOVAStreamFormatter;

/// The linear map x -> scale * x + offset, which carries one parameter range onto another.
///
/// A map is plain when |scale| is 1 and the offset 0, both within `Gk_Def::FuzzReal`. A plain map
/// takes a short cut wherever it is applied: it gives x, or -x when its scale is negative, exactly,
/// whatever its scale and offset still differ from 1 and 0. They are stored as they were given.
class KOVABASE_API Gk_LinMap {
 public:
  /// The identity.
  Gk_LinMap() = default;
  Gk_LinMap(double scale, double offset);

  double getScale() const { return _scale; }
  double getOffset() const { return _offset; }

  bool isPlain() const { return _isPlain; }
  /// True when the scale is negative: the map turns the direction around.
  bool isReversed() const { return _isReversed; }
  /// Plain and not reversed.
  bool isIdentity() const { return _isPlain && !_isReversed; }

  /// Exact, of scale and offset.
  bool operator==(const Gk_LinMap& other) const {
    return _scale == other._scale && _offset == other._offset;
  }

  double operator()(double x) const {
    if (_isPlain) return _isReversed ? -x : x;
    return _scale * x + _offset;
  }

  /// The x that this map takes to `y`; 0 when the scale is 0 within `Gk_Def::FuzzReal`, whatever
  /// `y` is.
  double invert(double y) const;

  /// Scale 1 / scale, offset -offset / scale: not finite when the scale is 0.
  Gk_LinMap inverse() const;

  /// Makes this the map that applies both one after the other: `other` last when `otherAfter` is
  /// true, else `other` first. An identity in the sense of `isIdentity` changes nothing. `other`
  /// may be this map.
  void compose(const Gk_LinMap& other, bool otherAfter);

 private:
  double _scale = 1.0;
  double _offset = 0.0;
  bool _isPlain = true;
  bool _isReversed = false;
};

/// Writes "scale 2, offset 10", no line end.
KOVABASE_API KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const Gk_LinMap& map);
