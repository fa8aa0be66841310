#include "kovabase/strings/KOVAStringISO10646Writer.h"

#include "kovabase/strings/internal/CharBuffer.h"
#include "kovabase/strings/internal/CodeUnits.h"
#include "kovabase/strings/internal/StepEscapes.h"

#include <cstring>
#include <limits>

using namespace kova::internal;

namespace {

constexpr std::size_t kMarkers = 2 * kStepMarkerLength;

// The bytes of the encoded text: four for each unit outside ASCII, and two markers for each run.
std::size_t encodedLength(const unsigned short* units, std::size_t count) {
  std::size_t wide = 0;
  std::size_t runs = 0;
  bool isBehindWide = false;
  for (std::size_t i = 0; i < count; ++i) {
    const bool isWide = units[i] > 127;
    wide += isWide ? 1 : 0;
    runs += isWide && !isBehindWide ? 1 : 0;
    isBehindWide = isWide;
  }
  return count - wide + wide * kStepQuadrupletLength + runs * kMarkers;
}

}  // namespace

KOVAStringISO10646Writer::KOVAStringISO10646Writer(const KOVAString& text) : _text(text) {}

KOVAStringISO10646Writer::KOVAStringISO10646Writer(const KOVAStringISO10646Writer&) = default;

KOVAStringISO10646Writer& KOVAStringISO10646Writer::operator=(const KOVAStringISO10646Writer&) =
    default;

KOVAStringISO10646Writer::~KOVAStringISO10646Writer() = default;

KOVAResult KOVAStringISO10646Writer::GetResult(KOVAString& result) {
  std::size_t length = 0;
  const CharBuffer<char> encoded(GetEncodedAsciiString(_text, length));
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) throwAllocException();
  _encoded = KOVAString::fromBytes(encoded.get(), static_cast<int>(length), "US-ASCII");
  result = _encoded;
  return KOVAResultCode::kSuccess;
}

char* KOVAStringISO10646Writer::GetEncodedAsciiString(const KOVAString& text, std::size_t& length) {
  const unsigned short* at = text.getUnits();
  const unsigned short* const end = at + text.length();
  length = encodedLength(at, static_cast<std::size_t>(text.length()));
  CharBuffer<char> encoded = makeCharBuffer<char>(length + 1);
  char* out = encoded.get();
  while (at != end) {
    const std::size_t plain = narrowASCII(at, static_cast<std::size_t>(end - at), out);
    at += plain;
    out += plain;
    if (at == end) break;
    std::memcpy(out, "\\X2\\", kStepMarkerLength);
    out += kStepMarkerLength;
    for (; at != end && !IsUSAscii(*at); ++at) {
      GetQuadrupletAsciiString(*at, out);
      out += kStepQuadrupletLength;
    }
    std::memcpy(out, "\\X0\\", kStepMarkerLength);
    out += kStepMarkerLength;
  }
  *out = 0;
  return encoded.release();
}

void KOVAStringISO10646Writer::GetQuadrupletAsciiString(unsigned short unit,
                                                        char* digits) noexcept {
  for (int i = 0; i < kStepQuadrupletLength; ++i) {
    digits[i] = "0123456789ABCDEF"[(unit >> (12 - 4 * i)) & 0xF];
  }
}
