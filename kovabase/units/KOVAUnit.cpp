#include "kovabase/units/KOVAUnit.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/Gk_Unit.h"
#include "kovabase/units/internal/LengthUnits.h"

#include <cmath>

using kova::internal::findLengthUnit;
using kova::internal::findMeasurableUnit;
using kova::internal::LengthUnit;

namespace {

static_assert(kova::internal::kLengthUnitCount == KOVAUnitMicroinch + 1);

constexpr double kMillimetresPerMetre = 1000.0;

constexpr double kFineTolerance = 1e-10;
constexpr double kCoarseTolerance = 1e-5;

struct Match {
  KOVAUnit unit;
  double tolerance;
};

/// In the order in which a length is compared; the first that is near enough wins.
constexpr Match kMatches[] = {
    {KOVAUnitNanometer, kFineTolerance},   {KOVAUnitMicrometer, kFineTolerance},
    {KOVAUnitMillimeter, kFineTolerance},  {KOVAUnitCentimeter, kFineTolerance},
    {KOVAUnitMeter, kCoarseTolerance},     {KOVAUnitDecimeter, kCoarseTolerance},
    {KOVAUnitKilometer, kCoarseTolerance}, {KOVAUnitMicroinch, kFineTolerance},
    {KOVAUnitMilliinch, kFineTolerance},   {KOVAUnitInch, kCoarseTolerance},
    {KOVAUnitFoot, kCoarseTolerance},      {KOVAUnitMile, kCoarseTolerance},
};

}  // namespace

KOVAResult GetKOVAUnit(double metres, KOVAUnit& unit) {
  for (const Match& match : kMatches) {
    if (std::fabs(metres - findLengthUnit(match.unit)->metres) < match.tolerance) {
      unit = match.unit;
      return KOVAResultCode::kSuccess;
    }
  }
  if (!(metres > 0.0)) return KOVAResultCode::kErrorEncountered;
  unit = KOVAUnitUnknown;
  return KOVAResultCode::kSuccess;
}

KOVAResult GetKOVAUnitFromGkUnit(const Gk_Unit& gkUnit, KOVAUnit& unit) {
  unit = KOVAUnitUnknown;
  return GetKOVAUnit(gkUnit.getFactor() / kMillimetresPerMetre, unit);
}

KOVAResult GetGkUnitFromKOVAUnit(const KOVAUnit& unit, Gk_Unit& gkUnit) {
  const LengthUnit* const found = findMeasurableUnit(unit);
  if (found == nullptr) {
    gkUnit = Gk_Unit();
    return KOVAResultCode::kErrorEncountered;
  }
  gkUnit = Gk_Unit(found->name, found->metres * kMillimetresPerMetre);
  return KOVAResultCode::kSuccess;
}

KOVAResult GetUnitName(KOVAUnit unit, KOVAString& name) {
  const LengthUnit* const found = findLengthUnit(unit);
  if (found == nullptr) return KOVAResultCode::kErrorEncountered;
  name = KOVAString(found->name);
  return found->metres > 0.0 ? KOVAResultCode::kSuccess : KOVAResultCode::kErrorEncountered;
}

KOVAResult GetUnitScaleFactor(KOVAUnit unit, double& metres) {
  const LengthUnit* const found = findMeasurableUnit(unit);
  metres = found != nullptr ? found->metres : 0.0;
  return found != nullptr ? KOVAResultCode::kSuccess : KOVAResultCode::kErrorEncountered;
}
