#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/units/KOVAUnit.h"

class KOVAString;

/// The units of length of a translation, one of each for the process, and units as texts.
///
/// Any thread may get and set; each setting is on its own, so set them before the translation
/// starts when they must agree. The setters take any number and give Success.
class KOVABASE_API KOVAUnitValue {
 public:
  KOVAUnitValue() = delete;

  /// The unit of the host; the model unit at first.
  static KOVAUnit GetApplicationUnit();
  static KOVAResult SetApplicationUnit(KOVAUnit unit);
  /// The unit of the model that is read; unknown at first.
  static KOVAUnit GetReadUnit();
  static KOVAResult SetReadUnit(KOVAUnit unit);
  /// The unit of the model that is written; the model unit at first.
  static KOVAUnit GetWriteUnit();
  static KOVAResult SetWriteUnit(KOVAUnit unit);
  /// The unit of a model that names none; unknown at first.
  static KOVAUnit GetUnitWhenUnspecified();
  static KOVAResult SetUnitWhenUnspecified(KOVAUnit unit);

  /// The upper-case text that `GetUnitFromString` reads back, such as "MODEL UNIT".
  /// @return Success; ErrorEncountered, `text` untouched, out of range.
  static KOVAResult GetUnitAsString(KOVAUnit unit, KOVAString& text);

  /// The unit of a keyword, which is the whole text in any case: the texts of `GetUnitAsString` and
  /// "model"; "nm"; "micr", "um"; "mm"; "cm"; "deci"; "m"; "in"; "ft"; "mi"; "km"; "mil"; "uin";
  /// and the plurals "micrometers", "millimeters", "centimeters", "decimeters", "meters", "inches",
  /// "feets", "miles", "mils", "kilometers", "milliinches" and "microinches".
  /// The list is kept as it is: "mils" are miles though "mil" is the milli-inch, the plural of the
  /// foot is "feets", and nanometres have none.
  /// @return Success; Failure, `unit` untouched, for any other text.
  static KOVAResult GetUnitFromString(KOVAUnit& unit, const KOVAString& text);

  /// What a length in `from` is multiplied by to be in `to`; 1 when one of the two has no length.
  static double GetScalingFactor(KOVAUnit from, KOVAUnit to);
};
