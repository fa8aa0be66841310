#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/geometry/KOVAPointArithmetic.h"

class KOVAAffine2D;
class KOVAMorph2D;

/// A point, direction or offset in a plane.
class KOVABASE_API KOVAPoint2D : public KOVAPointArithmetic<KOVAPoint2D, 2> {
 public:
  /// The origin.
  KOVAPoint2D() = default;
  KOVAPoint2D(double x, double y) {
    _coordinates[0] = x;
    _coordinates[1] = y;
  }
  /// @param coordinates  two doubles; null gives the origin.
  explicit KOVAPoint2D(const double* coordinates) {
    for (int i = 0; coordinates != nullptr && i < 2; ++i) _coordinates[i] = coordinates[i];
  }

  const char* GetName() override;

  /// A point of its own, which no handle holds.
  KOVAPoint2D Copy() const { return *this; }
  /// Adds the offset to this point.
  void Shift(const KOVAPoint2D& offset) { *this += offset; }
  /// A copy of length 1; the point itself when its length is exactly 0.
  KOVAPoint2D Normalize() const;
  /// (-y, x): this one turned by +90 degrees, as long as this one.
  KOVAPoint2D Orthogonalize() const;

  /// Linear part, then scale, then translation; a morph of dimension 3 does nothing.
  /// The unit of KOVAMorph2D defines the two forms that take a morph.
  void Transform(const KOVAMorph& morph, bool noTranslation = false) override;
  void Transform(const KOVAMorph2D& morph, bool noTranslation = false);
  /// The linear part is applied even when it is the identity.
  void Transform(const KOVAAffine& affine) override;
  void Transform(const KOVAAffine2D& affine);
};

using KOVAPoint2DHandle = KOVATypedHandle<KOVAPoint2D>;
