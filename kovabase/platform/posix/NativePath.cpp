#include "kovabase/platform/NativePath.h"

namespace kova::platform {

namespace {

constexpr unsigned short kEscapedByte = 0xDC00;

// What no stored path can spell: bytes outside ASCII that are no UTF-8, and the backslash.
bool isEscapedByte(unsigned short unit) { return (unit & 0xFF80U) == 0xDC80U || unit == 0xDC5CU; }

bool isLeadSurrogate(unsigned unit) { return (unit & 0xFC00U) == 0xD800U; }
bool isTrailSurrogate(unsigned unit) { return (unit & 0xFC00U) == 0xDC00U; }

bool startsWith(const unsigned short* units, const unsigned short* end, const char* prefix) {
  for (; *prefix != 0; ++prefix, ++units) {
    if (units == end || *units != *prefix) return false;
  }
  return true;
}

char* write(char* to, unsigned codePoint) {
  const auto byte = [](unsigned value) { return static_cast<char>(value); };
  if (codePoint < 0x80U) {
    *to++ = byte(codePoint);
  } else if (codePoint < 0x800U) {
    *to++ = byte(0xC0U | codePoint >> 6);
    *to++ = byte(0x80U | (codePoint & 0x3FU));
  } else if (codePoint < 0x10000U) {
    *to++ = byte(0xE0U | codePoint >> 12);
    *to++ = byte(0x80U | (codePoint >> 6 & 0x3FU));
    *to++ = byte(0x80U | (codePoint & 0x3FU));
  } else {
    *to++ = byte(0xF0U | codePoint >> 18);
    *to++ = byte(0x80U | (codePoint >> 12 & 0x3FU));
    *to++ = byte(0x80U | (codePoint >> 6 & 0x3FU));
    *to++ = byte(0x80U | (codePoint & 0x3FU));
  }
  return to;
}

// The code point at `bytes` and its length in bytes; length 0 when there is no valid UTF-8.
struct Decoded {
  unsigned codePoint;
  std::size_t length;
};

Decoded decode(const unsigned char* bytes, std::size_t count) {
  const unsigned first = bytes[0];
  if (first < 0x80U) return {first, 1};
  const std::size_t length = first >= 0xF0U ? 4 : first >= 0xE0U ? 3 : 2;
  if (first < 0xC2U || first > 0xF4U || count < length) return {0, 0};
  unsigned codePoint = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((bytes[i] & 0xC0U) != 0x80U) return {0, 0};
    codePoint = codePoint << 6 | (bytes[i] & 0x3FU);
  }
  constexpr unsigned kSmallest[] = {0, 0, 0x80U, 0x800U, 0x10000U};
  if (codePoint < kSmallest[length] || codePoint > 0x10FFFFU || (codePoint & ~0x7FFU) == 0xD800U) {
    return {0, 0};
  }
  return {codePoint, length};
}

}  // namespace

NativePath::NativePath(const unsigned short* units, int count) noexcept {
  _text[0] = 0;
  _isValid = count > 0 && count <= kMostUnits && encode(units, units + count) && _text[0] != 0;
}

bool NativePath::encode(const unsigned short* units, const unsigned short* end) noexcept {
  char* to = _text;
  if (startsWith(units, end, "\\\\?\\UNC\\")) {
    units += 8;
    *to++ = '/';
    *to++ = '/';
  } else if (startsWith(units, end, "\\\\?\\")) {
    units += 4;
  }
  while (units != end) {
    const unsigned unit = *units++;
    if (unit == 0) return false;
    if (unit == '\\') {
      *to++ = '/';
    } else if (isLeadSurrogate(unit) && units != end && isTrailSurrogate(*units)) {
      to = write(to, 0x10000U + ((unit & 0x3FFU) << 10) + (*units++ & 0x3FFU));
    } else if (isEscapedByte(static_cast<unsigned short>(unit))) {
      *to++ = static_cast<char>(unit & 0xFFU);
    } else if ((unit & 0xF800U) == 0xD800U) {
      return false;
    } else {
      to = write(to, unit);
    }
  }
  *to = 0;
  return true;
}

std::vector<unsigned short> storedForm(const char* bytes, std::size_t count) {
  std::vector<unsigned short> units;
  units.reserve(count);
  const auto* from = reinterpret_cast<const unsigned char*>(bytes);
  for (std::size_t i = 0; i < count;) {
    const Decoded decoded = decode(from + i, count - i);
    if (decoded.length == 0 || decoded.codePoint == '\\') {
      units.push_back(static_cast<unsigned short>(kEscapedByte + from[i++]));
      continue;
    }
    i += decoded.length;
    if (decoded.codePoint < 0x10000U) {
      units.push_back(static_cast<unsigned short>(decoded.codePoint));
    } else {
      const unsigned offset = decoded.codePoint - 0x10000U;
      units.push_back(static_cast<unsigned short>(0xD800U + (offset >> 10)));
      units.push_back(static_cast<unsigned short>(0xDC00U + (offset & 0x3FFU)));
    }
  }
  return units;
}

}  // namespace kova::platform
