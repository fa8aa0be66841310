#include "kovabase/units/KOVASystemUnits.h"

#include "kovabase/units/KOVAUnitValue.h"

#include <atomic>
#include <optional>

namespace {

using SystemUnit = std::atomic<std::optional<KOVAUnit>>;
static_assert(SystemUnit::is_always_lock_free);

constinit SystemUnit sendingUnit;
constinit SystemUnit receivingUnit;

KOVAResult set(SystemUnit& setting, std::optional<KOVAUnit> unit) {
  setting.store(unit, std::memory_order_relaxed);
  return KOVAResultCode::kSuccess;
}

std::optional<KOVAUnit> pointedTo(const KOVAUnit* unit) {
  return unit != nullptr ? std::optional<KOVAUnit>(*unit) : std::nullopt;
}

}  // namespace

KOVAResult get_sending_system_unit(KOVAUnit& unit) {
  unit = sendingUnit.load(std::memory_order_relaxed).value_or(KOVAUnitUnknown);
  return KOVAResultCode::kSuccess;
}

KOVAResult get_receiving_system_unit(KOVAUnit& unit) {
  unit = receivingUnit.load(std::memory_order_relaxed).value_or(KOVAUnitModel);
  return KOVAResultCode::kSuccess;
}

KOVAResult set_sending_system_unit(KOVAUnit unit) { return set(sendingUnit, unit); }

KOVAResult set_receiving_system_unit(KOVAUnit unit) { return set(receivingUnit, unit); }

KOVAResult set_sending_system_unit(const KOVAUnit* unit) {
  return set(sendingUnit, pointedTo(unit));
}

KOVAResult set_receiving_system_unit(const KOVAUnit* unit) {
  return set(receivingUnit, pointedTo(unit));
}

KOVAResult set_internal_unit(KOVAUnit sending, KOVAUnit receiving) {
  set_sending_system_unit(sending);
  return set_receiving_system_unit(receiving);
}

KOVAResult set_internal_unit(bool useUnitValues) {
  if (useUnitValues) {
    return set_internal_unit(KOVAUnitValue::GetApplicationUnit(), KOVAUnitValue::GetWriteUnit());
  }
  set(sendingUnit, std::nullopt);
  return set(receivingUnit, std::nullopt);
}
