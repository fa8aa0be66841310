#include "kovabase/files/KOVADate.h"
#include "tests/files/TestPaths.h"

#include <cstdint>
#include <limits>

using kova::test::utf8;

TEST(KOVADate, FormatsInUtcAndInEnglish) {
  struct Case {
    std::int64_t seconds;
    int zoneMark;
    bool shortForm;
    const char* text;
  };
  static const Case kCases[] = {
      {0, 1, true, "01/01/1970 UTC"},
      {0, 0, false, "Thursday, January 01, 1970 00 00 00"},
      {1'772'892'549, 0, true, "03/07/2026"},
      {1'772'892'549, 1, false, "Saturday, March 07, 2026 14 09 09 UTC"},
      {-1, 2, false, "Wednesday, December 31, 1969 23 59 59"},
      {253'402'300'800, 0, true, "01/01/10000"},
  };
  for (const Case& c : kCases) {
    KOVAString text;
    EXPECT_EQ(KOVADate::FormatDate(c.seconds, text, c.zoneMark, c.shortForm),
              KOVAResultCode::kSuccess);
    EXPECT_EQ(utf8(text), c.text);
  }
  KOVAString text("kept");
  for (const std::int64_t seconds :
       {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(),
        std::int64_t{-70'000'000'000}}) {
    EXPECT_EQ(KOVADate::FormatDate(seconds, text, 1, true), KOVAResultCode::kFailure) << seconds;
  }
  EXPECT_EQ(utf8(text), "kept");
}

TEST(KOVADate, ReadsFileTimes) {
  KOVAString text;
  // 116,444,736,000,000,000 intervals from 1601 to 1970.
  EXPECT_EQ(KOVADate::FormatDate(FILETIME{0xD53E8000U, 0x019DB1DEU}, text, 1, true),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(text), "01/01/1970 UTC");
  EXPECT_EQ(KOVADate::FormatDate(FILETIME{0, 0}, text, 0, false), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(text), "Monday, January 01, 1601 00 00 00");
  EXPECT_EQ(KOVADate::FormatDate(FILETIME{0xFFFFFFFFU, 0xFFFFFFFFU}, text, 0, true),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(text), "05/28/60056");
}

TEST(KOVADate, JoinsPartsAndNamesMonths) {
  KOVAString text("kept");
  EXPECT_EQ(KOVADate::FormatDate("", "b", "c", text), KOVAResultCode::kFailure);
  EXPECT_EQ(KOVADate::FormatDate("a", "b", "", text), KOVAResultCode::kFailure);
  EXPECT_EQ(KOVADate::GetMonthStr(0, text), KOVAResultCode::kFailure);
  EXPECT_EQ(KOVADate::GetMonthStr(13, text), KOVAResultCode::kFailure);
  EXPECT_EQ(utf8(text), "kept");
  EXPECT_EQ(KOVADate::FormatDate("MAR", "07", "2026", text), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(text), "07 MAR 2026");

  std::string months;
  for (int month = 1; month <= 12; ++month) {
    EXPECT_EQ(KOVADate::GetMonthStr(month, text), KOVAResultCode::kSuccess);
    months += utf8(text);
  }
  EXPECT_EQ(months, "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC");
}
