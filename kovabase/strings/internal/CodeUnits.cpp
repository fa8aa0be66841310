#include "kovabase/strings/internal/CodeUnits.h"

#include <cstdint>
#include <cstring>

namespace kova::internal {

namespace {

constexpr unsigned short kReplacementCharacter = 0xFFFD;

unsigned byteAt(const char* bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

unsigned short toUnit(unsigned value) { return static_cast<unsigned short>(value); }

unsigned combine(unsigned lead, unsigned trail) {
  return 0x10000U + ((lead - 0xD800U) << 10) + (trail - 0xDC00U);
}

std::size_t narrowBelow(const unsigned short* units, std::size_t count, char* out, unsigned limit) {
  std::size_t i = 0;
  for (; i < count && units[i] < limit; ++i) out[i] = static_cast<char>(units[i]);
  return i;
}

// Whether a pair of surrogates reaches over the begin or the end of a match.
bool tearsPair(const unsigned short* units, std::size_t count, std::size_t begin, std::size_t end) {
  return (begin > 0 && isTrailSurrogate(units[begin]) && isLeadSurrogate(units[begin - 1])) ||
         (end < count && isLeadSurrogate(units[end - 1]) && isTrailSurrogate(units[end]));
}

bool matchesAt(const unsigned short* units, std::size_t count, const unsigned short* text,
               std::size_t textCount, std::size_t begin) {
  return std::memcmp(units + begin, text, textCount * sizeof *text) == 0 &&
         !tearsPair(units, count, begin, begin + textCount);
}

// Moves the units of pairs above all others: U+10000 comes after U+FFFF.
unsigned codePointRank(const unsigned short* units, std::size_t count, std::size_t index) {
  const unsigned unit = units[index];
  if (unit < 0xD800U) return unit;
  const bool isPaired =
      (isLeadSurrogate(unit) && index + 1 < count && isTrailSurrogate(units[index + 1])) ||
      (isTrailSurrogate(unit) && index > 0 && isLeadSurrogate(units[index - 1]));
  return isPaired ? unit + 0x10000U : unit;
}

}  // namespace

std::size_t widenASCII(const char* bytes, std::size_t count, unsigned short* out) noexcept {
  std::size_t i = 0;
  for (; i < count && byteAt(bytes, i) < 0x80; ++i) out[i] = toUnit(byteAt(bytes, i));
  return i;
}

void widenLatin1(const char* bytes, std::size_t count, unsigned short* out) noexcept {
  for (std::size_t i = 0; i < count; ++i) out[i] = toUnit(byteAt(bytes, i));
}

std::size_t decodeUTF8(const char* bytes, std::size_t count, unsigned short* out) noexcept {
  std::size_t units = 0;
  std::size_t i = 0;
  while (i < count) {
    const unsigned lead = byteAt(bytes, i++);
    if (lead < 0x80) {
      out[units++] = toUnit(lead);
      continue;
    }
    // The range of the second byte keeps out overlong forms, surrogates and what is above 0x10FFFF.
    unsigned trails = 0;
    unsigned lowest = 0x80;
    unsigned highest = 0xBF;
    unsigned codePoint = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
      trails = 1;
      codePoint = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      trails = 2;
      codePoint = lead & 0x0F;
      if (lead == 0xE0) lowest = 0xA0;
      if (lead == 0xED) highest = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      trails = 3;
      codePoint = lead & 0x07;
      if (lead == 0xF0) lowest = 0x90;
      if (lead == 0xF4) highest = 0x8F;
    } else {
      out[units++] = kReplacementCharacter;
      continue;
    }
    for (; trails > 0 && i < count; --trails, ++i) {
      const unsigned trail = byteAt(bytes, i);
      if (trail < lowest || trail > highest) break;
      codePoint = (codePoint << 6) | (trail & 0x3F);
      lowest = 0x80;
      highest = 0xBF;
    }
    if (trails > 0) {
      out[units++] = kReplacementCharacter;
    } else if (codePoint < 0x10000U) {
      out[units++] = toUnit(codePoint);
    } else {
      out[units++] = toUnit(0xD7C0U + (codePoint >> 10));
      out[units++] = toUnit(0xDC00U + (codePoint & 0x3FFU));
    }
  }
  return units;
}

std::size_t narrowASCII(const unsigned short* units, std::size_t count, char* out) noexcept {
  return narrowBelow(units, count, out, 0x80);
}

std::size_t narrowLatin1(const unsigned short* units, std::size_t count, char* out) noexcept {
  return narrowBelow(units, count, out, 0x100);
}

std::size_t sizeInUTF8(const unsigned short* units, std::size_t count) noexcept {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned unit = units[i];
    if (isLeadSurrogate(unit) && i + 1 < count && isTrailSurrogate(units[i + 1])) {
      bytes += 4;
      ++i;
    } else {
      bytes += unit < 0x80 ? 1U : unit < 0x800 ? 2U : 3U;
    }
  }
  return bytes;
}

char* encodeUTF8(const unsigned short* units, std::size_t count, char* out) noexcept {
  for (std::size_t i = 0; i < count;) {
    const unsigned codePoint = static_cast<unsigned>(nextCodePoint(units, count, i));
    if (codePoint < 0x80) {
      *out++ = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
      *out++ = static_cast<char>(0xC0 | (codePoint >> 6));
      *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
      *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
      *out++ = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
      *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
      *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
      *out++ = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
      *out++ = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
      *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    }
  }
  return out;
}

std::size_t countCodePoints(const unsigned short* units, std::size_t count) noexcept {
  std::size_t codePoints = count;
  for (std::size_t i = 1; i < count; ++i) {
    if (isTrailSurrogate(units[i]) && isLeadSurrogate(units[i - 1])) --codePoints;
  }
  return codePoints;
}

int nextCodePoint(const unsigned short* units, std::size_t count, std::size_t& index) noexcept {
  const unsigned unit = units[index++];
  if (!isSurrogate(unit)) return static_cast<int>(unit);
  if (isLeadSurrogate(unit) && index < count && isTrailSurrogate(units[index])) {
    return static_cast<int>(combine(unit, units[index++]));
  }
  return kReplacementCharacter;
}

int compareCodePoints(const unsigned short* a, std::size_t countA, const unsigned short* b,
                      std::size_t countB) noexcept {
  const std::size_t shorter = countA < countB ? countA : countB;
  std::size_t i = 0;
  while (i < shorter && a[i] == b[i]) ++i;
  if (i == shorter) return countA < countB ? -1 : countA > countB ? 1 : 0;
  return codePointRank(a, countA, i) < codePointRank(b, countB, i) ? -1 : 1;
}

std::size_t findFirst(const unsigned short* units, std::size_t count, const unsigned short* text,
                      std::size_t textCount, std::size_t from) noexcept {
  for (std::size_t i = from; i + textCount <= count; ++i) {
    if (units[i] == text[0] && matchesAt(units, count, text, textCount, i)) return i;
  }
  return kNotFound;
}

std::size_t findLast(const unsigned short* units, std::size_t count, const unsigned short* text,
                     std::size_t textCount, std::size_t from) noexcept {
  if (textCount > count) return kNotFound;
  for (std::size_t i = count - textCount + 1; i > from;) {
    --i;
    if (units[i] == text[0] && matchesAt(units, count, text, textCount, i)) return i;
  }
  return kNotFound;
}

unsigned hashUnits(const unsigned short* units, std::size_t count) noexcept {
  std::uint32_t hash = 2166136261U;
  for (std::size_t i = 0; i < count; ++i) hash = (hash ^ units[i]) * 16777619U;
  return hash;
}

}  // namespace kova::internal
