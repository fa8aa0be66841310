#include "kovabase/geometry/KOVAWeightPoint2D.h"

#include "kovabase/geometry/KOVAMorph2D.h"
#include "kovabase/geometry/internal/LinearMath.h"
#include "kovabase/io/KOVAStreamFormatter.h"

using kova::internal::multiplyVector;
using kova::internal::transformCoordinates;

KOVAWeightPoint2D::KOVAWeightPoint2D(const KOVAPoint2D& point, double weight, bool premultiply)
    : _weight(weight) {
  SetWeightedCoords(premultiply && weight != 1.0 ? point * weight : point);
}

const char* KOVAWeightPoint2D::GetName() { return "KOVAWeightPoint2D"; }

void KOVAWeightPoint2D::SetWeightedCoords(const KOVAPoint2D& point) { point.CopyIn(*this); }

KOVAPoint2D KOVAWeightPoint2D::GetCoords() const {
  KOVAPoint2D point(_coordinates);
  if (_weight != 0.0 && _weight != 1.0) point /= _weight;
  return point;
}

void KOVAWeightPoint2D::Dump(KOVAStreamFormatter& formatter) const {
  KOVAPoint::Dump(formatter);
  formatter << " weight " << _weight;
}

void KOVAWeightPoint2D::Transform(const KOVAMorph& morph, bool noTranslation) {
  if (morph.GetDimension() == 2) {
    Transform(static_cast<const KOVAMorph2D&>(morph), noTranslation);
  }
}

void KOVAWeightPoint2D::Transform(const KOVAMorph2D& morph, bool noTranslation) {
  transformCoordinates<2, true>(morph, _coordinates, noTranslation, _weight);
}

void KOVAWeightPoint2D::Transform(const KOVAAffine& affine) {
  if (affine.GetDimension() == 2) {
    multiplyVector<2>(affine.GetElements(), _coordinates, _coordinates);
  }
}

void KOVAWeightPoint2D::Transform(const KOVAAffine2D& affine) {
  multiplyVector<2>(affine.GetElements(), _coordinates, _coordinates);
}
