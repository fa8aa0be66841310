#include "kovabase/strings/KOVAStringISO1030321Reader.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCharUtil.h"
#include "kovabase/strings/KOVAStringISO10646Reader.h"
#include "kovabase/strings/KOVAStringISO8859Reader.h"
#include "kovabase/strings/internal/StepEscapes.h"

#include <algorithm>
#include <utility>

namespace {

using namespace kova::internal;

// Collects units on the stack, so that a string is not appended to unit by unit.
class DecodedText {
 public:
  void add(unsigned short unit) {
    if (_filled == kChunkUnits) flush();
    _chunk[_filled++] = unit;
  }

  void add(const unsigned short* units, int count) {
    if (count > kChunkUnits - _filled) {
      flush();
      _text.append(units, count);
    } else {
      std::copy_n(units, count, _chunk + _filled);
      _filled += count;
    }
  }

  KOVAString take() {
    flush();
    return std::move(_text);
  }

 private:
  static constexpr int kChunkUnits = 512;

  void flush() {
    _text.append(_chunk, _filled);
    _filled = 0;
  }

  KOVAString _text;
  unsigned short _chunk[kChunkUnits];
  int _filled = 0;
};

bool isASCII(const unsigned short* first, const unsigned short* last) {
  unsigned all = 0;
  for (; first != last; ++first) all |= *first;
  return all < 128;
}

// What the reader of one escape makes of its ASCII form. Only escapes that hold characters outside
// ASCII take this way: how many characters their ASCII form has is for the code page to say.
template <typename Reader>
bool decodeASCIIForm(const unsigned short* first, const unsigned short* last,
                     DecodedText& decoded) {
  const KOVAString escape = KOVAString::fromUnits(first, static_cast<int>(last - first));
  const KOVAStringAsciiCharUtil ascii(escape, true, '_');
  Reader reader(ascii.GetBuffer());
  KOVAString result;
  if (reader.GetResult(result).IsFailure()) return false;
  decoded.add(result.getUnits(), result.length());
  return true;
}

const unsigned short* findBackslash(const unsigned short* from, const unsigned short* end) {
  return std::find(from, end, static_cast<unsigned short>('\\'));
}

// Behind the first "\X0\"; null when there is none.
const unsigned short* findEndOfQuadruplets(const unsigned short* from, const unsigned short* end) {
  for (from = findBackslash(from, end); from != end; from = findBackslash(from + 1, end)) {
    if (isStepMarker(from, 'X', '0')) return from + kStepMarkerLength;
  }
  return nullptr;
}

// Both decoders get the escape from its backslash to behind its end, and add nothing when they
// fail.
bool decodeShift(const unsigned short* first, const unsigned short* last, DecodedText& decoded) {
  if (last - first < kStepMarkerLength) return false;
  if (!isASCII(first, last)) return decodeASCIIForm<KOVAStringISO8859Reader>(first, last, decoded);
  decoded.add(decodeStepShift(static_cast<unsigned char>(first[3])));
  return true;
}

bool decodeQuadruplets(const unsigned short* first, const unsigned short* last,
                       DecodedText& decoded) {
  // Markers that share a backslash leave -1 characters between them.
  const std::ptrdiff_t count = last - first - 2 * kStepMarkerLength;
  if (count <= 0) return false;
  const unsigned short* digits = first + kStepMarkerLength;
  if (!isASCII(digits, digits + count)) {
    return decodeASCIIForm<KOVAStringISO10646Reader>(first, last, decoded);
  }
  if (count % kStepQuadrupletLength != 0) return false;
  for (const auto* end = digits + count; digits != end; digits += kStepQuadrupletLength) {
    decoded.add(decodeStepQuadruplet(digits));
  }
  return true;
}

}  // namespace

KOVAStringISO1030321Reader::KOVAStringISO1030321Reader() = default;

KOVAStringISO1030321Reader::~KOVAStringISO1030321Reader() = default;

KOVAResult KOVAStringISO1030321Reader::ConvertFromASCII(const char* text, KOVAString& out) {
  ResetUSAsciiString(text);
  KOVAString source(text);
  const unsigned short* const units = source.getUnits();
  const unsigned short* const end = units + source.length();

  DecodedText decoded;
  KOVAResult result = KOVAResultCode::kSuccess;
  const unsigned short* rest = units;  // behind the last escape
  bool isEndMarkerInRest = false;      // between there and `at`
  const unsigned short* at = findBackslash(units, end);
  while (at != end) {
    const bool isShift = isStepShift(at);
    if (!isShift && !isStepMarker(at, 'X', '2')) {
      isEndMarkerInRest = isEndMarkerInRest || isStepMarker(at, 'X', '0');
      at = findBackslash(at + 1, end);
      continue;
    }
    decoded.add(rest, static_cast<int>(at - rest));
    rest = at;
    bool isDecoded = false;
    if (isShift) {
      at = end - at < kStepMarkerLength ? end : at + kStepMarkerLength;
      isDecoded = decodeShift(rest, at, decoded);
    } else if (!isEndMarkerInRest) {
      // "\X2\X0\": the end marker may begin with the last backslash of the beginning.
      at = findEndOfQuadruplets(at + kStepMarkerLength - 1, end);
      isDecoded = at != nullptr && decodeQuadruplets(rest, at, decoded);
    }
    if (!isDecoded) {
      result = KOVAResultCode::kFailure;
      break;
    }
    rest = at;
    isEndMarkerInRest = false;
    at = findBackslash(rest, end);
  }
  if (rest == units) {
    out = std::move(source);
    return result;
  }
  decoded.add(rest, static_cast<int>(end - rest));
  out = decoded.take();
  return result;
}
