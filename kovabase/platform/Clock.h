#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

/// Time stamps.
namespace kova::platform {

/// Seconds since 1970-01-01 UTC.
std::int64_t currentTime() noexcept;

/// The processor time that the process has used, in units of 1 / CLOCKS_PER_SEC seconds.
long processorClock() noexcept;

/// The local calendar time of `seconds` since 1970-01-01 UTC.
/// @return false, with `calendar` all zero, when the year does not fit.
bool localTime(std::int64_t seconds, std::tm& calendar) noexcept;

/// Bytes that `calendarText` needs, terminator included, for years up to 9999.
inline constexpr std::size_t kCalendarTextSize = 32;

/// Writes the text of `asctime`, "Thu Jan  1 00:00:00 1970\n", zero-terminated; empty when
/// `calendar` is not a time of the years 0 to 9999.
void calendarText(const std::tm& calendar, char (&text)[kCalendarTextSize]) noexcept;

}  // namespace kova::platform
