#include "kovabase/geometry/KOVAMorph3D.h"

#include "kovabase/geometry/KOVAAssemblyComponentTransform.h"
#include "kovabase/geometry/internal/LinearMath.h"

#include <cmath>

using kova::internal::copyMatrix;
using kova::internal::invertMatrix;
using kova::internal::isIdentityMatrix;
using kova::internal::multiplyMatrices;
using kova::internal::multiplyVector;
using kova::internal::transformCoordinates;

namespace {

bool isZero(const KOVAPoint3D& point) {
  return point[0] == 0.0 && point[1] == 0.0 && point[2] == 0.0;
}

}  // namespace

KOVAMorph3D::KOVAMorph3D(double scale) : KOVAMorph(scale) { fixMorphFlags(); }

KOVAMorph3D::KOVAMorph3D(const KOVAPoint3D& translation) : _translation(translation) {
  fixMorphFlags();
}

KOVAMorph3D::KOVAMorph3D(const KOVAPoint3D& translation, double scale)
    : KOVAMorph(scale), _translation(translation) {
  fixMorphFlags();
}

KOVAMorph3D::KOVAMorph3D(const KOVAAffine3D& linear, const KOVAPoint3D& translation, double scale)
    : KOVAMorph(scale), _linear(linear), _translation(translation) {
  fixMorphFlags();
}

KOVAMorph3D::KOVAMorph3D(const KOVAAssemblyComponentTransform& transform)
    : KOVAMorph(transform.GetScale()), _translation(transform.GetOrigin()) {
  for (int i = 0; i < 3; ++i) {
    _linear.SetElement(i, 0, transform.GetXAxis()[i]);
    _linear.SetElement(i, 1, transform.GetYAxis()[i]);
    _linear.SetElement(i, 2, transform.GetZAxis()[i]);
  }
  fixMorphFlags();
}

void KOVAMorph3D::fixMorphFlags() {
  setFlags(!isIdentityMatrix<3>(_linear.GetElements()), !isZero(_translation));
}

void KOVAMorph3D::SetToIdentity() { *this = KOVAMorph3D(); }

void KOVAMorph3D::FixScaleFactor() {
  if (_scaleFixed) return;
  _translation *= _scale;
  _scale = 1.0;
  fixMorphFlags();
  _scaleFixed = true;
}

inline KOVAMorph3D::KOVAMorph3D(const Parts& parts)
    : KOVAMorph(parts.scale),
      _linear(parts.linear),
      _translation(parts.translation[0], parts.translation[1], parts.translation[2]) {
  fixMorphFlags();
}

inline void KOVAMorph3D::setParts(const Parts& parts) {
  copyMatrix<3>(parts.linear, _linear.GetElements());
  _translation[0] = parts.translation[0];
  _translation[1] = parts.translation[1];
  _translation[2] = parts.translation[2];
  _scale = parts.scale;
  _scaleFixed = false;
  fixMorphFlags();
}

inline bool KOVAMorph3D::computeInverse(Parts& inverse) const {
  inverse.scale = 1.0 / _scale;
  if (inverse.scale == 0.0 || !std::isfinite(inverse.scale) ||
      !invertMatrix<3>(_linear.GetElements(), inverse.linear)) {
    return false;
  }
  multiplyVector<3>(inverse.linear, _translation.GetStoredCoordinates(), inverse.translation);
  // From 0, so that no coordinate becomes -0.
  inverse.translation[0] = 0.0 - inverse.scale * inverse.translation[0];
  inverse.translation[1] = 0.0 - inverse.scale * inverse.translation[1];
  inverse.translation[2] = 0.0 - inverse.scale * inverse.translation[2];
  return true;
}

inline void KOVAMorph3D::computeProduct(const KOVAMorph3D& other, Parts& product) const {
  product.translation[0] = _translation[0];
  product.translation[1] = _translation[1];
  product.translation[2] = _translation[2];
  transformCoordinates<3, false>(other, product.translation, false, 1.0);
  multiplyMatrices<3>(other._linear.GetElements(), _linear.GetElements(), product.linear);
  product.scale = _scale * other._scale;
}

KOVAResult KOVAMorph3D::Inverse(KOVAMorph& inverse) const {
  if (inverse.GetDimension() != 3) return KOVAResultCode::kInvalidArgument;
  Parts parts;
  if (!computeInverse(parts)) {
    inverse.SetToIdentity();
    return KOVAResultCode::kFailure;
  }
  static_cast<KOVAMorph3D&>(inverse).setParts(parts);
  return KOVAResultCode::kSuccess;
}

KOVAMorph3D KOVAMorph3D::inverse() const {
  Parts parts;
  return computeInverse(parts) ? KOVAMorph3D(parts) : KOVAMorph3D();
}

KOVAResult KOVAMorph3D::Multiply(const KOVAMorph& other, KOVAMorph& result) const {
  if (other.GetDimension() != 3 || result.GetDimension() != 3) {
    return KOVAResultCode::kInvalidArgument;
  }
  Parts parts;
  computeProduct(static_cast<const KOVAMorph3D&>(other), parts);
  static_cast<KOVAMorph3D&>(result).setParts(parts);
  return KOVAResultCode::kSuccess;
}

KOVAMorph3D KOVAMorph3D::multiply(const KOVAMorph3D& other) const {
  Parts parts;
  computeProduct(other, parts);
  return KOVAMorph3D(parts);
}

void KOVAPoint3D::Transform(const KOVAMorph3D& morph, bool noTranslation) {
  transformCoordinates<3, false>(morph, _coordinates, noTranslation, 1.0);
}

void KOVAPoint3D::Transform(const KOVAMorph& morph, bool noTranslation) {
  if (morph.GetDimension() == 3) {
    Transform(static_cast<const KOVAMorph3D&>(morph), noTranslation);
  }
}

void Transform(double& x, double& y, double& z, const KOVAMorph3D& morph, bool noTranslation) {
  double coordinates[3] = {x, y, z};
  transformCoordinates<3, false>(morph, coordinates, noTranslation, 1.0);
  x = coordinates[0];
  y = coordinates[1];
  z = coordinates[2];
}
