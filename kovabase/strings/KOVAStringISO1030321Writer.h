#pragma once

#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAStringISO1030321Converter.h"

class KOVAString;

/// Encodes texts as the strings of ISO 10303-21 files (STEP) have them; see
/// KOVAStringISO10646Writer.
class KOVABASE_API KOVAStringISO1030321Writer : public KOVAStringISO1030321Converter {
 public:
  KOVAStringISO1030321Writer();
  ~KOVAStringISO1030321Writer() override;

  /// @param out  receives the encoded text in US-ASCII, zero-terminated; null for an empty text.
  /// The
  ///   writer's own, until it converts again, releases it or is destroyed.
  /// @return Success, always.
  KOVAResult ConvertToASCII(const KOVAString& text, const char*& out);
};
