#pragma once

#include <cstddef>

/// Work on raw text that needs neither ICU nor memory: the inner loops of the string.
/// `count` is in the elements of the pointer before it. Nothing reads or writes outside the given
/// ranges.
namespace kova::internal {

/// Widens the ASCII bytes at the beginning.
/// @return their number: the index of the first byte above 127, or `count`.
std::size_t widenASCII(const char* bytes, std::size_t count, unsigned short* out) noexcept;
void widenLatin1(const char* bytes, std::size_t count, unsigned short* out) noexcept;

/// Decodes UTF-8. Each maximal part of a sequence that is ill-formed becomes one U+FFFD (Unicode
/// 3.9, "substitution of maximal subparts").
/// @param out  has room for `count` units.
/// @return the number of units written.
std::size_t decodeUTF8(const char* bytes, std::size_t count, unsigned short* out) noexcept;

/// Narrows the units at the beginning that are at most 127 or 255.
/// @return their number.
std::size_t narrowASCII(const unsigned short* units, std::size_t count, char* out) noexcept;
std::size_t narrowLatin1(const unsigned short* units, std::size_t count, char* out) noexcept;

/// The bytes that encodeUTF8() writes.
std::size_t sizeInUTF8(const unsigned short* units, std::size_t count) noexcept;
/// Lone surrogates become U+FFFD.
/// @return the end of what was written.
char* encodeUTF8(const unsigned short* units, std::size_t count, char* out) noexcept;

/// The number of code points; a lone surrogate counts as one.
std::size_t countCodePoints(const unsigned short* units, std::size_t count) noexcept;
/// The code point at `index`, which is moved on behind it; U+FFFD for a lone surrogate.
int nextCodePoint(const unsigned short* units, std::size_t count, std::size_t& index) noexcept;

/// Three-way comparison by code points: -1, 0 or 1.
int compareCodePoints(const unsigned short* a, std::size_t countA, const unsigned short* b,
                      std::size_t countB) noexcept;

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

/// The first or last position at or after `from` where `text`, which is not empty, occurs without
/// tearing a surrogate pair of the range that begins at `from`.
std::size_t findFirst(const unsigned short* units, std::size_t count, const unsigned short* text,
                      std::size_t textCount, std::size_t from) noexcept;
std::size_t findLast(const unsigned short* units, std::size_t count, const unsigned short* text,
                     std::size_t textCount, std::size_t from) noexcept;

/// A 32-bit hash of all units.
unsigned hashUnits(const unsigned short* units, std::size_t count) noexcept;

constexpr bool isSurrogate(unsigned unit) noexcept { return unit >> 11 == 0x1BU; }
constexpr bool isLeadSurrogate(unsigned unit) noexcept { return unit >> 10 == 0x36U; }
constexpr bool isTrailSurrogate(unsigned unit) noexcept { return unit >> 10 == 0x37U; }

}  // namespace kova::internal
