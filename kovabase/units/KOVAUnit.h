#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

class Gk_Unit;
class KOVAString;

/// The units of length. The numbers are fixed; any other is out of range.
enum KOVAUnit : int {
  KOVAUnitUnknown = 0,
  /// A unit that only the model itself knows.
  KOVAUnitModel = 1,
  KOVAUnitNanometer = 2,
  KOVAUnitMicrometer = 3,
  KOVAUnitMillimeter = 4,
  KOVAUnitCentimeter = 5,
  KOVAUnitDecimeter = 6,
  KOVAUnitMeter = 7,
  KOVAUnitInch = 8,
  KOVAUnitFoot = 9,
  KOVAUnitMile = 10,
  KOVAUnitKilometer = 11,
  KOVAUnitMilliinch = 12,
  KOVAUnitMicroinch = 13,
};

// The functions may be called on any thread. ErrorEncountered says that a unit is unknown.

/// The unit that has `metres` metres, within 1e-10 for nanometre to centimetre, micro-inch and
/// milli-inch, and within 1e-5 for the others. A length between the units is the unknown unit, with
/// Success.
/// @return Success; ErrorEncountered, `unit` untouched, unless `metres` is above 0.
KOVABASE_API KOVAResult GetKOVAUnit(double metres, KOVAUnit& unit);

/// The same for the factor of `gkUnit`.
/// @return Success; ErrorEncountered, with the unknown unit, unless the factor is above 0.
KOVABASE_API KOVAResult GetKOVAUnitFromGkUnit(const Gk_Unit& gkUnit, KOVAUnit& unit);

/// Gives the unit's upper-case name and its millimetres.
/// @return Success; ErrorEncountered, `gkUnit` unset, for a unit without a length.
KOVABASE_API KOVAResult GetGkUnitFromKOVAUnit(const KOVAUnit& unit, Gk_Unit& gkUnit);

/// The upper-case name in one word, such as "MILLIMETER".
/// @return Success; ErrorEncountered, though with their names, for the unknown and the model unit;
///   ErrorEncountered, `name` untouched, out of range.
KOVABASE_API KOVAResult GetUnitName(KOVAUnit unit, KOVAString& name);

/// How many metres the unit has. A foot and a mile are those of 12 and 63360 times the double
/// 0.0254: one unit in the last place below 0.3048 and 1609.344, and kept so.
/// @return Success; ErrorEncountered, `metres` 0, for a unit without a length.
KOVABASE_API KOVAResult GetUnitScaleFactor(KOVAUnit unit, double& metres);
