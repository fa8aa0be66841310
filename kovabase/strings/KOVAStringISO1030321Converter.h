#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Base of the two converters between texts and strings of ISO 10303-21 files (STEP). Keeps the
/// ASCII side of the last conversion.
class KOVABASE_API KOVAStringISO1030321Converter {
 public:
  KOVAStringISO1030321Converter(const KOVAStringISO1030321Converter&) = delete;
  KOVAStringISO1030321Converter& operator=(const KOVAStringISO1030321Converter&) = delete;
  virtual ~KOVAStringISO1030321Converter();

  /// Frees the ASCII text before the converter's end.
  void ReleaseUSAsciiString() noexcept;

 protected:
  KOVAStringISO1030321Converter() = default;

  /// Replaces the ASCII text by a copy of `text`; null is none.
  void ResetUSAsciiString(const char* text);

  /// Zero-terminated; null when there is none.
  char* _usAsciiString = nullptr;
};
