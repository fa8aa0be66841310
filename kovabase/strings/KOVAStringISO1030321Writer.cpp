#include "kovabase/strings/KOVAStringISO1030321Writer.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringISO10646Writer.h"
#include "kovabase/strings/internal/CharBuffer.h"

KOVAStringISO1030321Writer::KOVAStringISO1030321Writer() = default;

KOVAStringISO1030321Writer::~KOVAStringISO1030321Writer() = default;

KOVAResult KOVAStringISO1030321Writer::ConvertToASCII(const KOVAString& text, const char*& out) {
  out = nullptr;
  ReleaseUSAsciiString();
  KOVAString encoded;
  KOVAResult result = KOVAStringISO10646Writer(text).GetResult(encoded);
  if (result.IsFailure()) return result;
  const int size = encoded.getConvertToMBCSSize("US-ASCII");
  if (size > 1) {
    auto buffer = kova::internal::makeCharBuffer<char>(static_cast<std::size_t>(size));
    result = encoded.convertToMBCS(buffer.get(), size, "US-ASCII", false, '_');
    if (result.IsFailure()) return result;
    _usAsciiString = buffer.release();
    out = _usAsciiString;
  }
  return result;
}
