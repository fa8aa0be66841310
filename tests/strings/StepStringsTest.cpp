#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringISO1030321Reader.h"
#include "kovabase/strings/KOVAStringISO1030321Writer.h"
#include "kovabase/strings/KOVAStringISO10646Reader.h"
#include "kovabase/strings/KOVAStringISO10646Writer.h"
#include "kovabase/strings/KOVAStringISO8859Reader.h"
#include "tests/support/AllocationFailure.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace KOVAResultCode;
using namespace std::string_view_literals;

KOVAString string(std::u16string_view text) {
  KOVAString result;
  for (const char16_t unit : text) result.append(static_cast<unsigned short>(unit));
  return result;
}

struct DecodeCase {
  const char* text;
  std::u16string_view decoded;
  int code;
};

template <std::size_t count>
void expectDecoded(const DecodeCase (&cases)[count]) {
  KOVAStringISO1030321Reader reader;
  for (const auto& [text, wanted, code] : cases) {
    KOVAString decoded("before", "US-ASCII");
    EXPECT_EQ(reader.ConvertFromASCII(text, decoded), code) << text;
    EXPECT_TRUE(decoded == string(wanted)) << text;
  }
}

TEST(KOVAStringISO1030321Reader, DecodesUpToTheFirstMalformedEscape) {
  const DecodeCase cases[] = {
      {nullptr, u"", kSuccess},
      {"ABC", u"ABC", kSuccess},
      // Directives that stay.
      {R"(\P\A\X\E9\X4\0001F600\\''\)", uR"(\P\A\X\E9\X4\0001F600\\''\)", kSuccess},
      {R"(\s\a\x2\00E9\x0\)", uR"(\s\a\x2\00E9\x0\)", kSuccess},
      {R"(a\S\ab)", u"a\u00E1b", kSuccess},
      {R"(\S\\S\a)", u"\u00DCS\\a", kSuccess},
      {R"(\\S\a)", u"\\\u00E1", kSuccess},
      {R"(x\X2\00E9\X0\y)", u"x\u00E9y", kSuccess},
      {R"(\X2\00e900E8D83DDE00\X0\)", u"\u00E9\u00E8\U0001F600", kSuccess},
      {R"(\X2\00E9\X0\\X2\00E8\X0\\S\i)", u"\u00E9\u00E8\u00E9", kSuccess},
      // The first character that is no hexadecimal digit ends the number.
      {R"(\X2\E9 0 0E90x41-0414 41\X0\)", u"\u00E9\0\0\0\u0004"sv, kSuccess},
      {R"(\X2\E\P\\X0\)", u"\u000E", kSuccess},
      {R"(\X2\00E9\X2\00E8\X0\)", u"\u00E9\0\u00E8"sv, kSuccess},
      {R"(\S\)", uR"(\S\)", kFailure},
      {R"(a\S\ab\S\)", u"a\u00E1b\\S\\", kFailure},
      {R"(a\X2\00E\X0\\S\a)", uR"(a\X2\00E\X0\\S\a)", kFailure},
      {R"(\X2\X0\)", uR"(\X2\X0\)", kFailure},
      {R"(\X2\\X0\)", uR"(\X2\\X0\)", kFailure},
      {R"(\X2\00E9)", uR"(\X2\00E9)", kFailure},
      // The first end marker of what remains counts, also before the beginning.
      {R"(\X0\\X2\00E9\X0\)", uR"(\X0\\X2\00E9\X0\)", kFailure},
      {R"(\X0\X2\00E9\X0\)", uR"(\X0\X2\00E9\X0\)", kFailure},
      {R"(\X2\00E9\X0\-\X0\-\X2\00E8\X0\)", u"\u00E9-\\X0\\-\\X2\\00E8\\X0\\", kFailure},
      {R"(\X0\\S\a\X2\00E9\X0\)", u"\\X0\\\u00E1\u00E9", kSuccess},
  };
  expectDecoded(cases);
}

TEST(KOVAStringISO1030321Reader, KeepsTextOutsideASCII) {
  setenv("LC_ALL", "C.UTF-8", 1);
  if (KOVAString::getDefaultCodepage() != KOVAString("UTF-8", "US-ASCII")) {
    GTEST_SKIP() << "another test has settled the default code page; run this one alone";
  }
  const DecodeCase cases[] = {
      {"\u00E9\\S\\a\u00E9\\X2\\00E8\\X0\\\U0001F600", u"\u00E9\u00E1\u00E9\u00E8\U0001F600",
       kSuccess},
      // Inside an escape it counts as '_', once for each character.
      {"\\S\\\u00E9", u"\u00DF", kSuccess},
      {"\\X2\\00\u00E9\U0001F600\\X0\\-", u"\0-"sv, kSuccess},
      {"\\X2\\00\U0001F600\\X0\\", u"\\X2\\00\U0001F600\\X0\\", kFailure},
  };
  expectDecoded(cases);
}

TEST(KOVAStringISO1030321Reader, NeedsNoStackForManyEscapes) {
  constexpr int kGroups = 1000000;
  std::string text;
  for (int i = 0; i < kGroups / 2; ++i) text += R"(\X2\00E9\X0\\S\i)";
  KOVAString decoded;
  ASSERT_EQ(KOVAStringISO1030321Reader().ConvertFromASCII(text.c_str(), decoded), kSuccess);
  ASSERT_EQ(decoded.length(), kGroups);
  EXPECT_TRUE(decoded.replace(0xE9, 'e').lastIndexOf(0xE9) == -1);

  const char* encoded = nullptr;
  KOVAString alternating;
  for (int i = 0; i < kGroups; ++i) alternating.append(i % 2 == 0 ? u'\u00E9' : u'e');
  KOVAStringISO1030321Writer writer;
  ASSERT_EQ(writer.ConvertToASCII(alternating, encoded), kSuccess);
  EXPECT_EQ(std::string(encoded).size(), 13U * kGroups / 2);
}

TEST(KOVAStringISO8859Reader, TakesOneEscape) {
  struct {
    const char* escape;
    std::u16string_view decoded;
    int code;
  } const cases[] = {{R"(\S\a)", u"\u00E1", kSuccess}, {R"(\S\abc)", u"\u00E1", kSuccess},
                     {"\\S\\\xE9", u"i", kSuccess},    {R"(\S\)", u"", kFailure},
                     {R"(\S)", u"", kFailure},         {"a", u"", kFailure},
                     {nullptr, u"", kFailure},         {R"(\X2\00E9\X0\)", u"", kFailure}};
  for (const auto& [escape, wanted, code] : cases) {
    KOVAStringISO8859Reader reader(escape);
    KOVAString decoded("before", "US-ASCII");
    EXPECT_EQ(reader.GetResult(decoded), code) << escape;
    EXPECT_EQ(reader.GetResult(decoded), code) << escape;
    EXPECT_TRUE(decoded == string(wanted)) << escape;
  }
}

TEST(KOVAStringISO10646Reader, TakesOneEscape) {
  struct {
    const char* escape;
    std::u16string_view decoded;
    int code;
  } const cases[] = {{R"(\X2\00E9D83D\X0\)", u"\u00E9\xD83D", kSuccess},
                     // End markers inside are groups without a number here.
                     {R"(\X2\00E9\X0\00E8\X0\)", u"\u00E9\0\u00E8"sv, kSuccess},
                     {R"(\X2\00E\X0\)", u"", kFailure},
                     {R"(\X2\\X0\)", u"", kFailure},
                     {R"(\X2\X0\)", u"", kFailure},
                     {R"(-\X2\00E9\X0\)", u"", kFailure},
                     {R"(\X2\00E9\X0\-)", u"", kFailure},
                     {nullptr, u"", kFailure}};
  for (const auto& [escape, wanted, code] : cases) {
    KOVAStringISO10646Reader reader(escape);
    KOVAString decoded("before", "US-ASCII");
    EXPECT_EQ(reader.GetResult(decoded), code) << escape;
    EXPECT_EQ(reader.GetResult(decoded), code) << escape;
    EXPECT_TRUE(decoded == string(wanted)) << escape;
  }
}

TEST(KOVAStringISO1030321Writer, EncodesRunsOutsideASCII) {
  const std::u16string longRun(200, u'\u00E9');
  std::string encodedLongRun = "\\X2\\";
  for (std::size_t i = 0; i < longRun.size(); ++i) encodedLongRun += "00E9";
  encodedLongRun += "\\X0\\";
  struct {
    std::u16string_view text;
    const char* encoded;
  } const cases[] = {{u"abc", "abc"},
                     {uR"(\S\a 'b')", R"(\S\a 'b')"},
                     {u"caf\u00E9", R"(caf\X2\00E9\X0\)"},
                     {u"\u00E9-\u00E8\u00EB!", R"(\X2\00E9\X0\-\X2\00E800EB\X0\!)"},
                     {u"\u007F\u0080\uFFFF", "\x7F\\X2\\0080FFFF\\X0\\"},
                     {u"\U0001F600\xDC00", R"(\X2\D83DDE00DC00\X0\)"},
                     {longRun, encodedLongRun.c_str()}};
  KOVAStringISO1030321Writer writer;
  for (const auto& [text, wanted] : cases) {
    const char* encoded = nullptr;
    EXPECT_EQ(writer.ConvertToASCII(string(text), encoded), kSuccess) << wanted;
    EXPECT_STREQ(encoded, wanted);
    KOVAString result;
    EXPECT_EQ(KOVAStringISO10646Writer(string(text)).GetResult(result), kSuccess) << wanted;
    EXPECT_TRUE(result == KOVAString(wanted, "US-ASCII")) << wanted;
  }
  const char* encoded = "before";
  EXPECT_EQ(writer.ConvertToASCII(KOVAString(), encoded), kSuccess);
  EXPECT_EQ(encoded, nullptr);
}

TEST(KOVAStringISO1030321Reader, SurvivesAShortageOfMemory) {
  const std::string longText = std::string(600, 'x') + "\\X2\\00E9\\X0\\\\S\\\u00E9";
  EXPECT_TRUE(kova::test::survivesFailingAllocations([&longText] {
    KOVAStringISO1030321Reader reader;
    KOVAString decoded("before", "US-ASCII");
    const KOVAResult result = reader.ConvertFromASCII(longText.c_str(), decoded);
    KOVAStringISO1030321Writer writer;
    const char* encoded = nullptr;
    writer.ConvertToASCII(decoded, encoded);
    KOVAString again;
    KOVAStringISO10646Writer(decoded).GetResult(again);
    return (result == kSuccess || result == kFailure) && encoded != nullptr && !again.isEmpty();
  }));
}

}  // namespace
