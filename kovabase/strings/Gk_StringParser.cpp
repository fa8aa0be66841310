#include "kovabase/strings/Gk_StringParser.h"

#include "kovabase/strings/Gk_ROString.h"
#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/internal/AsciiText.h"

#include <charconv>
#include <system_error>

namespace {

const char* skipWhiteSpace(const char* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  return text;
}

const char* skipSign(const char* text) { return *text == '+' || *text == '-' ? text + 1 : text; }

const char* skipDigits(const char* text) {
  while (*text >= '0' && *text <= '9') ++text;
  return text;
}

}  // namespace

Gk_StringParser::Gk_StringParser(const char* text) noexcept { parse(text); }

Gk_StringParser::Gk_StringParser(const Gk_ROString& text) noexcept { parse(text.getText()); }

Gk_StringParser::Gk_StringParser(const KOVAString& text) {
  parse(kova::internal::AsciiText(text).get());
}

void Gk_StringParser::parse(const char* text) noexcept {
  if (text == nullptr) return;
  const char* const number = skipWhiteSpace(text);
  const char* const digits = skipSign(number);
  const char* const endOfDigits = skipDigits(digits);
  const char* end = endOfDigits;
  bool hasDigits = end != digits;
  if (*end == '.') {
    const char* const fraction = end + 1;
    end = skipDigits(fraction);
    hasDigits = hasDigits || end != fraction;
  }
  if (!hasDigits) return;
  if (*end == 'e' || *end == 'E') {
    const char* const exponent = skipSign(end + 1);
    end = skipDigits(exponent);
    if (end == exponent) return;
  }
  if (*skipWhiteSpace(end) != 0) return;

  const char* unused = nullptr;
  const double real = KOVAFloatUtil::FromText(number, unused);
  if (!KOVAFloatUtil::IsFinite(real)) return;
  _isReal = true;
  _real = real;
  if (end != endOfDigits) return;
  // from_chars takes a minus sign but no plus sign.
  const char* const first = *number == '+' ? digits : number;
  _isInteger = std::from_chars(first, end, _integer).ec == std::errc();
}
