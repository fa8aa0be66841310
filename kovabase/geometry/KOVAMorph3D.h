#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/geometry/KOVAAffine3D.h"
#include "kovabase/geometry/KOVAMorph.h"
#include "kovabase/geometry/KOVAPoint3D.h"

class KOVAAssemblyComponentTransform;

/// A placement in space, the identity at first.
class KOVABASE_API KOVAMorph3D : public KOVAMorph {
 public:
  KOVAMorph3D() = default;
  explicit KOVAMorph3D(double scale);
  explicit KOVAMorph3D(const KOVAPoint3D& translation);
  KOVAMorph3D(const KOVAPoint3D& translation, double scale);
  KOVAMorph3D(const KOVAAffine3D& linear, const KOVAPoint3D& translation, double scale);
  /// The axes become the columns of the linear part, the origin the translation.
  explicit KOVAMorph3D(const KOVAAssemblyComponentTransform& transform);

  int GetDimension() const final { return 3; }
  const KOVAAffine3D& GetAffine() const final { return _linear; }
  const KOVAPoint3D& GetTranslation() const final { return _translation; }

  void SetToIdentity() override;
  void FixScaleFactor() override;
  KOVAResult Inverse(KOVAMorph& inverse) const override;
  /// The identity when there is no inverse.
  KOVAMorph3D inverse() const;
  KOVAResult Multiply(const KOVAMorph& other, KOVAMorph& result) const override;
  /// The morph that applies this one first and `other` second.
  KOVAMorph3D multiply(const KOVAMorph3D& other) const;

 protected:
  void fixMorphFlags() final;

 private:
  // The numbers of a result, computed before the result is touched: it may be an operand.
  struct Parts {
    double linear[9];
    double scale;
    double translation[3];
  };

  explicit KOVAMorph3D(const Parts& parts);
  void setParts(const Parts& parts);
  bool computeInverse(Parts& inverse) const;
  void computeProduct(const KOVAMorph3D& other, Parts& product) const;

  KOVAAffine3D _linear;
  KOVAPoint3D _translation;
};

/// Transforms loose coordinates as `KOVAPoint3D::Transform` does.
KOVABASE_API void Transform(double& x, double& y, double& z, const KOVAMorph3D& morph,
                            bool noTranslation = false);
