#include "kovabase/geometry/KOVAWeightPoint3D.h"

#include "kovabase/geometry/KOVAMorph3D.h"
#include "kovabase/geometry/internal/LinearMath.h"
#include "kovabase/io/KOVAStreamFormatter.h"

using kova::internal::multiplyVector;
using kova::internal::transformCoordinates;

KOVAWeightPoint3D::KOVAWeightPoint3D(const KOVAPoint3D& point, double weight, bool premultiply)
    : _weight(weight) {
  SetWeightedCoords(premultiply && weight != 1.0 ? point * weight : point);
}

const char* KOVAWeightPoint3D::GetName() { return "KOVAWeightPoint3D"; }

void KOVAWeightPoint3D::SetWeightedCoords(const KOVAPoint3D& point) { point.CopyIn(*this); }

KOVAPoint3D KOVAWeightPoint3D::GetCoords() const {
  KOVAPoint3D point(_coordinates);
  if (_weight != 0.0 && _weight != 1.0) point /= _weight;
  return point;
}

void KOVAWeightPoint3D::Dump(KOVAStreamFormatter& formatter) const {
  KOVAPoint::Dump(formatter);
  formatter << " weight " << _weight;
}

void KOVAWeightPoint3D::Transform(const KOVAMorph& morph, bool noTranslation) {
  if (morph.GetDimension() == 3) {
    Transform(static_cast<const KOVAMorph3D&>(morph), noTranslation);
  }
}

void KOVAWeightPoint3D::Transform(const KOVAMorph3D& morph, bool noTranslation) {
  transformCoordinates<3, true>(morph, _coordinates, noTranslation, _weight);
}

void KOVAWeightPoint3D::Transform(const KOVAAffine& affine) {
  if (affine.GetDimension() == 3) {
    multiplyVector<3>(affine.GetElements(), _coordinates, _coordinates);
  }
}

void KOVAWeightPoint3D::Transform(const KOVAAffine3D& affine) {
  multiplyVector<3>(affine.GetElements(), _coordinates, _coordinates);
}
