#include "kovabase/geometry/KOVAMorph2D.h"

#include "kovabase/geometry/internal/LinearMath.h"

#include <algorithm>
#include <cmath>

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

// The result may be the morph itself: it is written to when all is computed.
bool KOVAMorph2D::invertInto(KOVAMorph2D& inverse) const {
  const double scale = 1.0 / _scale;
  double linear[4];
  if (scale == 0.0 || !std::isfinite(scale) ||
      (isAffine() && !invertMatrix<2>(_linear.GetElements(), linear))) {
    inverse.SetToIdentity();
    return false;
  }
  double translation[2] = {0.0, 0.0};
  if (isTranslation()) {
    translation[0] = _translation[0];
    translation[1] = _translation[1];
    if (isAffine()) multiplyVector<2>(linear, translation, translation);
    for (double& coordinate : translation) coordinate *= -scale;
  }
  if (isAffine()) {
    std::copy(linear, linear + 4, inverse._linear.GetElements());
  } else {
    inverse._linear = _linear;
  }
  for (int i = 0; i < 2; ++i) inverse._translation[i] = translation[i];
  inverse._scale = scale;
  inverse._scaleFixed = false;
  inverse.fixMorphFlags();
  return true;
}

void KOVAMorph2D::multiplyInto(const KOVAMorph2D& other, KOVAMorph2D& result) const {
  double translation[2] = {_translation[0], _translation[1]};
  transformCoordinates<2, false>(other, translation, false, 1.0);
  double linear[4];
  if (isAffine() && other.isAffine()) {
    multiplyMatrices<2>(other._linear.GetElements(), _linear.GetElements(), linear);
  } else {
    const double* const elements = (isAffine() ? _linear : other._linear).GetElements();
    std::copy(elements, elements + 4, linear);
  }
  std::copy(linear, linear + 4, result._linear.GetElements());
  for (int i = 0; i < 2; ++i) result._translation[i] = translation[i];
  result._scale = _scale * other._scale;
  result._scaleFixed = false;
  result.fixMorphFlags();
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
