#include "kovabase/files/KOVADate.h"

#include "kovabase/platform/Calendar.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringTokenizer.h"

#include <ctime>
#include <utility>

namespace {

constexpr std::uint64_t kIntervalsPerSecond = 10'000'000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
constexpr std::size_t kDateBytes = 256;
constexpr int kMarksUtc = 1;

// "2026-03-07" to "03/07/2026".
KOVAResult turnAround(const char* date, KOVAString& text) {
  const KOVAStringTokenizer parts(date, '-');
  KOVAString year;
  KOVAString month;
  KOVAString day;
  if (parts.GetTokenCount() != 3) return KOVAResultCode::kFailure;
  parts.GetToken(0, year);
  parts.GetToken(1, month);
  parts.GetToken(2, day);
  text = month + "/" + day + "/" + year;
  return KOVAResultCode::kSuccess;
}

}  // namespace

KOVAResult KOVADate::FormatDate(std::int64_t seconds, KOVAString& text, int zoneMark,
                                bool shortForm) {
  std::tm calendar = {};
  if (!kova::platform::utcTime(seconds, calendar)) return KOVAResultCode::kFailure;
  char date[kDateBytes];
  const char* const format = shortForm ? "%F" : "%A, %B %d, %Y %H %M %S";
  if (kova::platform::formatCalendar(date, sizeof date, format, calendar) == 0) {
    return KOVAResultCode::kFailure;
  }
  KOVAString formatted(date, "US-ASCII");
  // A year before 0 brings a dash of its own.
  if (shortForm && turnAround(date, formatted).IsFailure()) return KOVAResultCode::kFailure;
  if (zoneMark == kMarksUtc) formatted.append(" UTC");
  text = std::move(formatted);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVADate::FormatDate(const FILETIME& time, KOVAString& text, int zoneMark,
                                bool shortForm) {
  const std::uint64_t intervals =
      static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  const auto seconds = static_cast<std::int64_t>(intervals / kIntervalsPerSecond);
  return FormatDate(seconds - kSecondsFrom1601To1970, text, zoneMark, shortForm);
}

KOVAResult KOVADate::FormatDate(const KOVAString& a, const KOVAString& b, const KOVAString& c,
                                KOVAString& text) {
  if (a.isEmpty() || b.isEmpty() || c.isEmpty()) return KOVAResultCode::kFailure;
  text = b + " " + a + " " + c;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVADate::GetMonthStr(int month, KOVAString& text) {
  static constexpr const char* kNames[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                           "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
  if (month < 1 || month > 12) return KOVAResultCode::kFailure;
  text = KOVAString(kNames[month - 1], "US-ASCII");
  return KOVAResultCode::kSuccess;
}
