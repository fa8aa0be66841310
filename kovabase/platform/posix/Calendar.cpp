#include "kovabase/platform/Calendar.h"

#include <locale.h>
#include <time.h>

namespace kova::platform {

bool utcTime(std::int64_t seconds, std::tm& calendar) noexcept {
  const time_t time = static_cast<time_t>(seconds);
  return gmtime_r(&time, &calendar) != nullptr;
}

std::size_t formatCalendar(char* text, std::size_t size, const char* format,
                           const std::tm& calendar) noexcept {
  // Never freed. Without memory for it there is no text rather than one in another language.
  static const locale_t english = newlocale(LC_ALL_MASK, "C", locale_t{});
  return english != locale_t{} ? strftime_l(text, size, format, &calendar, english) : 0;
}

}  // namespace kova::platform
