#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

#include <cstdint>

class KOVAString;

/// A time as a count of 100-nanosecond intervals since 1601-01-01 UTC, in two halves.
struct FILETIME {
  unsigned dwLowDateTime;
  unsigned dwHighDateTime;
};

/// Texts of dates, in UTC and always with English names, whatever the process's locale. Outputs
/// keep their value on failure. Any thread.
class KOVABASE_API KOVADate {
 public:
  KOVADate() = delete;

  /// @param seconds  since 1970-01-01 UTC; negative for times before.
  /// @param zoneMark  1 appends " UTC".
  /// @param shortForm  "03/07/2026" (month first) instead of
  ///   "Saturday, March 07, 2026 14 05 09", which has blanks between hours, minutes and seconds.
  /// @return Failure when the time has no year that fits, or the short form a year before 0.
  static KOVAResult FormatDate(std::int64_t seconds, KOVAString& text, int zoneMark,
                               bool shortForm);
  static KOVAResult FormatDate(const FILETIME& time, KOVAString& text, int zoneMark,
                               bool shortForm);
  /// Joins three texts with blanks, the second one first: "b a c".
  /// @return Failure when any of the three is empty.
  static KOVAResult FormatDate(const KOVAString& a, const KOVAString& b, const KOVAString& c,
                               KOVAString& text);

  /// "JAN" for 1 to "DEC" for 12. @return Failure for another month.
  static KOVAResult GetMonthStr(int month, KOVAString& text);
};
