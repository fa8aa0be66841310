#include "kovabase/geometry/KOVAMorph2D.h"

#include "kovabase/geometry/internal/LinearMath.h"

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

inline KOVAMorph2D::KOVAMorph2D(const Parts& parts)
    : KOVAMorph(parts.scale),
      _linear(parts.linear),
      _translation(parts.translation[0], parts.translation[1]) {
  fixMorphFlags();
}

inline void KOVAMorph2D::setParts(const Parts& parts) {
  copyMatrix<2>(parts.linear, _linear.GetElements());
  _translation[0] = parts.translation[0];
  _translation[1] = parts.translation[1];
  _scale = parts.scale;
  _scaleFixed = false;
  fixMorphFlags();
}

inline bool KOVAMorph2D::computeInverse(Parts& inverse) const {
  inverse.scale = 1.0 / _scale;
  if (inverse.scale == 0.0 || !std::isfinite(inverse.scale) ||
      !invertMatrix<2>(_linear.GetElements(), inverse.linear)) {
    return false;
  }
  multiplyVector<2>(inverse.linear, _translation.GetStoredCoordinates(), inverse.translation);
  // From 0, so that no coordinate becomes -0.
  inverse.translation[0] = 0.0 - inverse.scale * inverse.translation[0];
  inverse.translation[1] = 0.0 - inverse.scale * inverse.translation[1];
  return true;
}

inline void KOVAMorph2D::computeProduct(const KOVAMorph2D& other, Parts& product) const {
  product.translation[0] = _translation[0];
  product.translation[1] = _translation[1];
  transformCoordinates<2, false>(other, product.translation, false, 1.0);
  multiplyMatrices<2>(other._linear.GetElements(), _linear.GetElements(), product.linear);
  product.scale = _scale * other._scale;
}

KOVAResult KOVAMorph2D::Inverse(KOVAMorph& inverse) const {
  if (inverse.GetDimension() != 2) return KOVAResultCode::kInvalidArgument;
  Parts parts;
  if (!computeInverse(parts)) {
    inverse.SetToIdentity();
    return KOVAResultCode::kFailure;
  }
  static_cast<KOVAMorph2D&>(inverse).setParts(parts);
  return KOVAResultCode::kSuccess;
}

KOVAMorph2D KOVAMorph2D::inverse() const {
  Parts parts;
  return computeInverse(parts) ? KOVAMorph2D(parts) : KOVAMorph2D();
}

KOVAResult KOVAMorph2D::Multiply(const KOVAMorph& other, KOVAMorph& result) const {
  if (other.GetDimension() != 2 || result.GetDimension() != 2) {
    return KOVAResultCode::kInvalidArgument;
  }
  Parts parts;
  computeProduct(static_cast<const KOVAMorph2D&>(other), parts);
  static_cast<KOVAMorph2D&>(result).setParts(parts);
  return KOVAResultCode::kSuccess;
}

KOVAMorph2D KOVAMorph2D::multiply(const KOVAMorph2D& other) const {
  Parts parts;
  computeProduct(other, parts);
  return KOVAMorph2D(parts);
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
