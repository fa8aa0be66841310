#include "kovabase/strings/KOVAStringISO1030321Reader.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCharUtil.h"
#include "kovabase/strings/KOVAStringISO10646Reader.h"
#include "kovabase/strings/KOVAStringISO8859Reader.h"
#include "kovabase/strings/internal/CodeUnits.h"
#include "kovabase/strings/internal/StepEscapes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

namespace {

using namespace kova::internal;

void copyUnits(const unsigned short* units, std::size_t count, unsigned short* out) {
  std::copy_n(units, count, out);
}

void copyUnits(const char* ascii, std::size_t count, unsigned short* out) {
  widenASCII(ascii, count, out);
}

// Collects units on the stack, so that a string is not appended to unit by unit.
class DecodedText {
 public:
  void add(unsigned short unit) {
    if (_filled == kChunkUnits) flush();
    _chunk[_filled++] = unit;
  }

  template <typename Unit>
  void add(const Unit* first, const Unit* last) {
    while (first != last) {
      if (_filled == kChunkUnits) flush();
      const std::size_t count =
          std::min(static_cast<std::size_t>(last - first), kChunkUnits - _filled);
      copyUnits(first, count, _chunk + _filled);
      first += count;
      _filled += count;
    }
  }

  KOVAString take() {
    flush();
    return std::move(_text);
  }

 private:
  static constexpr std::size_t kChunkUnits = 512;

  void flush() {
    _text.append(_chunk, static_cast<int>(_filled));
    _filled = 0;
  }

  KOVAString _text;
  std::size_t _filled = 0;
  unsigned short _chunk[kChunkUnits];
};

template <typename Unit>
bool isASCII(const Unit* first, const Unit* last) {
  unsigned all = 0;
  for (; first != last; ++first) all |= static_cast<std::make_unsigned_t<Unit>>(*first);
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
  decoded.add(result.getUnits(), result.getUnits() + result.length());
  return true;
}

template <typename Unit>
const Unit* findBackslash(const Unit* from, const Unit* end) {
  return std::find(from, end, static_cast<Unit>('\\'));
}

// Behind the first "\X0\"; null when there is none.
template <typename Unit>
const Unit* findEndOfQuadruplets(const Unit* from, const Unit* end) {
  for (from = findBackslash(from, end); from != end; from = findBackslash(from + 1, end)) {
    if (isStepMarker(from, 'X', '0')) return from + kStepMarkerLength;
  }
  return nullptr;
}

// The two below get an escape from its backslash to behind its end, and add nothing when they fail.

template <typename Unit>
bool decodeShift(const Unit* first, const Unit* last, DecodedText& decoded) {
  if (last - first < kStepMarkerLength) return false;
  if constexpr (sizeof(Unit) > 1) {
    if (!isASCII(first, last))
      return decodeASCIIForm<KOVAStringISO8859Reader>(first, last, decoded);
  }
  decoded.add(decodeStepShift(static_cast<unsigned char>(first[3])));
  return true;
}

template <typename Unit>
bool decodeQuadruplets(const Unit* first, const Unit* last, DecodedText& decoded) {
  // Markers that share a backslash leave -1 characters between them.
  const std::ptrdiff_t count = last - first - 2 * kStepMarkerLength;
  if (count <= 0) return false;
  const Unit* digits = first + kStepMarkerLength;
  if constexpr (sizeof(Unit) > 1) {
    if (!isASCII(digits, digits + count)) {
      return decodeASCIIForm<KOVAStringISO10646Reader>(first, last, decoded);
    }
  }
  if (count % kStepQuadrupletLength != 0) return false;
  for (const auto* end = digits + count; digits != end; digits += kStepQuadrupletLength) {
    decoded.add(decodeStepQuadruplet(digits));
  }
  return true;
}

// Decodes up to the first malformed escape.
// @return where the rest begins, that is `end` on success.
template <typename Unit>
const Unit* decodeEscapes(const Unit* rest, const Unit* end, DecodedText& decoded) {
  bool isEndMarkerInRest = false;  // between `rest` and `at`
  const Unit* at = findBackslash(rest, end);
  while (at != end) {
    const bool isShift = isStepShift(at);
    if (!isShift && !isStepMarker(at, 'X', '2')) {
      isEndMarkerInRest = isEndMarkerInRest || isStepMarker(at, 'X', '0');
      at = findBackslash(at + 1, end);
      continue;
    }
    decoded.add(rest, at);
    rest = at;
    if (isShift) {
      at = end - at < kStepMarkerLength ? end : at + kStepMarkerLength;
      if (!decodeShift(rest, at, decoded)) return rest;
    } else {
      if (isEndMarkerInRest) return rest;
      // "\X2\X0\": the end marker may begin with the last backslash of the beginning.
      at = findEndOfQuadruplets(at + kStepMarkerLength - 1, end);
      if (at == nullptr || !decodeQuadruplets(rest, at, decoded)) return rest;
    }
    rest = at;
    isEndMarkerInRest = false;
    at = findBackslash(rest, end);
  }
  decoded.add(rest, end);
  return end;
}

template <typename Unit>
KOVAResult decode(const Unit* text, const Unit* end, KOVAString& out) {
  DecodedText decoded;
  const Unit* const rest = decodeEscapes(text, end, decoded);
  decoded.add(rest, end);
  out = decoded.take();
  return rest == end ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

}  // namespace

KOVAStringISO1030321Reader::KOVAStringISO1030321Reader() = default;

KOVAStringISO1030321Reader::~KOVAStringISO1030321Reader() = default;

KOVAResult KOVAStringISO1030321Reader::ConvertFromASCII(const char* text, KOVAString& out) {
  ResetUSAsciiString(text);
  const char* const end = text != nullptr ? text + std::strlen(text) : nullptr;
  // ASCII reads the same in every default code page, and large files need not be widened first.
  if (isASCII(text, end)) return decode(text, end, out);
  const KOVAString source(text);
  return decode(source.getUnits(), source.getUnits() + source.length(), out);
}
