#include "kovabase/geometry/KOVAVector.h"

#include "kovabase/geometry/Gk_Def.h"
#include "kovabase/geometry/Gk_Func.h"

#include <cmath>

namespace {

// 9.9999998245167e-15: the limit is the single-precision one for both precisions.
constexpr double kShortest = static_cast<double>(1e-14F);

}  // namespace

double& KOVAVector::GetScratch() {
  thread_local double scratch;
  scratch = 0.0;
  return scratch;
}

double KOVAVector::Magnitude() const { return std::sqrt(*this * *this); }

KOVAVector KOVAVector::Normalize() {
  const double magnitude = Magnitude();
  *this = magnitude > kShortest ? *this / magnitude : KOVAVector(1.0, 0.0, 0.0);
  return *this;
}

double KOVAVector::AngleTo(const KOVAVector& vector) const {
  if (Magnitude() <= kShortest || vector.Magnitude() <= kShortest) return 0.0;
  return std::atan2((*this ^ vector).Magnitude(), *this * vector);
}

bool KOVAVector::operator==(const KOVAVector& vector) const {
  const KOVAVector cross = *this ^ vector;
  return Gk_Func::equal(cross[0], 0.0, Gk_Def::FuzzPos) &&
         Gk_Func::equal(cross[1], 0.0, Gk_Def::FuzzPos) &&
         Gk_Func::equal(cross[2], 0.0, Gk_Def::FuzzPos) &&
         Gk_Func::equal(Magnitude(), vector.Magnitude(), Gk_Def::FuzzPos);
}
