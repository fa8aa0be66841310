#include "kovabase/strings/KOVAFloatUtil.h"

#include "kovabase/platform/Locale.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace {

bool isDecimalDigit(char c) { return c >= '0' && c <= '9'; }

bool isWhiteSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Whether a decimal number can contain the character: a digit, sign, point or 'e'.
bool isDecimalText(char c) {
  constexpr auto bit = [](char one) { return std::uint64_t{1} << (one - '+'); };
  constexpr std::uint64_t kSet =
      bit('+') | bit('-') | bit('.') | (std::uint64_t{0x3FF} << ('0' - '+')) | bit('E') | bit('e');
  const unsigned index = static_cast<unsigned char>(c) - static_cast<unsigned>('+');
  return index < 64 && ((kSet >> index) & 1) != 0;
}

// Past the last character that a decimal number can contain; the text may go on for long.
const char* endOfDecimalText(const char* text) {
  while (isDecimalText(*text)) ++text;
  return text;
}

}  // namespace

bool KOVAFloatUtil::IsNaN(double value) noexcept { return std::isnan(value); }

bool KOVAFloatUtil::IsInfinite(double value) noexcept { return std::isinf(value); }

bool KOVAFloatUtil::IsFinite(double value) noexcept { return std::isfinite(value); }

int KOVAFloatUtil::ToText(double value, char (&text)[kTextSize]) noexcept {
  if (std::isnan(value)) {
    std::memcpy(text, "nan", 4);
    return 3;
  }
  // Cannot fail: the longest text has 24 characters.
  char* end = std::to_chars(text, text + kTextSize - 1, value).ptr;
  *end = 0;
  return static_cast<int>(end - text);
}

double KOVAFloatUtil::FromText(const char* text, const char*& end) noexcept {
  end = text;
  if (text == nullptr) return 0.0;
  const char* first = text;
  while (isWhiteSpace(*first)) ++first;
  const bool isNegative = *first == '-';
  if (isNegative || *first == '+') ++first;
  if (isDecimalDigit(*first) || *first == '.') {
    double magnitude = 0.0;
    const auto [stop, error] = std::from_chars(first, endOfDecimalText(first), magnitude);
    // What is left: hexadecimal texts, and those out of range, where the two differ.
    if (error == std::errc() && *stop != 'x' && *stop != 'X') {
      end = stop;
      return isNegative ? -magnitude : magnitude;
    }
  }
  return kova::platform::readDouble(text, end);
}
