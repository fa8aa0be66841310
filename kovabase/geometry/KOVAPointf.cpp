#include "kovabase/geometry/KOVAPointf.h"

#include <cmath>

float& KOVAPointf::GetScratch() {
  thread_local float scratch;
  scratch = 0.0F;
  return scratch;
}

float KOVAPointf::DistanceTo(const KOVAPointf& point) const {
  float sum = 0.0F;
  for (int i = 0; i < 3; ++i) {
    const float difference = _coordinates[i] - point._coordinates[i];
    sum += difference * difference;
  }
  return std::sqrt(sum);
}

float KOVAPointf::DistanceL1To(const KOVAPointf& point) const {
  float sum = 0.0F;
  for (int i = 0; i < 3; ++i) sum += std::fabs(_coordinates[i] - point._coordinates[i]);
  return sum;
}

void KOVAPointf::GetMinimum(const KOVAPointf& point) {
  for (int i = 0; i < 3; ++i) {
    if (point._coordinates[i] < _coordinates[i]) _coordinates[i] = point._coordinates[i];
  }
}

void KOVAPointf::GetMaximum(const KOVAPointf& point) {
  for (int i = 0; i < 3; ++i) {
    if (point._coordinates[i] > _coordinates[i]) _coordinates[i] = point._coordinates[i];
  }
}
