#include "kovabase/platform/Clock.h"

#include <time.h>

namespace kova::platform {

std::int64_t currentTime() noexcept { return static_cast<std::int64_t>(time(nullptr)); }

long processorClock() noexcept { return static_cast<long>(clock()); }

bool localTime(std::int64_t seconds, std::tm& calendar) noexcept {
  const time_t time = static_cast<time_t>(seconds);
  calendar = std::tm{};
  return localtime_r(&time, &calendar) != nullptr;
}

void calendarText(const std::tm& calendar, char (&text)[kCalendarTextSize]) noexcept {
  // Outside these years asctime_r would write more than it promises.
  const bool fits = calendar.tm_year >= -1900 && calendar.tm_year <= 9999 - 1900;
  if (!fits || asctime_r(&calendar, text) == nullptr) text[0] = '\0';
}

}  // namespace kova::platform
