#include "kovabase/strings/internal/CodeUnits.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace kova::internal {

namespace {

// Vectors of the compiler: plain loops where a machine has none.
using Bytes16 = unsigned char __attribute__((vector_size(16)));
using Bytes8 = unsigned char __attribute__((vector_size(8)));
using Units8 = unsigned short __attribute__((vector_size(16)));
using Mask8 = short __attribute__((vector_size(16)));

constexpr unsigned short kReplacementCharacter = 0xFFFD;
constexpr std::uint64_t kHighBits = 0x8080808080808080U;

template <class Value>
Value load(const void* source) {
  Value value;
  std::memcpy(&value, source, sizeof value);
  return value;
}

template <class Value>
void store(void* target, const Value& value) {
  std::memcpy(target, &value, sizeof value);
}

template <class Vector>
bool isAnySet(const Vector& vector) {
  std::uint64_t words[2];
  static_assert(sizeof vector == sizeof words);
  std::memcpy(words, &vector, sizeof words);
  return (words[0] | words[1]) != 0;
}

unsigned byteAt(const char* bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

bool isASCII8(const char* bytes) { return (load<std::uint64_t>(bytes) & kHighBits) == 0; }

// The number of zero bytes before the first other one in memory; `word` is not 0.
std::size_t countFirstBytes(std::uint64_t word) {
  const int bits =
      std::endian::native == std::endian::little ? std::countr_zero(word) : std::countl_zero(word);
  return static_cast<std::size_t>(bits) / 8;
}

unsigned short toUnit(unsigned value) { return static_cast<unsigned short>(value); }

unsigned combine(unsigned lead, unsigned trail) {
  return 0x10000U + ((lead - 0xD800U) << 10) + (trail - 0xDC00U);
}

void widen8(const char* bytes, unsigned short* out) {
  store(out, __builtin_convertvector(load<Bytes8>(bytes), Units8));
}

bool isASCII32(const unsigned short* units) {
  const Units8 together = load<Units8>(units) | load<Units8>(units + 8) | load<Units8>(units + 16) |
                          load<Units8>(units + 24);
  return !isAnySet(together & 0xFF80);
}

// The number of units below 128 before the first other one.
std::size_t countASCII(const Units8& units) {
  const Mask8 isOther = units > 0x7F;
  const Bytes8 isOtherByte = __builtin_convertvector(isOther, Bytes8);
  const auto bytes = load<std::uint64_t>(&isOtherByte);
  return bytes == 0 ? 8 : countFirstBytes(bytes);
}

// The bytes as units, by interleaving them with zeros.
void widen16(const Bytes16& bytes, unsigned short* out) {
  const Bytes16 zero = {};
  const Bytes16& low = std::endian::native == std::endian::little ? bytes : zero;
  const Bytes16& high = std::endian::native == std::endian::little ? zero : bytes;
  store(out,
        __builtin_shufflevector(low, high, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
  store(out + 8, __builtin_shufflevector(low, high, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29,
                                         14, 30, 15, 31));
}

// Whether eight units first make long texts quicker by a tenth: then no two stores that follow each
// other lie in different cache lines. Blocks of malloc begin 16 bytes behind a multiple of 32.
bool isWorthAligning(std::size_t count, const unsigned short* out) {
  return count >= 4096 && reinterpret_cast<std::uintptr_t>(out) % 32 == 16;
}

// The low bytes of the units.
void narrow16(const Units8& first, const Units8& second, char* out) {
  constexpr int k = std::endian::native == std::endian::little ? 0 : 1;
  const Bytes16 low = reinterpret_cast<Bytes16>(first);
  const Bytes16 high = reinterpret_cast<Bytes16>(second);
  store(out,
        __builtin_shufflevector(low, high, k, k + 2, k + 4, k + 6, k + 8, k + 10, k + 12, k + 14,
                                k + 16, k + 18, k + 20, k + 22, k + 24, k + 26, k + 28, k + 30));
}

template <unsigned Limit>
std::size_t narrowBelow(const unsigned short* units, std::size_t count, char* out) {
  constexpr unsigned short kTooHigh = static_cast<unsigned short>(~(Limit - 1U));
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const Units8 a = load<Units8>(units + i);
    const Units8 b = load<Units8>(units + i + 8);
    const Units8 c = load<Units8>(units + i + 16);
    const Units8 d = load<Units8>(units + i + 24);
    if (isAnySet((a | b | c | d) & kTooHigh)) break;
    narrow16(a, b, out + i);
    narrow16(c, d, out + i + 16);
  }
  for (; i + 8 <= count; i += 8) {
    const Units8 block = load<Units8>(units + i);
    if (isAnySet(block & kTooHigh)) break;
    store(out + i, __builtin_convertvector(block, Bytes8));
  }
  for (; i < count && units[i] < Limit; ++i) out[i] = static_cast<char>(units[i]);
  return i;
}

// The length of the longest begin of a well-formed sequence among bytes that are none; 1 at least.
std::size_t countIllFormed(const char* bytes, std::size_t count) {
  const unsigned lead = byteAt(bytes, 0);
  if (lead < 0xC2 || lead > 0xF4 || count < 2) return 1;
  // These keep out overlong forms, surrogates and what is above U+10FFFF.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byteAt(bytes, 1) < lowest || byteAt(bytes, 1) > highest) return 1;
  return lead >= 0xF0 && count > 2 && (byteAt(bytes, 2) & 0xC0U) == 0x80 ? 3 : 2;
}

// Decodes what begins with a byte above 127 and moves `out` on.
const char* decodeSequence(const char* bytes, const char* bytesEnd, unsigned short*& out) {
  const unsigned lead = byteAt(bytes, 0);
  const std::ptrdiff_t left = bytesEnd - bytes;
  if (lead < 0xE0) {
    if (left >= 2 && lead >= 0xC2) {
      const unsigned trail = byteAt(bytes, 1) ^ 0x80U;
      if (trail < 0x40) {
        *out++ = toUnit((lead & 0x1F) << 6 | trail);
        return bytes + 2;
      }
    }
  } else if (lead < 0xF0) {
    if (left >= 3) {
      const unsigned middle = byteAt(bytes, 1) ^ 0x80U;
      const unsigned trail = byteAt(bytes, 2) ^ 0x80U;
      const unsigned unit = (lead & 0x0F) << 12 | middle << 6 | trail;
      if ((middle | trail) < 0x40 && unit >= 0x800 && !isSurrogate(unit)) {
        *out++ = toUnit(unit);
        return bytes + 3;
      }
    }
  } else if (left >= 4 && lead < 0xF5) {
    const unsigned second = byteAt(bytes, 1) ^ 0x80U;
    const unsigned third = byteAt(bytes, 2) ^ 0x80U;
    const unsigned trail = byteAt(bytes, 3) ^ 0x80U;
    const unsigned codePoint = (lead & 0x07) << 18 | second << 12 | third << 6 | trail;
    if ((second | third | trail) < 0x40 && codePoint >= 0x10000 && codePoint <= 0x10FFFF) {
      *out++ = toUnit(0xD7C0U + (codePoint >> 10));
      *out++ = toUnit(0xDC00U + (codePoint & 0x3FFU));
      return bytes + 4;
    }
  }
  *out++ = kReplacementCharacter;
  return bytes + countIllFormed(bytes, static_cast<std::size_t>(left));
}

// Whether a pair of surrogates that lies within units `from` .. `count` reaches over the begin or
// the end of a match.
bool tearsPair(const unsigned short* units, std::size_t count, std::size_t begin, std::size_t end,
               std::size_t from) {
  return (begin > from && isTrailSurrogate(units[begin]) && isLeadSurrogate(units[begin - 1])) ||
         (end < count && isLeadSurrogate(units[end - 1]) && isTrailSurrogate(units[end]));
}

bool matchesAt(const unsigned short* units, std::size_t count, const unsigned short* text,
               std::size_t textCount, std::size_t begin, std::size_t from) {
  return std::memcmp(units + begin, text, textCount * sizeof *text) == 0 &&
         !tearsPair(units, count, begin, begin + textCount, from);
}

// The product of both, its upper half folded onto the lower.
std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
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

// So many counts of at most 2 fit into a lane of 16 bits.
constexpr std::size_t kCountsPerLane = 0x7FFF;

std::size_t sumOfLanes(const Units8& lanes) {
  std::size_t sum = 0;
  for (int i = 0; i < 8; ++i) sum += lanes[i];
  return sum;
}

std::size_t countPairs(const unsigned short* units, std::size_t count) {
  std::size_t pairs = 0;
  std::size_t i = 1;
  while (i + 8 <= count) {
    Units8 counts = {};
    for (std::size_t k = 0; k < kCountsPerLane && i + 8 <= count; ++k, i += 8) {
      const Mask8 isPair = ((load<Units8>(units + i) & 0xFC00) == 0xDC00) &
                           ((load<Units8>(units + i - 1) & 0xFC00) == 0xD800);
      counts -= reinterpret_cast<Units8>(isPair);
    }
    pairs += sumOfLanes(counts);
  }
  for (; i < count; ++i) pairs += isTrailSurrogate(units[i]) && isLeadSurrogate(units[i - 1]);
  return pairs;
}

}  // namespace

std::size_t widenASCII(const char* bytes, std::size_t count, unsigned short* out) noexcept {
  std::size_t i = 0;
  if (isWorthAligning(count, out) && isASCII8(bytes)) {
    widen8(bytes, out);
    i = 8;
  }
  for (; i + 64 <= count; i += 64) {
    const Bytes16 a = load<Bytes16>(bytes + i);
    const Bytes16 b = load<Bytes16>(bytes + i + 16);
    const Bytes16 c = load<Bytes16>(bytes + i + 32);
    const Bytes16 d = load<Bytes16>(bytes + i + 48);
    if (isAnySet((a | b | c | d) & 0x80)) break;
    widen16(a, out + i);
    widen16(b, out + i + 16);
    widen16(c, out + i + 32);
    widen16(d, out + i + 48);
  }
  for (; i + 16 <= count; i += 16) {
    const Bytes16 block = load<Bytes16>(bytes + i);
    if (isAnySet(block & 0x80)) break;
    widen16(block, out + i);
  }
  if (i + 8 <= count && isASCII8(bytes + i)) {
    widen8(bytes + i, out + i);
    i += 8;
  }
  // The last eight once more, so that short texts need no loop over single bytes.
  if (i < count && i + 8 > count && count >= 8 && isASCII8(bytes + count - 8)) {
    widen8(bytes + count - 8, out + count - 8);
    return count;
  }
  for (; i < count && byteAt(bytes, i) < 0x80; ++i) out[i] = toUnit(byteAt(bytes, i));
  return i;
}

void widenLatin1(const char* bytes, std::size_t count, unsigned short* out) noexcept {
  std::size_t i = 0;
  if (isWorthAligning(count, out)) {
    widen8(bytes, out);
    i = 8;
  }
  for (; i + 16 <= count; i += 16) widen16(load<Bytes16>(bytes + i), out + i);
  if (i + 8 <= count) {
    widen8(bytes + i, out + i);
    i += 8;
  }
  if (i < count && count >= 8) {
    widen8(bytes + count - 8, out + count - 8);
    return;
  }
  for (; i < count; ++i) out[i] = toUnit(byteAt(bytes, i));
}

std::size_t decodeUTF8(const char* bytes, std::size_t count, unsigned short* out) noexcept {
  const char* const bytesEnd = bytes + count;
  unsigned short* const begin = out;
  while (bytes != bytesEnd) {
    // ASCII eight bytes at once, and without a branch on how many of them are: where the script
    // changes from word to word no processor guesses it.
    while (bytesEnd - bytes >= 8) {
      const std::uint64_t highBits = load<std::uint64_t>(bytes) & kHighBits;
      const std::size_t run = highBits == 0 ? 8 : countFirstBytes(highBits);
      widen8(bytes, out);
      bytes += run;
      out += run;
      if (run < 8) break;
    }
    while (bytes != bytesEnd && (*bytes & 0x80) == 0) *out++ = toUnit(byteAt(bytes++, 0));
    while (bytes != bytesEnd && (*bytes & 0x80) != 0) bytes = decodeSequence(bytes, bytesEnd, out);
  }
  return static_cast<std::size_t>(out - begin);
}

std::size_t narrowASCII(const unsigned short* units, std::size_t count, char* out) noexcept {
  return narrowBelow<0x80>(units, count, out);
}

std::size_t narrowLatin1(const unsigned short* units, std::size_t count, char* out) noexcept {
  return narrowBelow<0x100>(units, count, out);
}

std::size_t sizeInUTF8(const unsigned short* units, std::size_t count) noexcept {
  std::size_t bytes = count;
  std::size_t i = 0;
  while (i + 32 <= count && isASCII32(units + i)) i += 32;
  Mask8 isSurrogateSeen = {};
  while (i + 8 <= count) {
    Units8 extra = {};
    for (std::size_t k = 0; k < kCountsPerLane && i + 8 <= count; ++k, i += 8) {
      const Units8 block = load<Units8>(units + i);
      extra -= reinterpret_cast<Units8>(block > 0x7F) + reinterpret_cast<Units8>(block > 0x7FF);
      isSurrogateSeen |= (block & 0xF800) == 0xD800;
    }
    bytes += sumOfLanes(extra);
  }
  bool mayHavePairs = isAnySet(isSurrogateSeen);
  for (; i < count; ++i) {
    bytes += (units[i] > 0x7F ? 1U : 0U) + (units[i] > 0x7FF ? 1U : 0U);
    mayHavePairs |= isSurrogate(units[i]);
  }
  // Three bytes for each half so far; a pair takes four.
  return mayHavePairs ? bytes - 2 * countPairs(units, count) : bytes;
}

char* encodeUTF8(const unsigned short* units, std::size_t count, char* out) noexcept {
  for (std::size_t i = 0; i < count;) {
    // As in decoding. What is left takes a byte per unit at least, so there is room for eight.
    while (i + 8 <= count) {
      const Units8 block = load<Units8>(units + i);
      store(out, __builtin_convertvector(block, Bytes8));
      const std::size_t run = countASCII(block);
      i += run;
      out += run;
      if (run < 8) break;
    }
    while (i < count && units[i] < 0x80) *out++ = static_cast<char>(units[i++]);
    while (i < count && units[i] >= 0x80) {
      const unsigned unit = units[i];
      if (unit < 0x800) {
        *out++ = static_cast<char>(0xC0 | (unit >> 6));
        *out++ = static_cast<char>(0x80 | (unit & 0x3F));
        ++i;
        continue;
      }
      const unsigned codePoint = static_cast<unsigned>(nextCodePoint(units, count, i));
      if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
      } else {
        *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
        *out++ = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
      }
      *out++ = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
      *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    }
  }
  return out;
}

std::size_t countCodePoints(const unsigned short* units, std::size_t count) noexcept {
  return count - countPairs(units, count);
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
  while (i + 8 <= shorter && !isAnySet(load<Units8>(a + i) ^ load<Units8>(b + i))) i += 8;
  while (i < shorter && a[i] == b[i]) ++i;
  if (i == shorter) return countA < countB ? -1 : countA > countB ? 1 : 0;
  return codePointRank(a, countA, i) < codePointRank(b, countB, i) ? -1 : 1;
}

std::size_t findFirst(const unsigned short* units, std::size_t count, const unsigned short* text,
                      std::size_t textCount, std::size_t from) noexcept {
  if (textCount > count || from > count - textCount) return kNotFound;
  const std::size_t end = count - textCount + 1;
  const std::size_t toLast = textCount - 1;
  const Units8 first = Units8{} + text[0];
  const Units8 last = Units8{} + text[toLast];
  std::size_t i = from;
  // Both ends of the text at eight positions at once: what passes is worth a closer look.
  for (; i + 8 <= end; i += 8) {
    const Mask8 candidates =
        (load<Units8>(units + i) == first) & (load<Units8>(units + i + toLast) == last);
    if (!isAnySet(candidates)) continue;
    for (std::size_t k = 0; k < 8; ++k) {
      if (candidates[k] != 0 && matchesAt(units, count, text, textCount, i + k, from)) return i + k;
    }
  }
  for (; i < end; ++i) {
    if (units[i] == text[0] && matchesAt(units, count, text, textCount, i, from)) return i;
  }
  return kNotFound;
}

std::size_t findLast(const unsigned short* units, std::size_t count, const unsigned short* text,
                     std::size_t textCount, std::size_t from) noexcept {
  if (textCount > count) return kNotFound;
  for (std::size_t i = count - textCount + 1; i > from;) {
    --i;
    if (units[i] == text[0] && matchesAt(units, count, text, textCount, i, from)) return i;
  }
  return kNotFound;
}

unsigned hashUnits(const unsigned short* units, std::size_t count) noexcept {
  // Multiply and fold, 32 bytes a step in two lanes that do not wait for each other.
  constexpr std::uint64_t kSeed = 0x9E3779B97F4A7C15U;
  constexpr std::uint64_t kFactor = 0xD6E8FEB86659FD93U;
  // The factors of a product begin differently, or equal words could change places.
  std::uint64_t hash = count ^ kFactor;
  std::uint64_t otherHash = kSeed;
  std::size_t i = 0;
  for (; count - i > 16; i += 16) {
    hash = mix(load<std::uint64_t>(units + i) ^ kSeed, load<std::uint64_t>(units + i + 4) ^ hash);
    otherHash = mix(load<std::uint64_t>(units + i + 8) ^ kFactor,
                    load<std::uint64_t>(units + i + 12) ^ otherHash);
  }
  hash ^= otherHash;
  for (; count - i > 3; i += 4) hash = mix(load<std::uint64_t>(units + i) ^ kSeed, hash ^ kFactor);
  std::uint64_t rest = 0;
  for (; i < count; ++i) rest = rest << 16 | units[i];
  hash = mix(rest ^ kSeed, hash ^ kFactor);
  return static_cast<unsigned>(hash ^ (hash >> 32));
}

}  // namespace kova::internal
