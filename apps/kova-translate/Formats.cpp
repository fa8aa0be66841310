#include "apps/kova-translate/Formats.h"

#include <algorithm>
#include <string_view>

namespace kova::translate {

namespace {

std::string listFormats(bool Format::*selected) {
  std::string names;
  for (const Format& format : kFormats) {
    if (!(format.*selected)) continue;
    if (!names.empty()) names += ", ";
    names += format.name;
  }
  return names;
}

bool endsWithIgnoringCase(const std::string& text, std::string_view end) {
  return text.size() >= end.size() &&
         std::equal(end.begin(), end.end(), text.end() - static_cast<std::ptrdiff_t>(end.size()),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

}  // namespace

const Format* findFormat(const std::string& name) {
  for (const Format& format : kFormats) {
    if (name == format.name) return &format;
  }
  return nullptr;
}

const Format* findFormatOfFile(const std::string& path) {
  for (const Format& format : kFormats) {
    if (endsWithIgnoringCase(path, format.extension)) return &format;
  }
  return nullptr;
}

std::string listReadFormats() { return listFormats(&Format::isRead); }

std::string listWrittenFormats() { return listFormats(&Format::isWritten); }

}  // namespace kova::translate
