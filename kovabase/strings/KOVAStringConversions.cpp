#include "kovabase/strings/KOVAStringConversions.h"

#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/internal/AsciiText.h"
#include "kovabase/strings/internal/CharBuffer.h"

#include <charconv>
#include <cstring>
#include <cwctype>
#include <limits>
#include <system_error>

using kova::internal::AsciiText;
using kova::internal::makeCharBuffer;

namespace {

enum class Sign { kPlus, kMinus };

// The digits that a text starts with, behind white space and a sign; 0 when there are none.
// False when their value does not fit.
bool readMagnitude(const char* text, Sign& sign, unsigned long long& magnitude) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  sign = *text == '-' ? Sign::kMinus : Sign::kPlus;
  if (*text == '-' || *text == '+') ++text;
  const char* end = text;
  while (*end >= '0' && *end <= '9') ++end;
  magnitude = 0;
  return std::from_chars(text, end, magnitude).ec != std::errc::result_out_of_range;
}

template <typename Integer>
KOVAResult readSigned(const KOVAString& text, Integer& value) {
  const AsciiText ascii(text);
  if (ascii.get() == nullptr) return KOVAResultCode::kFailure;
  Sign sign = Sign::kPlus;
  unsigned long long magnitude = 0;
  if (!readMagnitude(ascii.get(), sign, magnitude)) return KOVAResultCode::kFailure;
  // The most negative value has a magnitude of one above the largest.
  const unsigned long long largest =
      static_cast<unsigned long long>(std::numeric_limits<Integer>::max()) +
      (sign == Sign::kMinus ? 1 : 0);
  if (magnitude > largest) return KOVAResultCode::kFailure;
  if (magnitude == 0 && ascii.get()[0] != '0') return KOVAResultCode::kFailure;
  value = static_cast<Integer>(sign == Sign::kMinus ? 0 - magnitude : magnitude);
  return KOVAResultCode::kSuccess;
}

template <typename Integer>
KOVAResult readUnsigned(const KOVAString& text, Integer& value) {
  const AsciiText ascii(text);
  if (ascii.get() == nullptr) return KOVAResultCode::kFailure;
  Sign sign = Sign::kPlus;
  unsigned long long magnitude = 0;
  if (!readMagnitude(ascii.get(), sign, magnitude)) return KOVAResultCode::kFailure;
  if (magnitude > std::numeric_limits<Integer>::max()) return KOVAResultCode::kFailure;
  value = static_cast<Integer>(sign == Sign::kMinus ? 0 - magnitude : magnitude);
  return KOVAResultCode::kSuccess;
}

KOVAString fromAscii(const char* chars, std::ptrdiff_t count) {
  return KOVAString::fromBytes(chars, static_cast<int>(count), "US-ASCII");
}

template <typename Integer>
KOVAString writeInteger(Integer value) {
  char text[std::numeric_limits<Integer>::digits10 + 2];
  const char* end = std::to_chars(text, text + sizeof(text), value).ptr;
  return fromAscii(text, end - text);
}

template <typename MapUnit>
KOVAString mapUnits(const KOVAString& text, MapUnit mapUnit) {
  KOVAString result;
  result.reserve(text.length());
  const unsigned short* units = text.getUnits();
  unsigned short chunk[256];
  int filled = 0;
  for (int i = 0; i < text.length(); ++i) {
    chunk[filled++] = static_cast<unsigned short>(mapUnit(units[i]));
    if (filled == 256) {
      result.append(chunk, filled);
      filled = 0;
    }
  }
  result.append(chunk, filled);
  return result;
}

}  // namespace

KOVAResult KOVAStringToInteger(const KOVAString& text, int& value) {
  return readSigned(text, value);
}

KOVAResult KOVAStringToLongLong(const KOVAString& text, long long& value) {
  return readSigned(text, value);
}

KOVAResult KOVAStringToULong(const KOVAString& text, unsigned long& value) {
  return readUnsigned(text, value);
}

KOVAResult KOVAStringToULongLong(const KOVAString& text, unsigned long long& value) {
  return readUnsigned(text, value);
}

KOVAResult KOVAStringToDouble(const KOVAString& text, double& value) {
  const AsciiText ascii(text);
  if (ascii.get() == nullptr) return KOVAResultCode::kFailure;
  const char* end = nullptr;
  const double number = KOVAFloatUtil::FromText(ascii.get(), end);
  const bool isZero = number <= 0.0 && number >= 0.0;
  if (isZero && !KOVAStringCheckIsZero(ascii.get())) return KOVAResultCode::kFailure;
  value = number;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAStringToBool(const KOVAString& text, bool& value) {
  // Folding never changes the length of a text that equals one of these.
  if (text.length() == 4 && text.equalsIgnoreCase(KOVAString("true", "US-ASCII"))) {
    value = true;
  } else if (text.length() == 5 && text.equalsIgnoreCase(KOVAString("false", "US-ASCII"))) {
    value = false;
  } else {
    return KOVAResultCode::kFailure;
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAStringToChars(const KOVAString& text, char*& chars) {
  const int size = text.getConvertToMBCSSize(nullptr);
  if (size < 1) return KOVAResultCode::kFailure;
  auto buffer = makeCharBuffer<char>(static_cast<std::size_t>(size));
  const KOVAResult result = text.convertToMBCS(buffer.get(), size, nullptr, false, 0);
  if (result.IsFailure()) return KOVAResultCode::kFailure;
  chars = buffer.release();
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAStringToWideChars(const KOVAString& text, unsigned short*& chars) {
  const int size = text.getConvertToWideCharacterSize();
  if (size < 1) return KOVAResultCode::kFailure;
  auto buffer = makeCharBuffer<unsigned short>(static_cast<std::size_t>(size));
  const KOVAResult result = text.convertToWideCharacter(buffer.get(), size);
  if (result.IsFailure()) return KOVAResultCode::kFailure;
  chars = buffer.release();
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAReleaseChars(char*& chars) {
  kova::internal::release(chars);
  chars = nullptr;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAReleaseWideChars(unsigned short*& chars) {
  kova::internal::release(chars);
  chars = nullptr;
  return KOVAResultCode::kSuccess;
}

KOVAString KOVAStringFromBool(bool value) {
  return KOVAString(value ? "true" : "false", "US-ASCII");
}

KOVAString KOVAStringFromInteger(int value) { return writeInteger(value); }

KOVAString KOVAStringFromULong(unsigned long value) { return writeInteger(value); }

KOVAString KOVAStringFromULongLong(unsigned long long value) { return writeInteger(value); }

KOVAString KOVAStringFromDouble(double value) {
  char text[KOVAFloatUtil::kTextSize];
  return fromAscii(text, KOVAFloatUtil::ToText(value, text));
}

KOVAString KOVAStringFromUnicodeWChars(const unsigned short* chars) { return KOVAString(chars); }

KOVAString KOVAStringConvertToLowerCase(const KOVAString& text) {
  return mapUnits(text, [](unsigned short unit) { return std::towlower(unit); });
}

KOVAString KOVAStringConvertToUpperCase(const KOVAString& text) {
  return mapUnits(text, [](unsigned short unit) { return std::towupper(unit); });
}

KOVAString KOVAStringGetTrimmedString(const KOVAString& text) {
  const unsigned short* units = text.getUnits();
  int start = 0;
  int end = text.length();
  while (start < end && std::iswspace(units[start]) != 0) ++start;
  while (end > start && std::iswspace(units[end - 1]) != 0) --end;
  return KOVAString::fromUnits(units + start, end - start);
}

bool KOVAStringCheckIfWhiteSpace(const KOVAString& text) {
  const unsigned short* units = text.getUnits();
  for (int i = 0; i < text.length(); ++i) {
    if (std::iswspace(units[i]) == 0) return false;
  }
  return true;
}

bool KOVAStringCheckIsZero(const char* text) {
  if (text == nullptr || *text == 0 || *text == 'E' || *text == 'e') return false;
  const auto isExponent = [](char c) { return c == 'E' || c == 'e'; };
  int points = 0;
  bool hasDigit = false;
  for (const char* c = text; *c != 0; ++c) {
    const char next = c[1];
    if (*c == '0') {
      hasDigit = true;
    } else if (*c == '.') {
      ++points;
    } else if (*c == '-' || *c == '+') {
      if (next == 0 || (c != text && !isExponent(c[-1]))) return false;
    } else if (isExponent(*c)) {
      if (next != '0' && next != '-' && next != '+') return false;
      if (points > 0) --points;
    } else {
      return false;
    }
  }
  return hasDigit && points <= 1;
}

KOVAResult RemoveDoubleQuotesAtStartAndEndOf(const KOVAString& in, KOVAString& out) {
  const unsigned short* units = in.getUnits();
  int start = 0;
  int end = in.length();
  while (start < end && units[start] == '"') ++start;
  while (end > start && units[end - 1] == '"') --end;
  out = KOVAString::fromUnits(units + start, end - start);
  return KOVAResultCode::kSuccess;
}

KOVAString KOVAStringReplaceNonASCIICharsWith(const KOVAString& text, unsigned short replacement) {
  return mapUnits(text,
                  [replacement](unsigned short unit) { return unit > 127 ? replacement : unit; });
}
