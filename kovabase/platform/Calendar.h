#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

/// Dates in UTC and in English, whatever the locale of the process.
namespace kova::platform {

/// @param seconds  since 1970-01-01, negative for times before.
/// @return false when the year does not fit.
bool utcTime(std::int64_t seconds, std::tm& calendar) noexcept;

/// `strftime` in the "C" locale.
/// @return the bytes written without terminator, 0 when they do not fit.
std::size_t formatCalendar(char* text, std::size_t size, const char* format,
                           const std::tm& calendar) noexcept;

}  // namespace kova::platform
