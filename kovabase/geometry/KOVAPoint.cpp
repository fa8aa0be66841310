#include "kovabase/geometry/KOVAPoint.h"

#include "kovabase/foundation/Gk_ErrMgr.h"
#include "kovabase/io/KOVAStreamFormatter.h"

#include <cmath>

namespace {

void checkOperands(const KOVAPoint& point, const KOVAPoint& other) {
  Gk_ErrMgr::checkAbort();
  if (point.GetDimension() != other.GetDimension()) Gk_ErrMgr::trap();
}

}  // namespace

double& KOVAPoint::GetScratch() {
  thread_local double scratch;
  scratch = 0.0;
  return scratch;
}

const char* KOVAPoint::GetName() { return "KOVAPoint"; }

double KOVAPoint::operator[](int index) const {
  return index >= 0 && index < _dimension ? _coordinates[index] : 0.0;
}

double& KOVAPoint::operator[](int index) {
  return index >= 0 && index < _dimension ? _coordinates[index] : GetScratch();
}

int KOVAPoint::GetDimension() const { return _dimension; }

double KOVAPoint::Length() const {
  double sum = 0.0;
  for (int i = 0; i < _dimension; ++i) sum += _coordinates[i] * _coordinates[i];
  return std::sqrt(sum);
}

void KOVAPoint::Negate() {
  for (int i = 0; i < _dimension; ++i) _coordinates[i] = -_coordinates[i];
}

void KOVAPoint::Multiply(double factor) {
  for (int i = 0; i < _dimension; ++i) _coordinates[i] *= factor;
}

void KOVAPoint::Divide(double divisor) {
  for (int i = 0; i < _dimension; ++i) _coordinates[i] /= divisor;
}

void KOVAPoint::Substract(const KOVAPoint& point) {
  for (int i = 0; i < _dimension; ++i) _coordinates[i] -= point._coordinates[i];
}

void KOVAPoint::Add(const KOVAPoint& point) {
  for (int i = 0; i < _dimension; ++i) _coordinates[i] += point._coordinates[i];
}

void KOVAPoint::CopyIn(KOVAPoint& point) const {
  for (int i = 0; i < _dimension && i < point._dimension; ++i) {
    point._coordinates[i] = _coordinates[i];
  }
}

void KOVAPoint::Dump(KOVAStreamFormatter& formatter) const {
  formatter << '(';
  for (int i = 0; i < _dimension; ++i) formatter << (i > 0 ? ", " : "") << _coordinates[i];
  formatter << ')';
}

void KOVAPoint::Transform(const KOVAMorph&, bool) {}

void KOVAPoint::Transform(const KOVAAffine&) {}

double KOVAPoint::DistanceTo(const KOVAPoint& point) const {
  checkOperands(*this, point);
  double sum = 0.0;
  for (int i = 0; i < _dimension; ++i) {
    const double difference = _coordinates[i] - point._coordinates[i];
    sum += difference * difference;
  }
  return std::sqrt(sum);
}

bool KOVAPoint::IsWithinTolerance(const KOVAPoint& point, double tolerance) const {
  checkOperands(*this, point);
  const double limit = std::fabs(tolerance);
  for (int i = 0; i < _dimension; ++i) {
    if (!(std::fabs(_coordinates[i] - point._coordinates[i]) <= limit)) return false;
  }
  return true;
}

bool KOVAPoint::IsWithinTolerance(const KOVAPoint& point, const KOVAPoint& tolerance) const {
  checkOperands(*this, point);
  for (int i = 0; i < _dimension; ++i) {
    const double difference = std::fabs(_coordinates[i] - point._coordinates[i]);
    if (!(difference <= std::fabs(tolerance._coordinates[i]))) return false;
  }
  return true;
}

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVAPoint& point) {
  point.Dump(formatter);
  return formatter;
}
