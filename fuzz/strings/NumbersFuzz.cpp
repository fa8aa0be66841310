// Numbers from texts against the C runtime, doubles to texts and back, tokens joined again.

#include "kovabase/strings/Gk_StringParser.h"
#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVAStringConversions.h"
#include "kovabase/strings/KOVAStringTokenizer.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

bool isSame(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : std::memcmp(&a, &b, sizeof(a)) == 0;
}

void checkIntegers(const KOVAString& text, const char* ascii) {
  errno = 0;
  const long long wide = std::strtoll(ascii, nullptr, 10);
  const bool isWide = errno == 0 && (wide != 0 || *ascii == '0');
  long long readWide = 0;
  require(KOVAStringToLongLong(text, readWide).IsSuccess() == isWide);
  if (isWide) require(readWide == wide);

  const bool isInt = isWide && wide >= INT_MIN && wide <= INT_MAX;
  int readInt = 0;
  require(KOVAStringToInteger(text, readInt).IsSuccess() == isInt);
  if (isInt) require(readInt == wide);

  errno = 0;
  const unsigned long long natural = std::strtoull(ascii, nullptr, 10);
  unsigned long long readNatural = 0;
  require(KOVAStringToULongLong(text, readNatural).IsSuccess() == (errno == 0));
  if (errno == 0) require(readNatural == natural);
}

void checkDouble(const KOVAString& text, const char* ascii) {
  char* end = nullptr;
  const double wanted = std::strtod(ascii, &end);
  const char* readEnd = nullptr;
  require(isSame(KOVAFloatUtil::FromText(ascii, readEnd), wanted));
  require(readEnd == end);

  double read = 0.0;
  const bool isZero = wanted <= 0.0 && wanted >= 0.0;
  const bool isRead = KOVAStringToDouble(text, read).IsSuccess();
  require(isRead == (!isZero || KOVAStringCheckIsZero(ascii)));
  if (isRead) require(isSame(read, wanted));

  const Gk_StringParser parser(ascii);
  const bool isWhole = end != ascii && end[std::strspn(end, " \t\n\v\f\r")] == 0;
  const bool isPlain = std::strpbrk(ascii, "xXnNiI") == nullptr;
  require(parser.isReal() == (isWhole && isPlain && std::isfinite(wanted)));
  if (parser.isReal()) require(isSame(parser.getReal(), wanted));
  if (parser.isInteger()) require(isSame(parser.getInteger(), wanted + 0.0));
}

void checkRoundTrip(double value) {
  char text[KOVAFloatUtil::kTextSize];
  const int length = KOVAFloatUtil::ToText(value, text);
  require(static_cast<int>(std::strlen(text)) == length);
  require(isSame(std::strtod(text, nullptr), value));
  // No text with fewer digits reads back.
  char shorter[64];
  std::snprintf(shorter, sizeof(shorter), "%.17g", value);
  require(static_cast<int>(std::strlen(shorter)) >= length || !std::isfinite(value));
}

void checkTokens(const KOVAString& text) {
  const KOVAStringTokenizer tokenizer(text, ',');
  KOVAString joined;
  for (int i = 0; i < tokenizer.GetTokenCount(); ++i) {
    KOVAString token;
    require(tokenizer.GetToken(i, token).IsSuccess());
    require(token.indexOf(static_cast<unsigned short>(',')) == -1);
    if (i != 0) joined.append(static_cast<unsigned short>(','));
    joined.append(token);
  }
  require(joined == text);
  require((tokenizer.GetTokenCount() == 0) == text.isEmpty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string ascii;
  for (std::size_t i = 0; i < size && data[i] != 0; ++i) {
    ascii += static_cast<char>(data[i] & 0x7F);
  }
  ascii.resize(std::strlen(ascii.c_str()));
  const KOVAString text(ascii.c_str(), "US-ASCII");
  checkIntegers(text, ascii.c_str());
  checkDouble(text, ascii.c_str());
  checkTokens(text);
  double value = 0.0;
  if (size >= sizeof(value)) {
    std::memcpy(&value, data, sizeof(value));
    checkRoundTrip(value);
  }
  return 0;
}
