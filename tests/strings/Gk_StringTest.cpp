#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/strings/Gk_Marker.h"
#include "kovabase/strings/Gk_String.h"
#include "kovabase/strings/Gk_StringParser.h"
#include "kovabase/strings/KOVAString.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

TEST(Gk_Marker, EqualsMarkersOfItsOwnClass) {
  class Derived : public Gk_Marker {};
  const Derived a;
  const Gk_Marker& asBase = a;
  EXPECT_TRUE(asBase == Derived());
  EXPECT_FALSE(asBase == Gk_Marker());
}

TEST(Gk_ROString, MatchesPathsSegmentBySegment) {
  struct {
    const char* path;
    const char* pattern;
    bool matches;
  } const cases[] = {{"a/b.stp", "a/b.stp", true},
                     {"a\\b.stp", "a/*.stp", true},
                     {"a/b.stp", "*\\*.stp", true},
                     {"a/b.stp", "*.stp", false},
                     {"a/b/c", "a/*", false},
                     {"a/b", "a?b", false},
                     {"a/b", "a/b/", false},
                     {"a/", "a/*", true},
                     {"a//b", "a/b", false},
                     {"abcbcd", "a*bcd", true},
                     {"abcbc", "a*bcd", false},
                     // What one segment's star has taken is no matter of the next one's.
                     {"aXb/aYc", "a*b/a*b", false},
                     {"caf\u00E9.stl", "caf?.s??", true},
                     {"caf\u00E9", "caf??", false},
                     {"\u00E9", "*", true},
                     {"\xC3\xC3", "??", true},
                     {"A.STP", "a.stp", false},
                     {"", "", true},
                     {"", "*", true},
                     {"", "?", false},
                     {"a", nullptr, false},
                     {"a*b", "a*b", true}};
  for (const auto& [path, pattern, matches] : cases) {
    EXPECT_EQ(Gk_ROString(path).matchesPath(pattern), matches) << path << " " << pattern;
  }
  EXPECT_TRUE(Gk_ROString("Dir/A.STP").matchesPath("dIR\\*.stp", true));
  // Backtracking stays within the last star.
  const std::string letters(20000, 'a');
  EXPECT_FALSE(Gk_ROString(letters.c_str()).matchesPath("*a*a*a*a*a*a*a*b"));
}

TEST(Gk_ROString, SearchesAndComparesBytes) {
  const Gk_ROString text("one two one");
  EXPECT_EQ(text.indexOf("one", 1), 8);
  EXPECT_EQ(text.indexOf("one", -5), 0);
  EXPECT_EQ(text.indexOf("", 11), 11);
  EXPECT_EQ(text.indexOf("", 12), -1);
  EXPECT_EQ(text.lastIndexOf('o'), 8);
  EXPECT_EQ(text.charAt(11), '\0');
  EXPECT_STREQ(text.substring(4, 7).getText(), "two");
  EXPECT_STREQ(text.substring(9, 99).getText(), "ne");
  EXPECT_TRUE(text.substring(7, 4).isEmpty());
  EXPECT_LT(Gk_ROString("a"), Gk_ROString("\xE9"));
  EXPECT_LT(Gk_ROString("a"), Gk_ROString("ab"));
  EXPECT_TRUE(Gk_ROString("MM") == "MM");
  EXPECT_TRUE(Gk_ROString("\u00C9Mm").equalsIgnoreCase("\u00C9mM"));
  EXPECT_FALSE(Gk_ROString("\u00C9").equalsIgnoreCase("\u00E9"));
  EXPECT_EQ(Gk_ROString(nullptr), Gk_ROString());
  EXPECT_EQ(Gk_ROString("ab\0c", 4).length(), 4);
  EXPECT_TRUE(Gk_ROString("ab", -1).isEmpty());
}

TEST(Gk_RWString, EditsTextsThatArePartOfItself) {
  Gk_RWString text("abc");
  text.append(text.getText() + 1).insert(0, text.getText() + 2);
  EXPECT_STREQ(text.getText(), "cbcabcbc");
  text.reserve(100).append(text);
  EXPECT_STREQ(text.getText(), "cbcabcbccbcabcbc");
  text.replace(text.substring(0, 2).getText(), "-").remove(-3, 1);
  EXPECT_STREQ(text.getText(), "cab-c-cab-c");
  text.replace("-", text.getText());
  EXPECT_STREQ(text.getText(), "cabcab-c-cab-cccab-c-cab-ccabcab-c-cab-cc");
  text.clear().append("\t Aa \r\n").trim().toUpperCase().append('x');
  EXPECT_STREQ(text.getText(), "AAx");
  EXPECT_FALSE(text.setCharAt(3, 'y'));
  EXPECT_TRUE(text.setCharAt(0, 'y'));

  const Gk_ROString copy = text;
  Gk_String moved = std::move(text);
  moved.replace('A', 'b');
  EXPECT_STREQ(copy.getText(), "yAx");
  EXPECT_STREQ(moved.getText(), "ybx");
  const Gk_String& self = moved;
  moved = self;
  EXPECT_STREQ(moved.getText(), "ybx");
}

TEST(Gk_String, FormatsAndConverts) {
  const std::string line(5000, 'x');
  const Gk_String text = Gk_String::format("line %ld:%s", 7L, line.c_str());
  EXPECT_EQ(text.getText(), "line 7:" + line);
  EXPECT_TRUE(Gk_String(KOVAString(u"caf\u00E9")) == "caf\u00E9");
  EXPECT_TRUE(Gk_String("caf\u00E9").toKOVAString() == KOVAString(u"caf\u00E9"));
  EXPECT_STREQ((Gk_String("a") + Gk_ROString("b")).getText(), "ab");
}

TEST(Gk_StringParser, TakesWholeTextsOnly) {
  struct {
    const char* text;
    std::optional<int> integer;
    std::optional<double> real;
  } const cases[] = {{"5", 5, 5.0},
                     {" \t-5\r\n", -5, -5.0},
                     {"+5", 5, 5.0},
                     {"-2147483648", std::numeric_limits<int>::min(), -2147483648.0},
                     {"2147483648", {}, 2147483648.0},
                     {"2.5", {}, 2.5},
                     {"5.", {}, 5.0},
                     {".5", {}, 0.5},
                     {"1e3", {}, 1000.0},
                     {"1e-999", {}, 0.0},
                     {"1e999", {}, {}},
                     {"", {}, {}},
                     {nullptr, {}, {}},
                     {".", {}, {}},
                     {"+-5", {}, {}},
                     {"5 6", {}, {}},
                     {"5mm", {}, {}},
                     {"1e", {}, {}},
                     {"2,5", {}, {}},
                     {"0x10", {}, {}},
                     {"inf", {}, {}},
                     {"nan", {}, {}}};
  for (const auto& [text, integer, real] : cases) {
    for (const Gk_StringParser& parser :
         {Gk_StringParser(text), Gk_StringParser(KOVAString(text, "UTF-8"))}) {
      EXPECT_EQ(parser.isInteger(), integer.has_value()) << text;
      EXPECT_EQ(parser.getInteger(), integer.value_or(0)) << text;
      EXPECT_EQ(parser.isReal(), real.has_value()) << text;
      EXPECT_EQ(parser.getReal(), real.value_or(0.0)) << text;
    }
  }
}

TEST(Gk_RWString, KeepsItsTextWithoutMemory) {
  EXPECT_TRUE(kova::test::survivesFailingAllocations([] {
    Gk_String text("abc");
    try {
      text.append(text).append("a text that is longer").insert(0, text.getText());
    } catch (const KOVAAllocException&) {
      return text.startsWith("abc");
    }
    return (text + text).length() == 2 * text.length();
  }));
}

}  // namespace
