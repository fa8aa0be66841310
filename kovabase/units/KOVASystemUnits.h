#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/units/KOVAUnit.h"

// The units of length of the system that sends a model and of the one that receives it: one of each
// for the process, unset at first. Any thread may get and set; every function gives Success.

/// The unknown unit when unset.
KOVABASE_API KOVAResult get_sending_system_unit(KOVAUnit& unit);
/// The model unit when unset.
KOVABASE_API KOVAResult get_receiving_system_unit(KOVAUnit& unit);

/// Any number is taken as it is.
KOVABASE_API KOVAResult set_sending_system_unit(KOVAUnit unit);
KOVABASE_API KOVAResult set_receiving_system_unit(KOVAUnit unit);
/// Sets what `unit` points to; null unsets.
KOVABASE_API KOVAResult set_sending_system_unit(const KOVAUnit* unit);
KOVABASE_API KOVAResult set_receiving_system_unit(const KOVAUnit* unit);

/// Sets both.
KOVABASE_API KOVAResult set_internal_unit(KOVAUnit sending, KOVAUnit receiving);
/// True sets the sending unit to the application unit and the receiving unit to the write unit, as
/// `KOVAUnitValue` has them now; false unsets both.
KOVABASE_API KOVAResult set_internal_unit(bool useUnitValues);
