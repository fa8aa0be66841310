#include "translators/interface/Report.h"

#include "kovabase/events/KOVAMessageEvents.h"

#include <cstdarg>
#include <cstdio>

namespace kova::translators {

namespace {

constexpr std::size_t kTextSize = 1024;
constexpr std::size_t kQuotedBytes = 40;

// "FILE, line 7: "
std::string describe(const std::string& file, Place place) {
  switch (place.kind) {
    case Place::Kind::kNowhere: break;
    case Place::Kind::kLine: return file + ", line " + std::to_string(place.number) + ": ";
    case Place::Kind::kByte: return file + ", byte " + std::to_string(place.number) + ": ";
  }
  return file + ": ";
}

}  // namespace

void Report::Warn(Place place, const char* format, ...) const {
  char text[kTextSize];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  KOVAWarningEvent::Fire("%s%s", describe(_file, place).c_str(), text);
}

KOVAResult Report::Fail(KOVAResult result, Place place, const char* format, ...) const {
  char text[kTextSize];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  KOVAErrorEvent::Fire("%s%s", describe(_file, place).c_str(), text);
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
