#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// Decodes one "\S\c" escape of ISO 10303-21: the character of ISO 8859-1 whose code is that of
/// c plus 128.
class KOVABASE_API KOVAStringISO8859Reader {
 public:
  /// Copies the first four bytes of `escape`, fewer when it ends before; null is empty.
  explicit KOVAStringISO8859Reader(const char* escape) noexcept;
  virtual ~KOVAStringISO8859Reader();

  /// @return Success with one unit, "\S\a" gives U+00E1; Failure with the empty string when the
  ///   input is no such escape or ends before its character.
  KOVAResult GetResult(KOVAString& result);

 private:
  void DetermineEncoding() noexcept;

  char _input[5] = {};
  int _encoding = -1;  // not yet determined; 0 not this encoding, 1 "\S\"
  KOVAString _result;
};
