#pragma once

#include "kovabase/foundation/KOVAExport.h"

class Gk_ROString;
class KOVAString;

/// Tells whether a text is a number, and which. The whole text must be the number: an optional
/// sign, decimal digits, for a real number also a decimal point and an exponent; white space around
/// it is allowed. The decimal point is '.' whatever the process's locale. Neither hexadecimal nor
/// "inf" nor "nan" is a number here.
///
/// The text is read once, in the constructor, and not kept.
class KOVABASE_API Gk_StringParser {
 public:
  /// Null is an empty text, which is no number.
  explicit Gk_StringParser(const char* text) noexcept;
  explicit Gk_StringParser(const Gk_ROString& text) noexcept;
  explicit Gk_StringParser(const KOVAString& text);

  /// A sign and digits only, and in the range of `int`.
  bool isInteger() const noexcept { return _isInteger; }
  /// Any number that does not overflow a double; whole numbers too. What is too small is 0.
  bool isReal() const noexcept { return _isReal; }

  /// 0 when the text is not an integer.
  int getInteger() const noexcept { return _integer; }
  /// The nearest double; 0.0 when the text is not a number.
  double getReal() const noexcept { return _real; }

 private:
  void parse(const char* text) noexcept;

  double _real = 0.0;
  int _integer = 0;
  bool _isReal = false;
  bool _isInteger = false;
};
