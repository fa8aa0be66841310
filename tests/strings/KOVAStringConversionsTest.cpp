#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVALocalNumericLocaleOverride.h"
#include "kovabase/strings/KOVAStringCharUtil.h"
#include "kovabase/strings/KOVAStringConversions.h"
#include "kovabase/strings/KOVAStringTokenizer.h"
#include "tests/support/AllocationFailure.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// The C library never frees the search path that it makes of LOCPATH.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace {

KOVAString ascii(const char* text) { return KOVAString(text, "US-ASCII"); }

std::string narrow(const KOVAString& text) {
  std::string result(static_cast<std::size_t>(text.getConvertToUTF8Size()), '\0');
  EXPECT_TRUE(text.convertToUTF8(result.data(), static_cast<int>(result.size())).IsSuccess());
  result.pop_back();
  return result;
}

// Reads into a value that must survive a failure.
template <typename Value>
std::optional<Value> read(KOVAResult (*function)(const KOVAString&, Value&), const char* text) {
  constexpr Value kBefore = 77;
  Value value = kBefore;
  const KOVAResult result = function(KOVAString(text, "UTF-8"), value);
  if (result == KOVAResultCode::kSuccess) return value;
  EXPECT_EQ(result, KOVAResultCode::kFailure) << text;
  EXPECT_EQ(value, kBefore) << text;
  return std::nullopt;
}

TEST(KOVAStringConversions, ReadsSignedIntegers) {
  struct {
    const char* text;
    std::optional<long long> wide;
    bool fitsInt = true;
  } const cases[] = {{"0", 0},
                     {"12abc", 12},
                     {" \t-7", -7},
                     {"0x", 0},
                     {"2147483647", 2147483647},
                     {"-2147483648", -2147483648LL},
                     {"2147483648", 2147483648LL, false},
                     {"-2147483649", -2147483649LL, false},
                     {"9223372036854775807", std::numeric_limits<long long>::max(), false},
                     {"-9223372036854775808", std::numeric_limits<long long>::min(), false},
                     {"9223372036854775808", std::nullopt},
                     {"-9223372036854775809", std::nullopt},
                     // A zero must begin with '0'.
                     {"", std::nullopt},
                     {"abc", std::nullopt},
                     {"-0", std::nullopt},
                     {"7\u0663", 7},
                     {"\u0663", std::nullopt}};
  for (const auto& [text, wide, fitsInt] : cases) {
    EXPECT_EQ(read(KOVAStringToLongLong, text), wide) << text;
    const auto narrowed = read(KOVAStringToInteger, text);
    EXPECT_EQ(narrowed, fitsInt ? wide : std::nullopt) << text;
  }
  const std::string padded = std::string(1000, '0') + "5";
  EXPECT_EQ(read(KOVAStringToInteger, padded.c_str()), 5);
}

TEST(KOVAStringConversions, ReadsUnsignedIntegers) {
  struct {
    const char* text;
    std::optional<unsigned long long> value;
  } const cases[] = {{"42", 42ULL},
                     {"", 0ULL},
                     {"abc", 0ULL},
                     {"-1", std::numeric_limits<unsigned long long>::max()},
                     {"18446744073709551615", std::numeric_limits<unsigned long long>::max()},
                     {"18446744073709551616", std::nullopt}};
  for (const auto& [text, value] : cases) {
    EXPECT_EQ(read(KOVAStringToULongLong, text), value) << text;
    const auto narrowed = read(KOVAStringToULong, text);
    EXPECT_EQ(narrowed.has_value(), value.has_value()) << text;
    EXPECT_EQ(narrowed.value_or(0), value.value_or(0)) << text;
  }
}

TEST(KOVAStringConversions, ReadsDoublesAsTheCLocaleDoes) {
  const double infinity = std::numeric_limits<double>::infinity();
  struct {
    const char* text;
    std::optional<double> value;
  } const cases[] = {{"0", 0.0},
                     {"-0.0", -0.0},
                     {" +2.5e1mm", 25.0},
                     {"1,5", 1.0},
                     {"0x1p4", 16.0},
                     {"-inf", -infinity},
                     {"1e999", infinity},
                     {"4.9e-324", 4.9406564584124654e-324},
                     {"9007199254740993", 9007199254740992.0},
                     {"none", std::nullopt},
                     {"", std::nullopt},
                     {"0 mm", std::nullopt},
                     {"1e-999", std::nullopt},
                     {"e5", std::nullopt}};
  for (const auto& [text, value] : cases) {
    EXPECT_EQ(read(KOVAStringToDouble, text), value) << text;
  }
  EXPECT_TRUE(std::signbit(read(KOVAStringToDouble, "-0.0").value()));
  EXPECT_TRUE(KOVAFloatUtil::IsNaN(read(KOVAStringToDouble, "nan").value()));
}

TEST(KOVAStringConversions, WritesTheShortestTextThatReadsBack) {
  struct {
    double value;
    const char* text;
  } const cases[] = {{0.1, "0.1"},
                     {-0.0, "-0"},
                     {1234.5, "1234.5"},
                     {1e5, "1e+05"},
                     {1e22, "1e+22"},
                     {5e-324, "5e-324"},
                     {1.0 / 3, "0.3333333333333333"},
                     {0.30479999999999996, "0.30479999999999996"},
                     {-1.7976931348623157e308, "-1.7976931348623157e+308"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(narrow(KOVAStringFromDouble(value)), text);
  EXPECT_EQ(narrow(KOVAStringFromDouble(-std::nan(""))), "nan");
  EXPECT_EQ(narrow(KOVAStringFromDouble(-HUGE_VAL)), "-inf");
  EXPECT_EQ(narrow(KOVAStringFromInteger(std::numeric_limits<int>::min())), "-2147483648");
  EXPECT_EQ(narrow(KOVAStringFromULong(18446744073709551615UL)), "18446744073709551615");
  EXPECT_EQ(narrow(KOVAStringFromULongLong(18446744073709551615ULL)), "18446744073709551615");
}

TEST(KOVAStringConversions, NumbersDoNotDependOnTheLocale) {
  setenv("LOCPATH", KOVA_TEST_LOCALES, 1);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "no locale with a decimal comma: localedef is missing";
  }
  char text[16];
  std::snprintf(text, sizeof(text), "%.1f", 2.5);
  ASSERT_STREQ(text, "2,5");
  EXPECT_EQ(read(KOVAStringToDouble, "2.5"), 2.5);
  EXPECT_EQ(read(KOVAStringToDouble, "0x1.8p1"), 3.0);
  EXPECT_EQ(narrow(KOVAStringFromDouble(2.5)), "2.5");
  {
    const KOVALocalNumericLocaleOverride outer;
    {
      const KOVALocalNumericLocaleOverride inner;
      std::snprintf(text, sizeof(text), "%.1f", 2.5);
      EXPECT_STREQ(text, "2.5");
    }
    EXPECT_EQ(std::strtod("2.5", nullptr), 2.5);
  }
  std::snprintf(text, sizeof(text), "%.1f", 2.5);
  EXPECT_STREQ(text, "2,5");
  std::setlocale(LC_ALL, "C");
}

TEST(KOVAStringConversions, TellsZerosFromOtherTexts) {
  struct {
    const char* text;
    bool isZero;
  } const cases[] = {{"0", true},    {"-0.0", true}, {"0.", true},      {".0", true},
                     {"0e+0", true}, {"+0E0", true}, {"0.0e0.0", true}, {nullptr, false},
                     {"", false},    {"1", false},   {"0.0.0", false},  {"e0", false},
                     {"E0", false},  {".", false},   {"-", false},      {"0-", false},
                     {"0-0", false}, {"0e", false},  {"0e-", false},    {"0e.0", false},
                     {"0 ", false},  {"00", true}};
  for (const auto& [text, isZero] : cases) {
    EXPECT_EQ(KOVAStringCheckIsZero(text), isZero) << (text != nullptr ? text : "null");
  }
}

TEST(KOVAStringConversions, ReadsBooleansInAnyCase) {
  struct {
    const char* text;
    std::optional<bool> value;
  } const cases[] = {{"True", true},          {"FALSE", false},   {"tRuE", true},
                     {"true ", std::nullopt}, {"", std::nullopt}, {"1", std::nullopt}};
  for (const auto& [text, wanted] : cases) {
    for (const bool before : {false, true}) {
      bool value = before;
      const KOVAResult result = KOVAStringToBool(ascii(text), value);
      EXPECT_EQ(result.IsSuccess(), wanted.has_value()) << text;
      EXPECT_EQ(value, wanted.value_or(before)) << text;
    }
  }
  EXPECT_EQ(narrow(KOVAStringFromBool(true)) + narrow(KOVAStringFromBool(false)), "truefalse");
}

TEST(KOVAStringConversions, TrimsUnquotesAndReplaces) {
  struct {
    const char* text;
    const char* trimmed;
    const char* unquoted;
    const char* upper;
    const char* ascii;
  } const cases[] = {{"", "", "", "", ""},
                     {" \t\r\n", "", " \t\r\n", " \t\r\n", " \t\r\n"},
                     {" a b ", "a b", " a b ", " A B ", " a b "},
                     {"\"\"abc\"\"", "\"\"abc\"\"", "abc", "\"\"ABC\"\"", "\"\"abc\"\""},
                     {"\"a\"b", "\"a\"b", "a\"b", "\"A\"B", "\"a\"b"},
                     {"\"\"\"", "\"\"\"", "", "\"\"\"", "\"\"\""},
                     {"z\U0001F600", "z\U0001F600", "z\U0001F600", "Z\U0001F600", "z##"}};
  for (const auto& c : cases) {
    const KOVAString text(c.text, "UTF-8");
    KOVAString unquoted = text;
    EXPECT_EQ(RemoveDoubleQuotesAtStartAndEndOf(unquoted, unquoted), KOVAResultCode::kSuccess);
    EXPECT_EQ(narrow(unquoted), c.unquoted);
    EXPECT_EQ(narrow(KOVAStringGetTrimmedString(text)), c.trimmed);
    EXPECT_EQ(KOVAStringCheckIfWhiteSpace(text), *c.trimmed == 0);
    EXPECT_EQ(narrow(KOVAStringConvertToUpperCase(text)), c.upper);
    EXPECT_EQ(narrow(KOVAStringReplaceNonASCIICharsWith(text, '#')), c.ascii);
  }
  const std::string longText(1000, 'Q');
  EXPECT_EQ(narrow(KOVAStringConvertToLowerCase(ascii(longText.c_str()))), std::string(1000, 'q'));
}

TEST(KOVAStringConversions, HandsOutBuffers) {
  const KOVAString text("caf\u00E9", "UTF-8");
  unsigned short* wide = nullptr;
  ASSERT_EQ(KOVAStringToWideChars(text, wide), KOVAResultCode::kSuccess);
  EXPECT_EQ(wide[3], 0xE9);
  EXPECT_EQ(KOVAStringFromUnicodeWChars(wide), text);
  EXPECT_EQ(KOVAReleaseWideChars(wide), KOVAResultCode::kSuccess);
  EXPECT_EQ(wide, nullptr);
  char* chars = nullptr;
  ASSERT_EQ(KOVAStringToChars(ascii("cafe"), chars), KOVAResultCode::kSuccess);
  EXPECT_STREQ(chars, "cafe");
  EXPECT_EQ(KOVAReleaseChars(chars), KOVAResultCode::kSuccess);
  EXPECT_EQ(KOVAReleaseChars(chars), KOVAResultCode::kSuccess);

  EXPECT_STREQ(KOVAStringAsciiCharUtil(text, true, '_').GetBuffer(), "caf_");
  EXPECT_STREQ(KOVAStringAsciiCharUtil(text, false, '_').GetBuffer(), "caf\x1A");
  EXPECT_EQ(KOVAStringUnicodeWCharUtil(text).GetBuffer()[4], 0);
}

TEST(KOVAStringTokenizer, KeepsEmptyTokens) {
  struct {
    const char* text;
    std::vector<std::string> tokens;
  } const cases[] = {{"", {}},
                     {nullptr, {}},
                     {"a", {"a"}},
                     {"a,,b", {"a", "", "b"}},
                     {"a,b,", {"a", "b", ""}},
                     {",", {"", ""}}};
  for (const auto& [text, tokens] : cases) {
    const KOVAStringTokenizer tokenizer(text, ',');
    ASSERT_EQ(tokenizer.GetTokenCount(), static_cast<int>(tokens.size()));
    KOVAString token;
    for (int i = 0; i < tokenizer.GetTokenCount(); ++i) {
      EXPECT_EQ(tokenizer.GetToken(i, token), KOVAResultCode::kSuccess);
      EXPECT_EQ(narrow(token), tokens[static_cast<std::size_t>(i)]);
    }
    token = ascii("before");
    EXPECT_EQ(tokenizer.GetToken(-1, token), KOVAResultCode::kFailure);
    EXPECT_EQ(tokenizer.GetToken(static_cast<int>(tokens.size()), token), KOVAResultCode::kFailure);
    EXPECT_EQ(narrow(token), "before");
  }
}

TEST(KOVAStringConversions, SurviveAShortageOfMemory) {
  const std::string digits = std::string(300, '0') + "7,\u00E9";
  const KOVAString text(digits.c_str(), "UTF-8");
  EXPECT_TRUE(kova::test::survivesFailingAllocations([&text] {
    int value = 7;
    char* chars = nullptr;
    unsigned short* wide = nullptr;
    const bool isRead = KOVAStringToInteger(text, value).IsSuccess() || value == 7;
    const bool isCopied = KOVAStringToChars(text, chars).IsSuccess() == (chars != nullptr);
    KOVAReleaseChars(chars);
    KOVAStringToWideChars(text, wide);
    KOVAReleaseWideChars(wide);
    const KOVAStringUnicodeWCharUtil util(text);
    KOVAStringReplaceNonASCIICharsWith(text, '_');
    KOVAStringTokenizer(text, ',').GetTokenCount();
    return isRead && isCopied;
  }));
}

}  // namespace
