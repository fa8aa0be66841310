// The string's own work on units (UTF-8, UTF-32, search, comparison, parts) against ICU's.
// Input: one byte that splits what follows into two texts of UTF-16 units; it is also read as
// UTF-8.

#include "kovabase/strings/KOVAString.h"

#include <unicode/locid.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

int sign(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

KOVAString make(const std::u16string& units) {
  return KOVAString::fromUnits(reinterpret_cast<const unsigned short*>(units.data()),
                               static_cast<int>(units.size()));
}

icu::UnicodeString toICU(const std::u16string& units) {
  return icu::UnicodeString(units.data(), static_cast<int>(units.size()));
}

icu::UnicodeString toICU(const KOVAString& text) {
  require(text.getUnits()[text.length()] == 0);
  return icu::UnicodeString(reinterpret_cast<const UChar*>(text.getUnits()), text.length());
}

void checkUTF8(const char* bytes, std::size_t count) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open("UTF-8", &status);
  const icu::UnicodeString expected(bytes, static_cast<int>(count), converter, status);
  ucnv_close(converter);
  const KOVAString text = KOVAString::fromBytes(bytes, static_cast<int>(count));
  require(toICU(text) == expected && !text.getBadConversion());
}

void checkConversions(const std::u16string& units) {
  const KOVAString text = make(units);
  std::string expected8;
  toICU(units).toUTF8String(expected8);
  std::vector<char> buffer8(expected8.size() + 1, '#');
  const int size8 = static_cast<int>(buffer8.size());
  require(text.getConvertToUTF8Size() == size8);
  require(text.convertToUTF8(buffer8.data(), size8).IsSuccess());
  require(std::memcmp(buffer8.data(), expected8.c_str(), buffer8.size()) == 0);
  require(text.convertToUTF8(buffer8.data(), size8 - 1).IsFailure());

  const int size32 = text.getConvertToUTF32Size();
  require(size32 == toICU(units).countChar32() + 1);
  std::vector<int> buffer32(static_cast<std::size_t>(size32), '#');
  require(text.convertToUTF32(buffer32.data(), size32).IsSuccess());
  require(buffer32.back() == 0);
  // Back again: the same text where all its surrogates are paired.
  if (units.find(u'\0') == std::u16string::npos) {
    const KOVAString back(buffer32.data());
    const icu::UnicodeString viaUTF8 = icu::UnicodeString::fromUTF8(expected8);
    require(toICU(back) == viaUTF8 && !back.getBadConversion());
  }
}

void checkPairs(const std::u16string& a, const std::u16string& b, int from) {
  const KOVAString left = make(a);
  const KOVAString right = make(b);
  const icu::UnicodeString icuLeft = toICU(a);
  const icu::UnicodeString icuRight = toICU(b);
  require(left.compareTo(right) == sign(icuLeft.compareCodePointOrder(icuRight)));
  require(left.equals(right) == (a == b));
  icu::UnicodeString foldedLeft(icuLeft);
  icu::UnicodeString foldedRight(icuRight);
  require(left.compareToIgnoreCase(right) ==
          sign(foldedLeft.foldCase().compareCodePointOrder(foldedRight.foldCase())));
  if (!b.empty()) {
    require(left.indexOf(right, from) == icuLeft.indexOf(icuRight, from));
    require(left.lastIndexOf(right, from) == icuLeft.lastIndexOf(icuRight, from));
    require(left.indexOf(b[0], from) == icuLeft.indexOf(b[0], from));
    require(left.lastIndexOf(b[0], from) == icuLeft.lastIndexOf(b[0], from));
    require(left.startsWith(right) == a.starts_with(b) && left.endsWith(right) == a.ends_with(b));
    icu::UnicodeString replaced(icuLeft);
    replaced.findAndReplace(icu::UnicodeString(b[0]), icu::UnicodeString(b.back()));
    require(toICU(left.replace(b[0], b.back())) == replaced);
  }
  require(toICU(left + right) == icuLeft + icuRight);
  KOVAString grown = left;
  for (int i = 0; i < 3; ++i) grown.append(grown);
  require(grown.length() == 8 * left.length() && grown.startsWith(left) == !a.empty());
  const int end = from + static_cast<int>(b.size()) - 5;
  require(toICU(left.substring(from, end)) ==
          icuLeft.tempSubStringBetween(from, std::max(from, end)));
  require(left.hashCode() == KOVAString(left).hashCode());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const char* const bytes = reinterpret_cast<const char*>(data) + 1;
  checkUTF8(bytes, size - 1);
  std::u16string units((size - 1) / 2, u'\0');
  std::memcpy(units.data(), bytes, 2 * units.size());
  const std::size_t split = units.empty() ? 0 : data[0] % (units.size() + 1);
  const std::u16string first = units.substr(0, split);
  const std::u16string second = units.substr(split);
  checkConversions(units);
  checkPairs(first, second, data[0] % 8);
  checkPairs(second, first, data[0] / 8 % 8);
  // Likely to be found, and likely to differ in case alone.
  checkPairs(units, first.substr(0, 3), 0);
  icu::UnicodeString upper = toICU(first);
  upper.toUpper(icu::Locale::getRoot());
  checkPairs(first, std::u16string(upper.getBuffer(), static_cast<std::size_t>(upper.length())), 0);
  return 0;
}
