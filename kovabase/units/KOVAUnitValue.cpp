#include "kovabase/units/KOVAUnitValue.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/Gk_Unit.h"
#include "kovabase/units/internal/LengthUnits.h"

#include <atomic>

namespace {

constinit std::atomic<KOVAUnit> applicationUnit{KOVAUnitModel};
constinit std::atomic<KOVAUnit> readUnit{KOVAUnitUnknown};
constinit std::atomic<KOVAUnit> writeUnit{KOVAUnitModel};
constinit std::atomic<KOVAUnit> unitWhenUnspecified{KOVAUnitUnknown};

KOVAUnit get(const std::atomic<KOVAUnit>& setting) {
  return setting.load(std::memory_order_relaxed);
}

KOVAResult set(std::atomic<KOVAUnit>& setting, KOVAUnit unit) {
  setting.store(unit, std::memory_order_relaxed);
  return KOVAResultCode::kSuccess;
}

struct Keyword {
  KOVAUnit unit;
  const char* text;
};

// The oddities are kept, see the header.
constexpr Keyword kKeywords[] = {
    {KOVAUnitUnknown, "UNKNOWN"},
    {KOVAUnitNanometer, "NANOMETER"},
    {KOVAUnitNanometer, "nm"},
    {KOVAUnitModel, "MODEL UNIT"},
    {KOVAUnitModel, "model"},
    {KOVAUnitMicrometer, "MICROMETER"},
    {KOVAUnitMicrometer, "micr"},
    {KOVAUnitMicrometer, "um"},
    {KOVAUnitMicrometer, "MICROMETERS"},
    {KOVAUnitMillimeter, "MILLIMETER"},
    {KOVAUnitMillimeter, "mm"},
    {KOVAUnitMillimeter, "MILLIMETERS"},
    {KOVAUnitCentimeter, "CENTIMETER"},
    {KOVAUnitCentimeter, "cm"},
    {KOVAUnitCentimeter, "CENTIMETERS"},
    {KOVAUnitDecimeter, "DECIMETER"},
    {KOVAUnitDecimeter, "deci"},
    {KOVAUnitDecimeter, "DECIMETERS"},
    {KOVAUnitMeter, "METER"},
    {KOVAUnitMeter, "m"},
    {KOVAUnitMeter, "METERS"},
    {KOVAUnitInch, "INCH"},
    {KOVAUnitInch, "in"},
    {KOVAUnitInch, "INCHES"},
    {KOVAUnitFoot, "FOOT"},
    {KOVAUnitFoot, "ft"},
    {KOVAUnitFoot, "FEETS"},
    {KOVAUnitMile, "MILE"},
    {KOVAUnitMile, "mi"},
    {KOVAUnitMile, "MILES"},
    {KOVAUnitMile, "MILS"},
    {KOVAUnitKilometer, "KILOMETER"},
    {KOVAUnitKilometer, "km"},
    {KOVAUnitKilometer, "KILOMETERS"},
    {KOVAUnitMilliinch, "MILLIINCH"},
    {KOVAUnitMilliinch, "mil"},
    {KOVAUnitMilliinch, "MILLIINCHES"},
    {KOVAUnitMicroinch, "MICROINCH"},
    {KOVAUnitMicroinch, "uin"},
    {KOVAUnitMicroinch, "MICROINCHES"},
};

}  // namespace

KOVAUnit KOVAUnitValue::GetApplicationUnit() { return get(applicationUnit); }

KOVAResult KOVAUnitValue::SetApplicationUnit(KOVAUnit unit) { return set(applicationUnit, unit); }

KOVAUnit KOVAUnitValue::GetReadUnit() { return get(readUnit); }

KOVAResult KOVAUnitValue::SetReadUnit(KOVAUnit unit) { return set(readUnit, unit); }

KOVAUnit KOVAUnitValue::GetWriteUnit() { return get(writeUnit); }

KOVAResult KOVAUnitValue::SetWriteUnit(KOVAUnit unit) { return set(writeUnit, unit); }

KOVAUnit KOVAUnitValue::GetUnitWhenUnspecified() { return get(unitWhenUnspecified); }

KOVAResult KOVAUnitValue::SetUnitWhenUnspecified(KOVAUnit unit) {
  return set(unitWhenUnspecified, unit);
}

KOVAResult KOVAUnitValue::GetUnitAsString(KOVAUnit unit, KOVAString& text) {
  const kova::internal::LengthUnit* const found = kova::internal::findLengthUnit(unit);
  if (found == nullptr) return KOVAResultCode::kErrorEncountered;
  text = KOVAString(found->text);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAUnitValue::GetUnitFromString(KOVAUnit& unit, const KOVAString& text) {
  for (const Keyword& keyword : kKeywords) {
    if (text.compareToIgnoreCase(KOVAString(keyword.text)) == 0) {
      unit = keyword.unit;
      return KOVAResultCode::kSuccess;
    }
  }
  return KOVAResultCode::kFailure;
}

double KOVAUnitValue::GetScalingFactor(KOVAUnit from, KOVAUnit to) {
  if (from == KOVAUnitUnknown || to == KOVAUnitUnknown || from == to) return 1.0;
  Gk_Unit source;
  Gk_Unit target;
  GetGkUnitFromKOVAUnit(from, source);
  GetGkUnitFromKOVAUnit(to, target);
  return source.mapTo(target);
}
