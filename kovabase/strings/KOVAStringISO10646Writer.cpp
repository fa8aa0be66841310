#include "kovabase/strings/KOVAStringISO10646Writer.h"

#include "kovabase/strings/internal/StepEscapes.h"

#include <algorithm>
#include <iterator>

using namespace kova::internal;

KOVAStringISO10646Writer::KOVAStringISO10646Writer(const KOVAString& text) : _text(text) {}

KOVAStringISO10646Writer::KOVAStringISO10646Writer(const KOVAStringISO10646Writer&) = default;

KOVAStringISO10646Writer& KOVAStringISO10646Writer::operator=(const KOVAStringISO10646Writer&) =
    default;

KOVAStringISO10646Writer::~KOVAStringISO10646Writer() = default;

KOVAResult KOVAStringISO10646Writer::GetResult(KOVAString& result) {
  _encoded.clear();
  int rest = 0;
  int start = 0;
  int end = 0;
  while (GetFirstNonAsciiSubstring(rest, start, end)) {
    _encoded.append(_text.getUnits() + rest, start - rest);
    GetEncodedAsciiString(start, end, _encoded);
    rest = end;
  }
  _encoded.append(_text.getUnits() + rest, _text.length() - rest);
  result = _encoded;
  return KOVAResultCode::kSuccess;
}

bool KOVAStringISO10646Writer::GetFirstNonAsciiSubstring(int from, int& start,
                                                         int& end) const noexcept {
  const unsigned short* const units = _text.getUnits();
  const unsigned short* const last = units + _text.length();
  const unsigned short* const first = std::find_if_not(units + from, last, IsUSAscii);
  start = static_cast<int>(first - units);
  end = static_cast<int>(std::find_if(first, last, IsUSAscii) - units);
  return start != end;
}

void KOVAStringISO10646Writer::GetEncodedAsciiString(int start, int end,
                                                     KOVAString& encoded) const {
  static constexpr unsigned short kBegin[] = {'\\', 'X', '2', '\\'};
  static constexpr unsigned short kEnd[] = {'\\', 'X', '0', '\\'};
  constexpr int kChunkUnits = 64;
  unsigned short chunk[2 * kStepMarkerLength + kChunkUnits * kStepQuadrupletLength];
  unsigned short* out = std::copy(std::begin(kBegin), std::end(kBegin), chunk);
  const unsigned short* const units = _text.getUnits();
  for (int i = start; i < end; ++i) {
    if ((i - start) % kChunkUnits == 0 && i != start) {
      encoded.append(chunk, static_cast<int>(out - chunk));
      out = chunk;
    }
    GetQuadrupletAsciiString(units[i], out);
    out += kStepQuadrupletLength;
  }
  out = std::copy(std::begin(kEnd), std::end(kEnd), out);
  encoded.append(chunk, static_cast<int>(out - chunk));
}

void KOVAStringISO10646Writer::GetQuadrupletAsciiString(unsigned short unit,
                                                        unsigned short* digits) noexcept {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  for (int i = 0; i < kStepQuadrupletLength; ++i) {
    digits[i] = static_cast<unsigned short>(kDigits[(unit >> (12 - 4 * i)) & 0xF]);
  }
}
