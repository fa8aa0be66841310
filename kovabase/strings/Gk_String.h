#pragma once

#include "kovabase/strings/Gk_RWString.h"

#include <cstdarg>

class KOVAString;

/// The narrow string of fields and lists: an editable text that is also made from formats and
/// from `KOVAString`, and goes back to it. Its code page on that road is UTF-8.
class KOVABASE_API Gk_String : public Gk_RWString {
 public:
  using Gk_RWString::Gk_RWString;
  Gk_String() noexcept = default;
  Gk_String(const Gk_ROString& other) : Gk_RWString(other) {}
  Gk_String(Gk_ROString&& other) noexcept : Gk_RWString(static_cast<Gk_ROString&&>(other)) {}
  /// The text as UTF-8; what has no UTF-8 form becomes U+FFFD.
  explicit Gk_String(const KOVAString& text);

  /// The bytes read as UTF-8; malformed ones become U+FFFD.
  KOVAString toKOVAString() const;

  /// Writes its arguments as `printf` does, at whatever length. The text is never cut.
  /// @return an empty string when `printf` refuses the format or an argument.
  static Gk_String format(const char* format, ...) KOVABASE_PRINTF(1, 2);
  static Gk_String formatList(const char* format, va_list arguments) KOVABASE_PRINTF(1, 0);
};

/// Both texts joined.
KOVABASE_API Gk_String operator+(const Gk_ROString& left, const Gk_ROString& right);
