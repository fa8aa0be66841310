#pragma once

namespace kova::internal {

/// The directives of ISO 10303-21 strings that are understood: "\S\c" is one character of
/// ISO 8859-1 whose code is that of c plus 128, "\X2\...\X0\" a run of UTF-16 units as groups of
/// four hexadecimal digits.
inline constexpr int kStepMarkerLength =
    4;  // of "\X2\" and "\X0\", and of "\S\" with its character
inline constexpr int kStepQuadrupletLength = 4;

/// Whether `text`, zero-terminated, starts with a backslash, the two characters and a backslash.
template <typename Unit>
constexpr bool isStepMarker(const Unit* text, char first, char second) noexcept {
  return text[0] == '\\' && text[1] == first && text[2] == second && text[3] == '\\';
}

/// Whether `text`, zero-terminated, starts with "\S\"; its character may be missing.
template <typename Unit>
constexpr bool isStepShift(const Unit* text) noexcept {
  return text[0] == '\\' && text[1] == 'S' && text[2] == '\\';
}

/// The unit that "\S\" followed by the byte stands for.
constexpr unsigned short decodeStepShift(unsigned char byte) noexcept {
  return static_cast<unsigned short>((byte - 128) & 0xFF);
}

/// The value of a hexadecimal digit of either case, 16 for any other character.
constexpr unsigned hexadecimalValue(unsigned c) noexcept {
  if (c - '0' < 10U) return c - '0';
  const unsigned letter = (c | 0x20U) - 'a';
  return letter < 6U ? letter + 10U : 16U;
}

/// The unit that four characters stand for. The first one that is no hexadecimal digit ends the
/// number, so "E9 0" is 0xE9 and "XY00" is 0.
template <typename Unit>
constexpr unsigned short decodeStepQuadruplet(const Unit* digits) noexcept {
  unsigned value = 0;
  for (int i = 0; i < kStepQuadrupletLength; ++i) {
    const unsigned digit = hexadecimalValue(static_cast<unsigned>(digits[i]));
    if (digit > 15U) break;
    value = value * 16U + digit;
  }
  return static_cast<unsigned short>(value);
}

}  // namespace kova::internal
