#include "kovabase/geometry/KOVAPoint2D.h"

#include "kovabase/geometry/KOVAAffine2D.h"
#include "kovabase/geometry/internal/LinearMath.h"

using kova::internal::multiplyVector;

const char* KOVAPoint2D::GetName() { return "KOVAPoint2D"; }

KOVAPoint2D KOVAPoint2D::Normalize() const {
  KOVAPoint2D result(*this);
  const double length = Length();
  if (length != 0.0) result /= length;
  return result;
}

KOVAPoint2D KOVAPoint2D::Orthogonalize() const { return {-_coordinates[1], _coordinates[0]}; }

void KOVAPoint2D::Transform(const KOVAAffine& affine) {
  if (affine.GetDimension() == 2) {
    multiplyVector<2>(affine.GetElements(), _coordinates, _coordinates);
  }
}

void KOVAPoint2D::Transform(const KOVAAffine2D& affine) {
  multiplyVector<2>(affine.GetElements(), _coordinates, _coordinates);
}
