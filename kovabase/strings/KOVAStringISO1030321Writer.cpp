#include "kovabase/strings/KOVAStringISO1030321Writer.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringISO10646Writer.h"

#include <cstddef>

KOVAStringISO1030321Writer::KOVAStringISO1030321Writer() = default;

KOVAStringISO1030321Writer::~KOVAStringISO1030321Writer() = default;

KOVAResult KOVAStringISO1030321Writer::ConvertToASCII(const KOVAString& text, const char*& out) {
  out = nullptr;
  ReleaseUSAsciiString();
  if (!text.isEmpty()) {
    std::size_t length = 0;
    _usAsciiString = KOVAStringISO10646Writer::GetEncodedAsciiString(text, length);
    out = _usAsciiString;
  }
  return KOVAResultCode::kSuccess;
}
