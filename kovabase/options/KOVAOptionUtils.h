#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

class KOVAOption;

/// Accessors for callers to whom a wrong type is a programming error. A null option gives false,
/// 0.0, 0 or the empty text; a value that cannot be read as asked throws a Gk_Exception that
/// carries the result and names the type.
class KOVABASE_API KOVAOptionUtils {
 public:
  KOVAOptionUtils() = delete;

  /// The current value, converted as `KOVAOption::GetValue` does.
  static bool GetBoolValue(const KOVAOption* option);
  static double GetDoubleValue(const KOVAOption* option);
  static int GetIntValue(const KOVAOption* option);
  static KOVAString GetStringValue(const KOVAOption* option);
};
