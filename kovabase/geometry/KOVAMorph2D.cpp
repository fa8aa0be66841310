#include "kovabase/geometry/KOVAMorph2D.h"

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

bool isZero(const KOVAPoint2D& point) { return point[0] == 0.0 && point[1] == 0.0; }

}  // namespace

KOVAMorph2D::KOVAMorph2D(double scale) : KOVAMorph(scale) { fixMorphFlags(); }

KOVAMorph2D::KOVAMorph2D(const KOVAPoint2D& translation) : _translation(translation) {
  fixMorphFlags();
}

KOVAMorph2D::KOVAMorph2D(const KOVAPoint2D& translation, double scale)
    : KOVAMorph(scale), _translation(translation) {
  fixMorphFlags();
}

KOVAMorph2D::KOVAMorph2D(const KOVAAffine2D& linear, const KOVAPoint2D& translation, double scale)
    : KOVAMorph(scale), _linear(linear), _translation(translation) {
  fixMorphFlags();
}

void KOVAMorph2D::fixMorphFlags() {
  setFlags(!isIdentityMatrix<2>(_linear.GetElements()), !isZero(_translation));
}

void KOVAMorph2D::SetToIdentity() { *this = KOVAMorph2D(); }

void KOVAMorph2D::FixScaleFactor() {
  if (_scaleFixed) return;
  _translation *= _scale;
  _scale = 1.0;
  fixMorphFlags();
  _scaleFixed = true;
}

KOVAResult KOVAMorph2D::Inverse(KOVAMorph& inverse) const {
  if (inverse.GetDimension() != 2) return KOVAResultCode::kInvalidArgument;
  return invertInto(static_cast<KOVAMorph2D&>(inverse)) ? KOVAResultCode::kSuccess
                                                        : KOVAResultCode::kFailure;
}

KOVAMorph2D KOVAMorph2D::inverse() const {
  KOVAMorph2D result;
  invertInto(result);
  return result;
}

KOVAResult KOVAMorph2D::Multiply(const KOVAMorph& other, KOVAMorph& result) const {
  if (other.GetDimension() != 2 || result.GetDimension() != 2) {
    return KOVAResultCode::kInvalidArgument;
  }
  multiplyInto(static_cast<const KOVAMorph2D&>(other), static_cast<KOVAMorph2D&>(result));
  return KOVAResultCode::kSuccess;
}

KOVAMorph2D KOVAMorph2D::multiply(const KOVAMorph2D& other) const {
  KOVAMorph2D result;
  multiplyInto(other, result);
  return result;
}

bool KOVAMorph2D::invertInto(KOVAMorph2D& inverse) const {
  const double scale = 1.0 / _scale;
  double linear[4];
  if (scale == 0.0 || !std::isfinite(scale) || !invertMatrix<2>(_linear.GetElements(), linear)) {
    inverse.SetToIdentity();
    return false;
  }
  double translation[2] = {};
  if (isTranslation()) {
    multiplyVector<2>(linear, _translation.GetStoredCoordinates(), translation);
    // From 0, so that no coordinate becomes -0.
    translation[0] = 0.0 - scale * translation[0];
    translation[1] = 0.0 - scale * translation[1];
  }
  inverse.setParts(linear, scale, translation);
  return true;
}

void KOVAMorph2D::multiplyInto(const KOVAMorph2D& other, KOVAMorph2D& result) const {
  double translation[2] = {_translation[0], _translation[1]};
  transformCoordinates<2, false>(other, translation, false, 1.0);
  double linear[4];
  multiplyMatrices<2>(other._linear.GetElements(), _linear.GetElements(), linear);
  result.setParts(linear, _scale * other._scale, translation);
}

// The result of an operation may be its operand, so that it is written to when all is computed.
inline void KOVAMorph2D::setParts(const double* linear, double scale, const double* translation) {
  copyMatrix<2>(linear, _linear.GetElements());
  _translation[0] = translation[0];
  _translation[1] = translation[1];
  _scale = scale;
  _scaleFixed = false;
  fixMorphFlags();
}

void KOVAPoint2D::Transform(const KOVAMorph2D& morph, bool noTranslation) {
  transformCoordinates<2, false>(morph, _coordinates, noTranslation, 1.0);
}

void KOVAPoint2D::Transform(const KOVAMorph& morph, bool noTranslation) {
  if (morph.GetDimension() == 2) {
    Transform(static_cast<const KOVAMorph2D&>(morph), noTranslation);
  }
}

void Transform(double& x, double& y, const KOVAMorph2D& morph, bool noTranslation) {
  double coordinates[2] = {x, y};
  transformCoordinates<2, false>(morph, coordinates, noTranslation, 1.0);
  x = coordinates[0];
  y = coordinates[1];
}
