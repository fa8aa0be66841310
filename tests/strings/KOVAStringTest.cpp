#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/foundation/KOVAResultCodes.h"
#include "kovabase/strings/KOVAString.h"
#include "tests/support/AllocationFailure.h"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

using Units = std::u16string;

Units unitsOf(const KOVAString& text) {
  Units units(static_cast<std::size_t>(text.length()), u'\0');
  if (!units.empty()) std::memcpy(units.data(), text.getUnits(), 2 * units.size());
  EXPECT_EQ(text.getUnits()[text.length()], 0) << "not terminated";
  return units;
}

KOVAString make(const Units& units) {
  return KOVAString::fromUnits(reinterpret_cast<const unsigned short*>(units.data()),
                               static_cast<int>(units.size()));
}

icu::UnicodeString toICU(const Units& units) {
  return icu::UnicodeString(units.data(), static_cast<int>(units.size()));
}

std::string bytesIn(const KOVAString& text, const char* codepage, bool useSubstitute = false,
                    char substitute = 0) {
  std::vector<char> buffer(static_cast<std::size_t>(text.getConvertToMBCSSize(codepage)), '#');
  EXPECT_EQ(text.convertToMBCS(buffer.data(), static_cast<int>(buffer.size()), codepage,
                               useSubstitute, substitute),
            KOVAResultCode::kSuccess)
      << codepage;
  return buffer.data();
}

std::string utf8(const KOVAString& text) { return bytesIn(text, "UTF-8"); }

// Texts around the ends of the inside storage and of the vectors, from an alphabet that holds what
// is treated specially: case pairs, long foldings, halves of pairs, U+0000.
class RandomTexts {
 public:
  Units next(std::size_t longest = 70) {
    static const char16_t kAlphabet[] = {
        u'a',  u'A',   u'b',   u'k',   u's',   u'S',   u'\0',  u'{',   u'[',   0x7F,  0x80,  0xDF,
        0xE9,  0xC9,   0x130,  0x131,  0x17F,  0x212A, 0x390,  0x7FF,  0x800,  0x41F, 0x43F, 0x58F,
        0x590, 0xFB01, 0xFFFD, 0xFFFF, 0xD83D, 0xDE00, 0xD801, 0xDC00, 0xDC28, 0xE000};
    Units text(_random() % longest, u'a');
    const unsigned variety = _random() % 4 == 0 ? 5 : std::size(kAlphabet);
    for (char16_t& unit : text) unit = kAlphabet[_random() % variety];
    return text;
  }
  // The same text with some units changed.
  Units vary(Units text) {
    if (!text.empty() && _random() % 4 != 0) text[_random() % text.size()] = u'S';
    for (char16_t& unit : text) {
      if (unit < 0x80 && _random() % 3 == 0) unit = static_cast<char16_t>(u_toupper(unit));
    }
    return text;
  }
  unsigned operator()(unsigned end) { return static_cast<unsigned>(_random() % end); }

 private:
  std::minstd_rand _random{7};
};

TEST(KOVAString, BuildsFromUnitsAndCodePoints) {
  const unsigned short zero = 0;
  const unsigned short half = 0xD800;
  EXPECT_EQ(unitsOf(KOVAString(zero)), Units(1, u'\0'));
  EXPECT_EQ(unitsOf(KOVAString(half)), Units(1, 0xD800));
  EXPECT_EQ(unitsOf(KOVAString(static_cast<const unsigned short*>(nullptr))), u"");
  EXPECT_EQ(unitsOf(KOVAString(static_cast<const int*>(nullptr))), u"");
  EXPECT_EQ(unitsOf(KOVAString::fromUnits(nullptr, 5)), u"");
  EXPECT_EQ(unitsOf(KOVAString::fromUnits(&half, -1)), u"");

  const struct {
    int codePoint;
    Units units;
    bool isBad;
  } kCodePoints[] = {{':', u":", false},
                     {0xFFFF, u"\uFFFF", false},
                     {0x10000, u"\U00010000", false},
                     {0x10FFFF, u"\U0010FFFF", false},
                     {0x1D800, u"\U0001D800", false},
                     {0xD800, u"\uFFFD", true},
                     {0xDFFF, u"\uFFFD", true},
                     {-1, u"\uFFFD", true},
                     {0x110000, u"\uFFFD", true}};
  for (const auto& row : kCodePoints) {
    EXPECT_EQ(unitsOf(KOVAString(row.codePoint)), row.units) << row.codePoint;
    EXPECT_EQ(KOVAString(row.codePoint).getBadConversion(), row.isBad) << row.codePoint;
    const int text[] = {'a', row.codePoint, 'b', 0};
    EXPECT_EQ(unitsOf(KOVAString(text)), u'a' + row.units + u'b') << row.codePoint;
    EXPECT_EQ(KOVAString(text).getBadConversion(), row.isBad) << row.codePoint;
  }
}

TEST(KOVAString, ReadsNarrowTextInCodePages) {
  const struct {
    const char* text;
    const char* codepage;
    Units units;
    bool isBad;
  } kTexts[] = {
      {nullptr, nullptr, u"", false},
      {nullptr, "no such code page", u"", true},
      {"abc", nullptr, u"abc", false},
      {"abc", "", u"abc", false},
      {"abc", "no such code page", u"abc", true},
      {"abc", "a name that is longer than any name of a converter may be, by a good deal", u"abc",
       true},
      {"gr\xC3\xBC\xC3\x9F", "UTF-8", u"gr\u00FC\u00DF", false},
      {"gr\xC3\xBC\xC3\x9F", "utf8", u"gr\u00FC\u00DF", false},
      {"gr\xFC\xDF", "ISO-8859-1", u"gr\u00FC\u00DF", false},
      {"gr\xFC\xDF, and beyond 16 bytes: \xFC", "latin1",
       u"gr\u00FC\u00DF, and beyond 16 bytes: \u00FC", false},
      {"gr\xFC", "US-ASCII", u"gr\uFFFD", false},
      {"gr\xFC", "ascii", u"gr\uFFFD", false},
      {"5 \x80", "windows-1252", u"5 \u20AC", false},
      {"\x83\x65\x83\x58\x83\x67", "Shift_JIS", u"\u30C6\u30B9\u30C8", false},
      {"\x83\x65\x83", "Shift_JIS", u"\u30C6\uFFFD", false},
      {"\x81\x30\x81\x30", "GB18030", u"\u0080", false},
      {"+AOk-a", "UTF-7", u"\u00E9a", false},
      {"\x1B$B%F%9\x1B(Bx", "ISO-2022-JP", u"\u30C6\u30B9x", false},
      {"\xC1\x42", "ibm-37", u"A\u00E2", false},
      {"\x1B-B\xA1", "x11-compound-text", u"\u0104", false},
      {"\xA1", "x11-compound-text", u"\u00A1", false},
  };
  for (int pass = 0; pass < 2; ++pass) {
    for (const auto& row : kTexts) {
      const KOVAString text(row.text, row.codepage);
      EXPECT_EQ(unitsOf(text), row.units) << row.text << " in " << row.codepage;
      EXPECT_EQ(text.getBadConversion(), row.isBad) << row.codepage;
    }
  }
  const char bytes[] = {'a', '\0', '\xC3', '\xA9', '!'};
  EXPECT_EQ(unitsOf(KOVAString::fromBytes(bytes, 4, "UTF-8")), Units(u"a\0\u00E9", 3));
  EXPECT_EQ(unitsOf(KOVAString::fromBytes(bytes, 4, "windows-1252")), Units(u"a\0\u00C3\u00A9", 4));
  EXPECT_EQ(unitsOf(KOVAString::fromBytes(nullptr, 4)), u"");
  EXPECT_EQ(unitsOf(KOVAString::fromBytes(bytes, -4)), u"");
  EXPECT_EQ(unitsOf(KOVAString::getDefaultCodepage()), unitsOf(KOVAString(ucnv_getDefaultName())));
}

// Each byte after each lead byte, at all distances from the end of a block.
TEST(KOVAString, DecodesUTF8AsICUDoes) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open("UTF-8", &status);
  ASSERT_TRUE(U_SUCCESS(status));
  const char* const kInserts[] = {"\xC3\xA9",
                                  "\xE2\x82\xAC",
                                  "\xF0\x9F\x98\x80",
                                  "\xED\xA0\x80",
                                  "\xC0\xAF",
                                  "\xE0\x80\xAF",
                                  "\xF0\x8F\xBF\xBF",
                                  "\xF4\x90\x80\x80",
                                  "\xF8\x88\x80\x80\x80",
                                  "\xE2\x82",
                                  "\xF0\x9F\x98",
                                  "\xEF\xBB\xBF",
                                  "\xF4\x8F\xBF\xBF",
                                  "\xF1\x80\xE2\x82\xC3",
                                  "\x80\xBF\xFF"};
  for (const char* insert : kInserts) {
    for (std::size_t before = 0; before < 40; ++before) {
      for (const std::size_t after : {0U, 1U, 7U, 8U, 70U}) {
        const std::string text = std::string(before, 'x') + insert + std::string(after, 'y');
        icu::UnicodeString expected(text.data(), static_cast<int>(text.size()), converter, status);
        const KOVAString ours(text.c_str(), "UTF-8");
        ASSERT_EQ(toICU(unitsOf(ours)), expected) << before << ' ' << after;
      }
    }
  }
  RandomTexts random;
  for (int i = 0; i < 20000; ++i) {
    std::string text(random(40), 'a');
    for (char& byte : text)
      byte =
          "\xC3\xE2\xED\xF0\xF4\x80\x8F\x90\x9F\xA0\xBF"
          "a"[random(12)];
    icu::UnicodeString expected(text.data(), static_cast<int>(text.size()), converter, status);
    const KOVAString ours =
        KOVAString::fromBytes(text.data(), static_cast<int>(text.size()), "UTF-8");
    ASSERT_EQ(toICU(unitsOf(ours)), expected);
    ASSERT_FALSE(ours.getBadConversion());
  }
  ucnv_close(converter);
}

TEST(KOVAString, CopiesDeeplyAndLeavesTheEmptyStringBehindAMove) {
  for (const Units& units :
       {Units(u"short"), Units(15, u'x'), Units(16, u'y'), Units(1000, u'z')}) {
    const KOVAString original = make(units);
    KOVAString copy(original);
    copy.append(static_cast<unsigned short>('!'));
    EXPECT_EQ(unitsOf(original), units);
    EXPECT_EQ(unitsOf(copy), units + u'!');

    KOVAString moved(static_cast<KOVAString&&>(copy));
    EXPECT_EQ(unitsOf(moved), units + u'!');
    EXPECT_EQ(unitsOf(copy), u"");
    copy = original;
    moved = static_cast<KOVAString&&>(copy);
    EXPECT_EQ(unitsOf(moved), units);
    EXPECT_EQ(unitsOf(copy), u"");

    const KOVAString& self = moved;
    moved = self;
    moved = static_cast<KOVAString&&>(const_cast<KOVAString&>(self));
    EXPECT_EQ(unitsOf(moved), units);
    moved = KOVAString();
    EXPECT_EQ(unitsOf(moved), u"");
  }
  KOVAString bad("x", "no such code page");
  KOVAString flagged;
  flagged = bad;
  EXPECT_TRUE(flagged.getBadConversion());
  EXPECT_TRUE(KOVAString(bad).getBadConversion());
  EXPECT_FALSE((bad + "y").getBadConversion());
  EXPECT_FALSE((KOVAString(bad) + "y").getBadConversion());
  EXPECT_FALSE(bad.substring(0).getBadConversion());
  KOVAString taken(static_cast<KOVAString&&>(bad));
  EXPECT_TRUE(taken.getBadConversion());
  EXPECT_FALSE(bad.getBadConversion());
}

TEST(KOVAString, SurvivesAMoveOfItsBytes) {
  for (const std::size_t count : {std::size_t{3}, std::size_t{300}}) {
    alignas(KOVAString) unsigned char from[sizeof(KOVAString)];
    alignas(KOVAString) unsigned char to[sizeof(KOVAString)];
    new (from) KOVAString(make(Units(count, u'q')));
    std::memcpy(to, from, sizeof to);
    std::memset(from, 0x5A, sizeof from);
    KOVAString* const moved = std::launder(reinterpret_cast<KOVAString*>(to));
    EXPECT_EQ(unitsOf(*moved), Units(count, u'q'));
    moved->append("!");
    EXPECT_EQ(moved->length(), static_cast<int>(count) + 1);
    moved->~KOVAString();
  }
}

TEST(KOVAString, AppendsAlsoPartsOfItself) {
  KOVAString text("ab");
  const KOVAString returned = text += "c";
  EXPECT_EQ(unitsOf(text), u"abc");
  EXPECT_EQ(unitsOf(returned), u"abc");
  Units expected = u"abc";
  for (int i = 0; i < 8; ++i) {
    text.append(text);
    expected += expected;
    text.append(text.getUnits() + 1, 2);
    expected += expected.substr(1, 2);
    ASSERT_EQ(unitsOf(text), expected);
  }
  text.append(nullptr, 3);
  text.append(text.getUnits(), -1);
  EXPECT_EQ(unitsOf(text), expected);
  text.reserve(INT_MIN);
  text.clear();
  EXPECT_EQ(unitsOf(text), u"");
  EXPECT_EQ(unitsOf("x" + KOVAString("y") + "z"), u"xyz");
}

TEST(KOVAString, PinsTheEndsOfSubstrings) {
  const KOVAString text("0123456789");
  const struct {
    int start;
    int end;
    Units units;
  } kParts[] = {{0, 10, u"0123456789"}, {3, 5, u"34"},  {-3, 2, u"01"},
                {8, 99, u"89"},         {5, 5, u""},    {6, 2, u""},
                {10, 12, u""},          {99, 100, u""}, {INT_MIN, INT_MAX, u"0123456789"},
                {INT_MAX, INT_MIN, u""}};
  for (const auto& row : kParts) {
    EXPECT_EQ(unitsOf(text.substring(row.start, row.end)), row.units) << row.start << row.end;
  }
  EXPECT_EQ(unitsOf(text.substring(7)), u"789");
  EXPECT_EQ(text.charAt(9), '9');
  for (const int index : {-1, 10, INT_MAX, INT_MIN}) EXPECT_EQ(text.charAt(index), 0xFFFF);
}

TEST(KOVAString, FindsAndReplacesWithoutTearingPairs) {
  const KOVAString abc("abc");
  const struct {
    int from;
    int first;
    int last;
  } kEmptyText[] = {{-5, 3, 3}, {0, 3, 3}, {1, 3, 3}, {2, 3, 3}, {3, -1, 3}, {4, -1, -1}};
  for (const auto& row : kEmptyText) {
    EXPECT_EQ(abc.indexOf("", row.from), row.first) << row.from;
    EXPECT_EQ(abc.lastIndexOf("", row.from), row.last) << row.from;
  }
  EXPECT_EQ(KOVAString().indexOf("", 0), -1);
  EXPECT_EQ(KOVAString().lastIndexOf("", 0), 0);

  const KOVAString pairs = make(u"x\U0001F600y\U0001F600");
  const unsigned short lead = 0xD83D;
  const unsigned short trail = 0xDE00;
  EXPECT_EQ(pairs.indexOf(lead), -1);
  EXPECT_EQ(pairs.lastIndexOf(trail), -1);
  EXPECT_EQ(unitsOf(pairs.replace(trail, 'z')), unitsOf(pairs));
  EXPECT_EQ(unitsOf(make({0xDE00, 0xD83D, u'a', 0xD83D}).replace(lead, 0xDE00)),
            Units({0xDE00, 0xDE00, u'a', 0xDE00}));
  EXPECT_EQ(unitsOf(KOVAString("a.b.c").replace('.', '_')), u"a_b_c");

  RandomTexts random;
  for (int i = 0; i < 30000; ++i) {
    const Units text = random.next();
    Units pattern = random.next(4);
    if (text.size() > 3 && random(2) == 0) pattern = text.substr(random(3), 1 + random(12));
    if (pattern.empty()) continue;
    const int from = static_cast<int>(random(20)) - 3;
    const int start = std::max(from, 0);
    const icu::UnicodeString icuText = toICU(text);
    const icu::UnicodeString icuPattern = toICU(pattern);
    ASSERT_EQ(make(text).indexOf(make(pattern), from), icuText.indexOf(icuPattern, start)) << i;
    ASSERT_EQ(make(text).lastIndexOf(make(pattern), from), icuText.lastIndexOf(icuPattern, start))
        << i;
    ASSERT_EQ(make(text).indexOf(pattern[0], from), icuText.indexOf(pattern[0], start)) << i;
    ASSERT_EQ(make(text).lastIndexOf(pattern[0], from), icuText.lastIndexOf(pattern[0], start))
        << i;
    ASSERT_EQ(make(text).startsWith(make(pattern)), text.starts_with(pattern));
    ASSERT_EQ(make(text).endsWith(make(pattern)), text.ends_with(pattern));
  }
  EXPECT_FALSE(abc.startsWith(""));
  EXPECT_FALSE(KOVAString().endsWith(""));
}

TEST(KOVAString, ComparesByCodePointsAndByFoldedCodePoints) {
  EXPECT_EQ(make(u"\uFFFF").compareTo(make(u"\U00010000")), -1);
  EXPECT_EQ(KOVAString("STRASSE").compareToIgnoreCase(make(u"stra\u00DFe")), 0);
  EXPECT_EQ(make(u"\uFB01x").compareToIgnoreCase("FIX"), 0);
  EXPECT_EQ(make(u"\u212A").compareToIgnoreCase("k"), 0);
  EXPECT_EQ(make(u"\U00010400").compareToIgnoreCase(make(u"\U00010428")), 0);
  EXPECT_TRUE("abc" == KOVAString("abc") && KOVAString("abc") != "abd" && KOVAString("Z") < "a");
  EXPECT_TRUE(KOVAString("a") <= "a" && KOVAString("b") >= "a" && KOVAString("b") > "a");

  const auto sign = [](int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; };
  RandomTexts random;
  for (int i = 0; i < 50000; ++i) {
    const Units a = random.next(40);
    const Units b = random(4) == 0 ? random.next(40) : random.vary(a);
    const icu::UnicodeString icuA = toICU(a);
    const icu::UnicodeString icuB = toICU(b);
    const KOVAString ours = make(a);
    const KOVAString other = make(b);
    ASSERT_EQ(ours.compareTo(other), sign(icuA.compareCodePointOrder(icuB))) << i;
    ASSERT_EQ(ours.equals(other), a == b);
    icu::UnicodeString foldedA(icuA);
    icu::UnicodeString foldedB(icuB);
    const int folded = sign(foldedA.foldCase().compareCodePointOrder(foldedB.foldCase()));
    ASSERT_EQ(ours.compareToIgnoreCase(other), folded) << i;
    ASSERT_EQ(ours.equalsIgnoreCase(other), folded == 0);
    if (a == b) {
      ASSERT_EQ(ours.hashCode(), other.hashCode());
    }
    ASSERT_LE(ours.hashCode(), 0x80000000U);
  }
}

// A weak hash shows when texts that differ in one unit meet often.
TEST(KOVAString, HashesEveryUnit) {
  for (const std::size_t count : {1U, 3U, 4U, 7U, 16U, 17U, 33U, 200U}) {
    std::vector<unsigned> hashes;
    for (std::size_t i = 0; i < count; ++i) {
      Units text(count, u'a');
      text[i] = u'b';
      hashes.push_back(make(text).hashCode());
    }
    hashes.push_back(make(Units(count, u'a')).hashCode());
    std::sort(hashes.begin(), hashes.end());
    EXPECT_EQ(std::unique(hashes.begin(), hashes.end()), hashes.end()) << count;
  }
}

TEST(KOVAString, ConvertsIntoBuffersOfTheNeededSizeOnly) {
  const Units texts[] = {u"",
                         u"ascii only, and longer than one vector of sixteen",
                         u"\u00E9",
                         u"na\u00EFve \u20AC \U0001F600 and a tail of sixteen units",
                         Units({u'a', 0xD800, u'b'}),
                         Units({0xDC00, 0xD83D, 0xDE00, 0xD83D}),
                         Units(40, u'\u4E00')};
  for (const Units& units : texts) {
    const KOVAString text = make(units);
    std::string expected8;
    toICU(units).toUTF8String(expected8);
    const int size8 = text.getConvertToUTF8Size();
    ASSERT_EQ(size8, static_cast<int>(expected8.size()) + 1);
    std::vector<char> buffer8(static_cast<std::size_t>(size8), '#');
    EXPECT_EQ(text.convertToUTF8(buffer8.data(), size8 - 1),
              size8 == 1 ? KOVAResultCode::kInvalidArgument : KOVAResultCode::kFailure);
    EXPECT_EQ(buffer8[0], size8 == 1 ? '#' : '\0');
    EXPECT_EQ(text.convertToUTF8(buffer8.data(), size8), KOVAResultCode::kSuccess);
    EXPECT_EQ(std::string(buffer8.data()), expected8);
    EXPECT_EQ(bytesIn(text, "UTF-8"), expected8);

    const int size32 = text.getConvertToUTF32Size();
    ASSERT_EQ(size32, toICU(units).countChar32() + 1);
    std::vector<int> buffer32(static_cast<std::size_t>(size32), '#');
    if (size32 > 1) {
      EXPECT_EQ(text.convertToUTF32(buffer32.data(), size32 - 1), KOVAResultCode::kFailure);
      EXPECT_EQ(buffer32[0], 0);
    }
    EXPECT_EQ(text.convertToUTF32(buffer32.data(), size32), KOVAResultCode::kSuccess);
    EXPECT_EQ(utf8(KOVAString(buffer32.data())), expected8);

    EXPECT_EQ(text.getConvertToUTF16Size() + 1, text.getConvertToWideCharacterSize());
    const int size16 = text.getConvertToWideCharacterSize();
    std::vector<unsigned short> buffer16(static_cast<std::size_t>(size16), '#');
    if (size16 > 1) {
      EXPECT_EQ(text.convertToUTF16(buffer16.data(), size16 - 1), KOVAResultCode::kFailure);
      EXPECT_EQ(buffer16[0], 0);
    }
    EXPECT_EQ(text.convertToWideCharacter(buffer16.data(), size16), KOVAResultCode::kSuccess);
    EXPECT_EQ(unitsOf(KOVAString(buffer16.data())), units);
  }
  char byte = '#';
  unsigned short unit = '#';
  int value = '#';
  const KOVAString text("abc");
  for (const int size : {0, -1, INT_MIN}) {
    EXPECT_EQ(text.convertToUTF8(&byte, size), KOVAResultCode::kInvalidArgument);
    EXPECT_EQ(text.convertToUTF16(&unit, size), KOVAResultCode::kInvalidArgument);
    EXPECT_EQ(text.convertToUTF32(&value, size), KOVAResultCode::kInvalidArgument);
    EXPECT_EQ(text.convertToMBCS(&byte, size, nullptr, false, 0), KOVAResultCode::kInvalidArgument);
  }
  EXPECT_EQ(text.convertToUTF8(nullptr, 9), KOVAResultCode::kInvalidArgument);
  EXPECT_TRUE(byte == '#' && unit == '#' && value == '#');
}

TEST(KOVAString, WritesCodePagesWithSubstitutes) {
  const Units text = u"a\u00E9\u20AC\u4E00\u200Bz\U0001F600";
  const struct {
    const char* codepage;
    bool useSubstitute;
    char substitute;
    const char* bytes;
  } kRows[] = {
      {"US-ASCII", false, '_', "a\x1A\x1A\x1Az\x1A"},
      {"US-ASCII", true, '_', "a___z_"},
      {"US-ASCII", true, '\0', "a\x1A\x1A\x1Az\x1A"},
      {"US-ASCII", false, '_', "a\x1A\x1A\x1Az\x1A"},
      {"ISO-8859-1", true, '?', "a\xE9??z?"},
      {"ISO-8859-1", true, '!', "a\xE9!!z!"},
      {"windows-1252", true, '?', "a\xE9\x80?z?"},
      {"windows-1252", false, '?', "a\xE9\x80\x1Az\x1A"},
      {"UTF-8", true, '?', "a\xC3\xA9\xE2\x82\xAC\xE4\xB8\x80\xE2\x80\x8Bz\xF0\x9F\x98\x80"},
      {"UTF-7", true, '?', "a+AOkgrE4AIAs-z+2D3eAA-"},
      {"ibm-37", true, '_', "\x81\x51__\xA9_"},
  };
  for (int pass = 0; pass < 2; ++pass) {
    for (const auto& row : kRows) {
      EXPECT_EQ(bytesIn(make(text), row.codepage, row.useSubstitute, row.substitute), row.bytes)
          << row.codepage << ' ' << row.useSubstitute << row.substitute;
    }
  }
  EXPECT_EQ(bytesIn(make({u'a', 0xD800, u'b'}), "UTF-8", true, '?'), "a?b");
  EXPECT_EQ(bytesIn(make({u'a', 0xD800, u'b'}), "UTF-8"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(bytesIn(KOVAString("abc"), "no such code page"), "abc");
  EXPECT_EQ(bytesIn(KOVAString("abc"), ""), "abc");

  char buffer[8] = "#######";
  EXPECT_EQ(make(text).convertToMBCS(buffer, 6, "windows-1252", true, '?'),
            KOVAResultCode::kFailure);
  EXPECT_EQ(buffer[0], '\0');
  // Two bytes per unit, and one of the terminator.
  EXPECT_EQ(KOVAString("ab").getConvertToMBCSSize("UTF-16LE"), 5);
}

TEST(KOVAString, RestrictedASCIIKeepsExactlyTheIdentifierSafeCharacters) {
  for (int code = 1; code < 128; ++code) {
    char expected = static_cast<char>(code);
    if (std::strchr("\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x1A!#$@[\\]^`{|}~", code) !=
        nullptr) {
      expected = '_';
    }
    char buffer[2];
    EXPECT_EQ(KOVAString(code).convertToRestrictedASCII(buffer, 2), KOVAResultCode::kSuccess);
    EXPECT_EQ(buffer[0], expected) << code;
  }
  char buffer[6] = "#####";
  const KOVAString text = make(u"a#b\u00E9");
  EXPECT_EQ(text.getConvertToRestrictedASCIISize(), 5);
  EXPECT_EQ(text.convertToRestrictedASCII(nullptr, 9), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(text.convertToRestrictedASCII(buffer, 0), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(buffer[0], '#');
  EXPECT_EQ(text.convertToRestrictedASCII(buffer, -1), KOVAResultCode::kFailure);
  EXPECT_EQ(buffer[0], '\0');
  EXPECT_EQ(text.convertToRestrictedASCII(buffer, 4), KOVAResultCode::kFailure);
  EXPECT_EQ(buffer[0], '\0');
  EXPECT_EQ(text.convertToRestrictedASCII(buffer, 5), KOVAResultCode::kSuccess);
  EXPECT_STREQ(buffer, "a_b_");
  EXPECT_EQ(make({u'a', 0, u'#'}).convertToRestrictedASCII(buffer, 5), KOVAResultCode::kSuccess);
  EXPECT_STREQ(buffer, "a");
}

TEST(KOVAString, KeepsItsTextWhenMemoryIsExhausted) {
  const Units longUnits(100, u'\u0436');
  const std::string longBytes(100, '\xC4');
  int values[20];
  std::fill(std::begin(values), std::end(values) - 1, 0x1F600);
  values[19] = 0;
  const auto work = [&] {
    KOVAString text("a text that is too long for the inside", "UTF-8");
    const KOVAString copy(text);
    const KOVAString pairs(values);
    bool isWhole = pairs.length() == 38;
    for (int i = 0; i < 3; ++i) {
      try {
        text.append(text);
      } catch (...) {
        isWhole = isWhole && text.endsWith(copy);
      }
    }
    const KOVAString read(longBytes.c_str(), "KOI8-R");
    const KOVAString wide = make(longUnits);
    char buffer[256];
    isWhole = isWhole && read.length() == 100 && wide.substring(1, 60).length() == 59;
    isWhole = isWhole && read.convertToMBCS(buffer, 256, "KOI8-R", true, '?').IsSuccess();
    isWhole = isWhole && (text + copy).endsWith(copy) && copy.replace('o', '0').length() > 0;
    KOVAString assigned("short");
    try {
      assigned = wide;
    } catch (...) {
      isWhole = isWhole && assigned == "short";
    }
    return isWhole && wide.compareToIgnoreCase(wide + "x") < 0;
  };
  EXPECT_TRUE(kova::test::survivesFailingAllocations(work));
  EXPECT_TRUE(
      kova::test::survivesFailingAllocations(work, kova::test::Shortage::kAllFailFromThere));
  EXPECT_THROW(KOVAString("x").reserve(INT_MAX), KOVAAllocException);
}

}  // namespace
