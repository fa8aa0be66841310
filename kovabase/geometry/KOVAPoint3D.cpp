#include "kovabase/geometry/KOVAPoint3D.h"

#include "kovabase/geometry/KOVAAffine3D.h"
#include "kovabase/geometry/internal/LinearMath.h"

#include <cmath>

using kova::internal::multiplyVector;

const char* KOVAPoint3D::GetName() { return "KOVAPoint3D"; }

KOVAPoint3D KOVAPoint3D::Normalize() const {
  KOVAPoint3D result(*this);
  const double length = Length();
  if (length != 0.0) result /= length;
  return result;
}

KOVAPoint3D KOVAPoint3D::Orthogonalize() const {
  const double x = _coordinates[0];
  const double y = _coordinates[1];
  const double z = _coordinates[2];
  const double absoluteX = std::fabs(x);
  const double absoluteY = std::fabs(y);
  const double absoluteZ = std::fabs(z);
  if (absoluteX <= absoluteY && absoluteX <= absoluteZ) return {0.0, z, -y};
  if (absoluteY <= absoluteZ) return {-z, 0.0, x};
  return {y, -x, 0.0};
}

KOVAPoint3D KOVAPoint3D::VectorProduct(const KOVAPoint3D& left, const KOVAPoint3D& right) {
  return {left[1] * right[2] - left[2] * right[1], left[2] * right[0] - left[0] * right[2],
          left[0] * right[1] - left[1] * right[0]};
}

void KOVAPoint3D::Transform(const KOVAAffine& affine) {
  if (affine.GetDimension() == 3) {
    multiplyVector<3>(affine.GetElements(), _coordinates, _coordinates);
  }
}

void KOVAPoint3D::Transform(const KOVAAffine3D& affine) {
  multiplyVector<3>(affine.GetElements(), _coordinates, _coordinates);
}

void KOVAGetDoublesFromKOVAPoint3D(const KOVAPoint3D& point, double coordinates[3]) {
  for (int i = 0; coordinates != nullptr && i < 3; ++i) coordinates[i] = point[i];
}
