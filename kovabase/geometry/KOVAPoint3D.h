#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/geometry/KOVAPointArithmetic.h"

class KOVAAffine3D;
class KOVAMorph3D;

/// A point, direction or offset in space.
class KOVABASE_API KOVAPoint3D : public KOVAPointArithmetic<KOVAPoint3D, 3> {
 public:
  /// The origin.
  KOVAPoint3D() = default;
  KOVAPoint3D(double x, double y, double z) {
    _coordinates[0] = x;
    _coordinates[1] = y;
    _coordinates[2] = z;
  }
  /// @param coordinates  three doubles; null gives the origin.
  explicit KOVAPoint3D(const double* coordinates) {
    for (int i = 0; coordinates != nullptr && i < 3; ++i) _coordinates[i] = coordinates[i];
  }

  const char* GetName() override;

  /// A point of its own, which no handle holds.
  KOVAPoint3D Copy() const { return *this; }
  /// Adds the offset to this point.
  void Shift(const KOVAPoint3D& offset) { *this += offset; }
  /// A copy of length 1; the point itself when its length is exactly 0.
  KOVAPoint3D Normalize() const;
  /// A vector whose dot product with this one is exactly 0 (finite coordinates that do not
  /// overflow): the cross product with the axis that this one is least along. Its length is between
  /// sqrt(2/3) and 1 times this one's, so the zero point gives the zero point.
  KOVAPoint3D Orthogonalize() const;
  /// The cross product left x right.
  static KOVAPoint3D VectorProduct(const KOVAPoint3D& left, const KOVAPoint3D& right);

  /// Linear part, then scale, then translation; a morph of dimension 2 does nothing.
  /// The unit of KOVAMorph3D defines the two forms that take a morph.
  void Transform(const KOVAMorph& morph, bool noTranslation = false) override;
  void Transform(const KOVAMorph3D& morph, bool noTranslation = false);
  /// The linear part is applied even when it is the identity.
  void Transform(const KOVAAffine& affine) override;
  void Transform(const KOVAAffine3D& affine);
};

using KOVAPoint3DHandle = KOVATypedHandle<KOVAPoint3D>;

/// Copies the three coordinates out; a null array does nothing.
KOVABASE_API void KOVAGetDoublesFromKOVAPoint3D(const KOVAPoint3D& point, double coordinates[3]);
