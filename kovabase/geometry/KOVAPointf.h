#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// A point of tessellated data, in single precision.
class KOVABASE_API KOVAPointf {
 public:
  /// The origin.
  constexpr KOVAPointf() = default;
  constexpr KOVAPointf(float x, float y, float z) : _coordinates{x, y, z} {}
  /// @param coordinates  three floats; null gives the origin.
  explicit KOVAPointf(const float* coordinates) {
    for (int i = 0; coordinates != nullptr && i < 3; ++i) _coordinates[i] = coordinates[i];
  }

  /// Coordinate `index`, counted from 0; 0 when out of range.
  float operator[](int index) const { return index >= 0 && index < 3 ? _coordinates[index] : 0.0F; }
  /// Out of range it is a scratch value of the calling thread that reads 0 after each such call.
  float& operator[](int index) {
    return index >= 0 && index < 3 ? _coordinates[index] : GetScratch();
  }

  /// Exact, coordinate by coordinate.
  bool operator==(const KOVAPointf& point) const {
    return _coordinates[0] == point._coordinates[0] && _coordinates[1] == point._coordinates[1] &&
           _coordinates[2] == point._coordinates[2];
  }

  /// Euclidean distance, by a plain sum of squares.
  float DistanceTo(const KOVAPointf& point) const;
  /// Sum of the absolute differences.
  float DistanceL1To(const KOVAPointf& point) const;
  /// Takes the smaller (larger) of both into this point, coordinate by coordinate. A NaN of `point`
  /// is not taken, a NaN of this point stays.
  void GetMinimum(const KOVAPointf& point);
  void GetMaximum(const KOVAPointf& point);

 private:
  static float& GetScratch();

  float _coordinates[3] = {0.0F, 0.0F, 0.0F};
};
