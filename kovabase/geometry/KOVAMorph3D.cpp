#include "kovabase/geometry/KOVAMorph3D.h"

#include "kovabase/geometry/KOVAAssemblyComponentTransform.h"
#include "kovabase/geometry/internal/LinearMath.h"

#include <algorithm>
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

KOVAResult KOVAMorph3D::Inverse(KOVAMorph& inverse) const {
  if (inverse.GetDimension() != 3) return KOVAResultCode::kInvalidArgument;
  return invertInto(static_cast<KOVAMorph3D&>(inverse)) ? KOVAResultCode::kSuccess
                                                        : KOVAResultCode::kFailure;
}

KOVAMorph3D KOVAMorph3D::inverse() const {
  KOVAMorph3D result;
  invertInto(result);
  return result;
}

KOVAResult KOVAMorph3D::Multiply(const KOVAMorph& other, KOVAMorph& result) const {
  if (other.GetDimension() != 3 || result.GetDimension() != 3) {
    return KOVAResultCode::kInvalidArgument;
  }
  multiplyInto(static_cast<const KOVAMorph3D&>(other), static_cast<KOVAMorph3D&>(result));
  return KOVAResultCode::kSuccess;
}

KOVAMorph3D KOVAMorph3D::multiply(const KOVAMorph3D& other) const {
  KOVAMorph3D result;
  multiplyInto(other, result);
  return result;
}

bool KOVAMorph3D::invertInto(KOVAMorph3D& inverse) const {
  const double scale = 1.0 / _scale;
  double linear[9];
  if (scale == 0.0 || !std::isfinite(scale) || !invertMatrix<3>(_linear.GetElements(), linear)) {
    inverse.SetToIdentity();
    return false;
  }
  double translation[3] = {};
  if (isTranslation()) {
    multiplyVector<3>(linear, _translation.GetStoredCoordinates(), translation);
    // From 0, so that no coordinate becomes -0.
    translation[0] = 0.0 - scale * translation[0];
    translation[1] = 0.0 - scale * translation[1];
    translation[2] = 0.0 - scale * translation[2];
  }
  inverse.setParts(linear, scale, translation);
  return true;
}

void KOVAMorph3D::multiplyInto(const KOVAMorph3D& other, KOVAMorph3D& result) const {
  double translation[3] = {_translation[0], _translation[1], _translation[2]};
  transformCoordinates<3, false>(other, translation, false, 1.0);
  double linear[9];
  multiplyMatrices<3>(other._linear.GetElements(), _linear.GetElements(), linear);
  result.setParts(linear, _scale * other._scale, translation);
}

// The result of an operation may be its operand, so that it is written to when all is computed.
inline void KOVAMorph3D::setParts(const double* linear, double scale, const double* translation) {
  copyMatrix<3>(linear, _linear.GetElements());
  _translation[0] = translation[0];
  _translation[1] = translation[1];
  _translation[2] = translation[2];
  _scale = scale;
  _scaleFixed = false;
  fixMorphFlags();
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
