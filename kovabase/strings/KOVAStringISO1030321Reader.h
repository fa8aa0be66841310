#pragma once

#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAStringISO1030321Converter.h"

class KOVAString;

/// Decodes the strings of ISO 10303-21 files (STEP): "\S\c" is the character of ISO 8859-1 whose
/// code is that of c plus 128, "\X2\00E9\X0\" a run of UTF-16 units in hexadecimal digits. All
/// other directives ("\P\", "\X\", "\X4\", doubled backslashes and apostrophes) stay as they are.
class KOVABASE_API KOVAStringISO1030321Reader : public KOVAStringISO1030321Converter {
 public:
  KOVAStringISO1030321Reader();
  ~KOVAStringISO1030321Reader() override;

  /// Decodes all escapes in one pass, in constant stack.
  /// @param text  in the default code page, the text between the apostrophes; null is empty.
  /// @return Success; Failure when an escape is malformed: "\S\" without a character, "\X2\"
  /// without
  ///   "\X0\", or with digits whose number is 0 or no multiple of four. `out` is then decoded up to
  ///   the last well-formed escape, and the rest stands as it is.
  ///
  /// The first "\X0\" behind the last escape belongs to the next "\X2\", even when it stands before
  /// it, which is then malformed; kept so.
  KOVAResult ConvertFromASCII(const char* text, KOVAString& out);
};
