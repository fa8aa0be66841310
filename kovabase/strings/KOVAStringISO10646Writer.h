#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

#include <cstddef>

/// Encodes a text as ISO 10303-21 strings have it: each run of UTF-16 units above 127 becomes one
/// "\X2\...\X0\" escape with four upper-case hexadecimal digits for each unit. ASCII characters
/// stay as they are, backslash and apostrophe too, so a text that spells an escape reads back
/// decoded.
class KOVABASE_API KOVAStringISO10646Writer {
 public:
  explicit KOVAStringISO10646Writer(const KOVAString& text);
  KOVAStringISO10646Writer(const KOVAStringISO10646Writer& other);
  KOVAStringISO10646Writer& operator=(const KOVAStringISO10646Writer& other);
  virtual ~KOVAStringISO10646Writer();

  /// @return Success, always.
  KOVAResult GetResult(KOVAString& result);

 private:
  friend class KOVAStringISO1030321Writer;

  static bool IsUSAscii(unsigned short unit) noexcept { return unit < 128; }
  /// The encoded text on the library's heap, zero-terminated.
  /// @param length  receives its bytes without the terminator.
  static char* GetEncodedAsciiString(const KOVAString& text, std::size_t& length);
  /// Writes the four digits of the unit.
  static void GetQuadrupletAsciiString(unsigned short unit, char* digits) noexcept;

  KOVAString _text;
  KOVAString _encoded;
};
