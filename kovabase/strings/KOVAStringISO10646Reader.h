#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/Gk_ROString.h"
#include "kovabase/strings/KOVAString.h"

/// Decodes one "\X2\...\X0\" escape of ISO 10303-21: UTF-16 units as groups of four hexadecimal
/// digits ("quadruplets").
class KOVABASE_API KOVAStringISO10646Reader {
 public:
  /// Copies `escape`; null is empty.
  explicit KOVAStringISO10646Reader(const char* escape);
  virtual ~KOVAStringISO10646Reader();

  /// In each group the first character that is no hexadecimal digit ends the number; a group that
  /// begins with one is U+0000. Surrogates are taken over as they come.
  /// @return Success; Failure with the empty string when the input does not begin with "\X2\" and
  /// end
  ///   with "\X0\", or when what is between is not one or more groups of four characters.
  KOVAResult GetResult(KOVAString& result);

 private:
  void DetermineEncoding() noexcept;
  int GetNumberOfQuadruplets() const noexcept;
  void GetQuadrupletAt(int index, char (&quadruplet)[5]) const noexcept;
  static unsigned short GetUChar(const char* quadruplet) noexcept;
  /// Which half of a pair a unit is. Pairing itself is the string's concern.
  static constexpr bool IsLeadSurrogate(unsigned short unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
  }
  static constexpr bool IsTrailSurrogate(unsigned short unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
  }

  Gk_ROString _input;
  int _encoding = -1;  // not yet determined; 0 not this encoding, 2 "\X2\"
  KOVAString _result;
};
