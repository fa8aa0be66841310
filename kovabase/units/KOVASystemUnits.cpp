#include "kovabase/units/KOVASystemUnits.h"

#include "kovabase/units/KOVAUnitValue.h"

#include <atomic>
#include <cstdint>

namespace {

// A unit, or what no unit can be: one word, so that no thread sees half a change.
using SystemUnit = std::atomic<std::int64_t>;
constexpr std::int64_t kUnset = std::int64_t{1} << 32;

constinit SystemUnit sendingUnit{kUnset};
constinit SystemUnit receivingUnit{kUnset};

KOVAUnit get(const SystemUnit& setting, KOVAUnit whenUnset) {
  const std::int64_t unit = setting.load(std::memory_order_relaxed);
  return unit != kUnset ? static_cast<KOVAUnit>(unit) : whenUnset;
}

KOVAResult set(SystemUnit& setting, std::int64_t unit) {
  setting.store(unit, std::memory_order_relaxed);
  return KOVAResultCode::kSuccess;
}

}  // namespace

KOVAResult get_sending_system_unit(KOVAUnit& unit) {
  unit = get(sendingUnit, KOVAUnitUnknown);
  return KOVAResultCode::kSuccess;
}

KOVAResult get_receiving_system_unit(KOVAUnit& unit) {
  unit = get(receivingUnit, KOVAUnitModel);
  return KOVAResultCode::kSuccess;
}

KOVAResult set_sending_system_unit(KOVAUnit unit) { return set(sendingUnit, unit); }

KOVAResult set_receiving_system_unit(KOVAUnit unit) { return set(receivingUnit, unit); }

KOVAResult set_sending_system_unit(const KOVAUnit* unit) {
  return unit != nullptr ? set(sendingUnit, *unit) : set(sendingUnit, kUnset);
}

KOVAResult set_receiving_system_unit(const KOVAUnit* unit) {
  return unit != nullptr ? set(receivingUnit, *unit) : set(receivingUnit, kUnset);
}

KOVAResult set_internal_unit(KOVAUnit sending, KOVAUnit receiving) {
  set_sending_system_unit(sending);
  return set_receiving_system_unit(receiving);
}

KOVAResult set_internal_unit(bool useUnitValues) {
  if (useUnitValues) {
    return set_internal_unit(KOVAUnitValue::GetApplicationUnit(), KOVAUnitValue::GetWriteUnit());
  }
  set(sendingUnit, kUnset);
  return set(receivingUnit, kUnset);
}
