#include "translators/interface/Report.h"

#include <cstdarg>
#include <cstdio>

namespace kova::translators {

namespace {

constexpr std::size_t kTextSize = 1024;
constexpr std::size_t kQuotedBytes = 40;

}  // namespace

void Report::Warn(Place place, const char* format, ...) {
  char text[kTextSize];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  HandleWarning(place, text);
}

KOVAResult Report::Fail(KOVAResult result, Place place, const char* format, ...) {
  char text[kTextSize];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  HandleError(place, text);
  return result;
}

std::string quote(const char* bytes, std::size_t count) {
  std::string text = "'";
  for (std::size_t i = 0; i < count && i < kQuotedBytes; ++i) {
    const unsigned char byte = static_cast<unsigned char>(bytes[i]);
    if (byte >= 0x20 && byte < 0x7F) {
      text += bytes[i];
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", unsigned{byte});
      text += escape;
    }
  }
  text += count > kQuotedBytes ? "'..." : "'";
  return text;
}

}  // namespace kova::translators
