#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Doubles as texts, and what kind of number a double is. All static; any thread.
class KOVABASE_API KOVAFloatUtil {
 public:
  /// Characters that hold the text of any double, terminator included.
  static constexpr int kTextSize = 32;

  KOVAFloatUtil() = delete;

  /// Whether the value is not a number.
  static bool IsNaN(double value) noexcept;
  /// Plus or minus infinity.
  static bool IsInfinite(double value) noexcept;
  /// Neither infinite nor NaN.
  static bool IsFinite(double value) noexcept;

  /// Writes the shortest text that reads back to the same double, zero-terminated, in plain or
  /// exponent form, whichever is shorter ("0.1", "1234.5", "1e+05", "-0"). "inf", "-inf" and
  /// "nan" for what is not finite; the sign of a NaN is not written.
  /// @return characters written, without the terminator.
  static int ToText(double value, char (&text)[kTextSize]) noexcept;

  /// Reads the number that `text` starts with, as `strtod` does in the "C" locale: leading white
  /// space, a sign, a decimal or hexadecimal number, "inf" or "nan". The nearest double.
  /// @param text  zero-terminated; null reads as no number.
  /// @param end  receives the first character after the number, `text` when there is none.
  /// @return 0.0 when there is no number, plus or minus infinity when it is too large.
  static double FromText(const char* text, const char*& end) noexcept;
};
