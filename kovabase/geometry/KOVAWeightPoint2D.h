#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAPoint2D.h"
#include "kovabase/geometry/KOVAPointArithmetic.h"

/// A control point of a rational curve or surface in a plane, in homogeneous form: its coordinates
/// are stored multiplied by its weight. Lengths, tolerances and arithmetic are those of the stored
/// coordinates; a result keeps the weight of its left operand.
class KOVABASE_API KOVAWeightPoint2D : public KOVAPointArithmetic<KOVAWeightPoint2D, 2> {
 public:
  /// The origin.
  explicit KOVAWeightPoint2D(double weight = 1.0) : _weight(weight) {}
  /// @param premultiply  true when `point` is the Cartesian point, to be multiplied by the weight;
  ///   false when it is stored as it is.
  KOVAWeightPoint2D(const KOVAPoint2D& point, double weight, bool premultiply);

  const char* GetName() override;

  double GetWeight() const { return _weight; }
  /// Leaves the stored coordinates as they are, so that the Cartesian point changes.
  void SetWeight(double weight) { _weight = weight; }
  KOVAPoint2D GetWeightedCoords() const { return KOVAPoint2D(_coordinates); }
  void SetWeightedCoords(const KOVAPoint2D& point);
  /// The Cartesian point. The weights 0 (a point at infinity) and 1 do not divide.
  KOVAPoint2D GetCoords() const;

  /// Writes "(x, y) weight w" with the stored coordinates.
  void Dump(KOVAStreamFormatter& formatter) const override;

  /// Moves the Cartesian point: a translation is added multiplied by the weight. The weight stays;
  /// a transform of dimension 3 does nothing.
  void Transform(const KOVAMorph& morph, bool noTranslation = false) override;
  void Transform(const KOVAMorph2D& morph, bool noTranslation = false);
  void Transform(const KOVAAffine& affine) override;
  void Transform(const KOVAAffine2D& affine);

 private:
  double _weight;
};
