#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// Splits a text at one character. Empty tokens count: "a,,b" has three and "a,b," ends with an
/// empty one; the empty text alone has none.
class KOVABASE_API KOVAStringTokenizer {
 public:
  KOVAStringTokenizer(const KOVAString& text, unsigned short delimiter);
  /// `text` in the default code page; null is empty.
  KOVAStringTokenizer(const char* text, unsigned short delimiter);
  virtual ~KOVAStringTokenizer();

  int GetTokenCount() const noexcept;

  /// @return Success; Failure, `token` unchanged, for an index outside 0 .. count - 1.
  KOVAResult GetToken(int index, KOVAString& token) const;

 private:
  KOVADynamicArray<KOVAString> _tokens;
};
