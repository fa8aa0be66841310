#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCodepageConverter.h"
#include "tests/support/AllocationFailure.h"

#include <unicode/ucnv.h>

#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

KOVAStringCodepageConverter& registry() { return KOVAStringCodepageConverter::Instance(); }

// Reads and writes a text outside ASCII in a code page that needs a converter.
bool convertsBothWays(const char* bytes, const char* codepage, const char16_t* units) {
  const KOVAString text(bytes, codepage);
  char buffer[64];
  return text == KOVAString(units) && !text.getBadConversion() &&
         text.convertToMBCS(buffer, sizeof buffer, codepage, false, '\0').IsSuccess() &&
         std::strcmp(buffer, bytes) == 0;
}

bool convertsEuro() { return convertsBothWays("5 \x80", "windows-1252", u"5 \u20AC"); }

TEST(KOVAStringCodepageConverter, SharesOneConverterPerName) {
  UConverter* const converter = registry().Open("windows-1252");
  ASSERT_NE(converter, nullptr);
  EXPECT_EQ(registry().Open("windows-1252"), converter);
  EXPECT_NE(registry().Open("cp1252"), converter);
  EXPECT_EQ(registry().Open("no such code page"), nullptr);
  EXPECT_EQ(registry().GetBestCodepageConverter("no such code page"), registry().Open(nullptr));
  EXPECT_EQ(registry().GetBestCodepageConverter("windows-1252"), converter);
  UErrorCode status = U_ZERO_ERROR;
  EXPECT_STREQ(ucnv_getName(registry().Open(nullptr), &status), ucnv_getDefaultName());
  EXPECT_STREQ(ucnv_getName(registry().Open(""), &status), ucnv_getDefaultName());
}

TEST(KOVAStringCodepageConverter, ResetsWhatItReturnsAgain) {
  UConverter* converter = registry().Open("ISO-2022-JP");
  ASSERT_NE(converter, nullptr);
  const char toJapanese[] = "\x1B$B";
  const char kana[] = "%F";
  UChar units[8];
  UErrorCode status = U_ZERO_ERROR;
  UChar* target = units;
  const char* source = toJapanese;
  ucnv_toUnicode(converter, &target, units + 8, &source, toJapanese + 3, nullptr, false, &status);
  converter = registry().Open("ISO-2022-JP");
  source = kana;
  ucnv_toUnicode(converter, &target, units + 8, &source, kana + 2, nullptr, true, &status);
  EXPECT_EQ(std::u16string(units, target), u"%F");
}

TEST(KOVAStringCodepageConverter, StringsAndSharedConvertersLeaveEachOtherAlone) {
  UConverter* const converter = registry().Open("windows-1252");
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setSubstChars(converter, "#", 1, &status);
  char buffer[8];
  const KOVAString kana(u"\u30C6");
  EXPECT_TRUE(kana.convertToMBCS(buffer, 8, "windows-1252", true, '?').IsSuccess());
  EXPECT_STREQ(buffer, "?");
  EXPECT_TRUE(kana.convertToMBCS(buffer, 8, "windows-1252", false, '?').IsSuccess());
  EXPECT_STREQ(buffer, "\x1A");
  char substitute[4];
  int8_t length = 4;
  ucnv_getSubstChars(registry().Open("windows-1252"), substitute, &length, &status);
  EXPECT_EQ(std::string(substitute, static_cast<std::size_t>(length)), "#");
  ucnv_setSubstChars(converter, "\x1A", 1, &status);
}

// The paths without a converter, and texts that begin in ASCII, in all code pages that there are.
TEST(KOVAStringCodepageConverter, EveryCodePageReadsAndWritesAsICUDoes) {
  std::minstd_rand random(3);
  for (int n = 0; n < ucnv_countAvailable(); ++n) {
    const char* const name = ucnv_getAvailableName(n);
    for (int i = 0; i < 20; ++i) {
      std::string bytes(1 + random() % 40, 'a');
      std::u16string units(1 + random() % 40, u'a');
      const unsigned highest = i % 2 == 0 ? 0x7F : 0xFFFF;
      for (char& byte : bytes) byte = static_cast<char>(random() & highest);
      for (char16_t& unit : units) {
        unit = static_cast<char16_t>(random() & (random() % 3 == 0 ? highest : 0x7F));
      }
      UErrorCode status = U_ZERO_ERROR;
      UConverter* const converter = ucnv_open(name, &status);
      ASSERT_TRUE(U_SUCCESS(status)) << name;
      std::u16string read(200, u'\0');
      std::string written(400, '\0');
      read.resize(static_cast<std::size_t>(ucnv_toUChars(converter, read.data(), 200, bytes.data(),
                                                         static_cast<int>(bytes.size()), &status)));
      ucnv_close(converter);
      UConverter* const other = ucnv_open(name, &status);
      written.resize(static_cast<std::size_t>(ucnv_fromUChars(
          other, written.data(), 400, units.data(), static_cast<int>(units.size()), &status)));
      ucnv_close(other);
      ASSERT_TRUE(U_SUCCESS(status)) << name;

      const KOVAString ourRead =
          KOVAString::fromBytes(bytes.data(), static_cast<int>(bytes.size()), name);
      ASSERT_EQ(ourRead.length(), static_cast<int>(read.size())) << name;
      for (std::size_t k = 0; k < read.size(); ++k) {
        // What ICU writes for single malformed bytes of some code pages.
        const bool isSubstitute = read[k] == 0x1A && ourRead.getUnits()[k] == 0xFFFD;
        ASSERT_TRUE(isSubstitute || ourRead.getUnits()[k] == read[k]) << name << ' ' << i;
      }
      const KOVAString text = KOVAString::fromUnits(
          reinterpret_cast<const unsigned short*>(units.data()), static_cast<int>(units.size()));
      std::vector<char> buffer(written.size() + 1);
      ASSERT_EQ(text.getConvertToMBCSSize(name), static_cast<int>(buffer.size())) << name;
      ASSERT_TRUE(text.convertToMBCS(buffer.data(), static_cast<int>(buffer.size()), name, false, 0)
                      .IsSuccess())
          << name;
      ASSERT_EQ(std::string(buffer.data(), written.size()), written) << name << ' ' << i;
    }
  }
}

// More names than a thread keeps, and the same ones on all threads.
TEST(KOVAStringCodepageConverter, ThreadsConvertInTheSameCodePages) {
  const struct {
    const char* bytes;
    const char* codepage;
    const char16_t* units;
  } kTexts[] = {{"5 \x80", "windows-1252", u"5 \u20AC"}, {"\x83\x65", "Shift_JIS", u"\u30C6"},
                {"\xC1\xC2", "ibm-37", u"AB"},           {"\xE4", "latin1", u"\u00E4"},
                {"\xB3", "ISO-8859-2", u"\u0142"},       {"\xC4", "KOI8-R", u"\u0434"},
                {"\xC4\xE3", "GB18030", u"\u4F60"}};
  std::vector<std::thread> threads;
  std::vector<int> failures(8, 0);
  for (std::size_t t = 0; t < failures.size(); ++t) {
    threads.emplace_back([&kTexts, &failures, t] {
      for (std::size_t i = 0; i < 700; ++i) {
        const auto& row = kTexts[(i / (1 + t % 3) + t) % std::size(kTexts)];
        if (!convertsBothWays(row.bytes, row.codepage, row.units)) ++failures[t];
        if (i % 50 == t && registry().Open(row.codepage) == nullptr) ++failures[t];
        if (!KOVAString("x", "no such code page").getBadConversion()) ++failures[t];
        if (KOVAString(u"Stra\u00DFe \u0416").compareToIgnoreCase(KOVAString(u"STRASSE \u0436")) !=
            0) {
          ++failures[t];
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const int count : failures) EXPECT_EQ(count, 0);
}

struct ConvertsAtItsEnd {
  explicit ConvertsAtItsEnd(bool* ok) : succeeded(ok) {}
  ~ConvertsAtItsEnd() {
    const bool works = convertsEuro() && registry().Open("KOI8-R") != nullptr &&
                       convertsBothWays("\xC4", "KOI8-R", u"\u0434");
    if (succeeded != nullptr) {
      *succeeded = works;
    } else if (!works) {
      std::_Exit(3);
    }
  }
  bool* succeeded;
};

TEST(KOVAStringCodepageConverter, WorksWhileAThreadComesToItsEnd) {
  bool succeeded = false;
  std::thread([&succeeded] {
    // Built before the thread's converters, so destroyed after them.
    thread_local ConvertsAtItsEnd late(&succeeded);
    EXPECT_EQ(late.succeeded, &succeeded);
    EXPECT_TRUE(convertsEuro());
  }).join();
  EXPECT_TRUE(succeeded);
}

TEST(KOVAStringCodepageConverterDeathTest, WorksInDestructorsOfStaticObjects) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        static ConvertsAtItsEnd late(nullptr);
        if (late.succeeded != nullptr || !convertsEuro()) std::_Exit(4);
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

TEST(KOVAStringCodepageConverter, SurvivesFailingAllocations) {
  using kova::test::FailingAllocation;
  if (!kova::test::kCanFailAllocations) GTEST_SKIP() << "allocations cannot fail here";
  const char* const kNames[] = {"ISO-8859-3",  "ISO-8859-4",  "ISO-8859-5",  "ISO-8859-6",
                                "ISO-8859-7",  "ISO-8859-8",  "ISO-8859-9",  "ISO-8859-10",
                                "ISO-8859-13", "ISO-8859-14", "ISO-8859-15", "ibm-850",
                                "ibm-852",     "ibm-855",     "ibm-857",     "ibm-862"};
  // A name that nobody has opened yet for each allocation that fails.
  int which = 1;
  bool hasFailed = true;
  for (const char* name : kNames) {
    if (!hasFailed) break;
    UConverter* converter = nullptr;
    {
      const FailingAllocation failing(which++);
      converter = registry().Open(name);
      hasFailed = failing.hasFailed();
    }
    EXPECT_TRUE(converter != nullptr || hasFailed) << name;
    EXPECT_NE(registry().Open(name), nullptr) << name;
  }
  EXPECT_FALSE(hasFailed);

  hasFailed = true;
  for (which = 1; hasFailed; ++which) {
    // On a thread of its own, whose converters are opened afresh.
    bool isAsStated = false;
    std::thread([&] {
      const FailingAllocation failing(which);
      try {
        isAsStated = convertsEuro();
      } catch (const KOVAAllocException&) {
        isAsStated = failing.hasFailed();
      }
      isAsStated = isAsStated || failing.hasFailed();
      hasFailed = failing.hasFailed();
    }).join();
    EXPECT_TRUE(isAsStated) << which;
    EXPECT_TRUE(convertsEuro());
    ASSERT_LT(which, 100);
  }
}

}  // namespace
