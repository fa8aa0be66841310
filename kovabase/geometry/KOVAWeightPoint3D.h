#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAPoint3D.h"
#include "kovabase/geometry/KOVAPointArithmetic.h"

/// A control point of a rational curve or surface in space, in homogeneous form: its coordinates
/// are stored multiplied by its weight. Lengths, tolerances and arithmetic are those of the stored
/// coordinates; a result keeps the weight of its left operand.
class KOVABASE_API KOVAWeightPoint3D : public KOVAPointArithmetic<KOVAWeightPoint3D, 3> {
 public:
  /// The origin.
  explicit KOVAWeightPoint3D(double weight = 1.0) : _weight(weight) {}
  /// @param premultiply  true when `point` is the Cartesian point, to be multiplied by the weight;
  ///   false when it is stored as it is.
  KOVAWeightPoint3D(const KOVAPoint3D& point, double weight, bool premultiply);

  const char* GetName() override;

  double GetWeight() const { return _weight; }
  /// Leaves the stored coordinates as they are, so that the Cartesian point changes.
  void SetWeight(double weight) { _weight = weight; }
  KOVAPoint3D GetWeightedCoords() const { return KOVAPoint3D(_coordinates); }
  void SetWeightedCoords(const KOVAPoint3D& point);
  /// The Cartesian point. The weights 0 (a point at infinity) and 1 do not divide.
  KOVAPoint3D GetCoords() const;

  /// Writes "(x, y, z) weight w" with the stored coordinates.
  void Dump(KOVAStreamFormatter& formatter) const override;

  /// Moves the Cartesian point: a translation is added multiplied by the weight. The weight stays;
  /// a transform of dimension 2 does nothing.
  void Transform(const KOVAMorph& morph, bool noTranslation = false) override;
  void Transform(const KOVAMorph3D& morph, bool noTranslation = false);
  void Transform(const KOVAAffine& affine) override;
  void Transform(const KOVAAffine3D& affine);

 private:
  double _weight;
};
