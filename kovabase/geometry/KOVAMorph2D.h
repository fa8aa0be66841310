#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/geometry/KOVAAffine2D.h"
#include "kovabase/geometry/KOVAMorph.h"
#include "kovabase/geometry/KOVAPoint2D.h"

/// A placement in a plane, the identity at first.
class KOVABASE_API KOVAMorph2D : public KOVAMorph {
 public:
  KOVAMorph2D() = default;
  explicit KOVAMorph2D(double scale);
  explicit KOVAMorph2D(const KOVAPoint2D& translation);
  KOVAMorph2D(const KOVAPoint2D& translation, double scale);
  KOVAMorph2D(const KOVAAffine2D& linear, const KOVAPoint2D& translation, double scale);

  int GetDimension() const final { return 2; }
  const KOVAAffine2D& GetAffine() const final { return _linear; }
  const KOVAPoint2D& GetTranslation() const final { return _translation; }

  void SetToIdentity() override;
  void FixScaleFactor() override;
  KOVAResult Inverse(KOVAMorph& inverse) const override;
  /// The identity when there is no inverse.
  KOVAMorph2D inverse() const;
  KOVAResult Multiply(const KOVAMorph& other, KOVAMorph& result) const override;
  /// The morph that applies this one first and `other` second.
  KOVAMorph2D multiply(const KOVAMorph2D& other) const;

 protected:
  void fixMorphFlags() final;

 private:
  // The numbers of a result, computed before the result is touched: it may be an operand.
  struct Parts {
    double linear[4];
    double scale;
    double translation[2];
  };

  explicit KOVAMorph2D(const Parts& parts);
  void setParts(const Parts& parts);
  bool computeInverse(Parts& inverse) const;
  void computeProduct(const KOVAMorph2D& other, Parts& product) const;

  KOVAAffine2D _linear;
  KOVAPoint2D _translation;
};

/// Transforms loose coordinates as `KOVAPoint2D::Transform` does.
KOVABASE_API void Transform(double& x, double& y, const KOVAMorph2D& morph,
                            bool noTranslation = false);
