#include "apps/kova-translate/Console.h"

#include <cstdio>

namespace kova::translate {

std::string quoteText(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F) {
      quoted += c;
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", unsigned{byte});
      quoted += escape;
    }
  }
  return quoted + "'";
}

void Console::TellError(const std::string& file, translators::Place place,
                        const std::string& text) {
  Tell("error", file, place, text);
}

void Console::TellWarning(const std::string& file, translators::Place place,
                          const std::string& text) {
  Tell("warning", file, place, text);
}

void Console::Tell(const char* kind, const std::string& file, translators::Place place,
                   const std::string& text) {
  std::string message = std::string("kova-translate: ") + kind + ": ";
  if (!file.empty()) {
    message += file == "-" ? "standard input" : quoteText(file);
    switch (place.kind) {
      case translators::Place::Kind::kNowhere: break;
      case translators::Place::Kind::kLine:
        message += ", line " + std::to_string(place.number);
        break;
      case translators::Place::Kind::kByte:
        message += ", byte " + std::to_string(place.number);
        break;
    }
    message += ": ";
  }
  PrintError(message + text + "\n");
}

}  // namespace kova::translate
