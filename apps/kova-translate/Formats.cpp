#include "apps/kova-translate/Formats.h"

#include <algorithm>

namespace kova::translate {

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n\f\v";

std::string listFormats(bool Format::*selected) {
  std::string names;
  for (const Format& format : kFormats) {
    if (!(format.*selected)) continue;
    if (!names.empty()) names += ", ";
    names += format.name;
  }
  return names;
}

bool endsWithIgnoringCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() &&
         std::equal(end.begin(), end.end(), text.end() - static_cast<std::ptrdiff_t>(end.size()),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

// The length of a binary STL file follows from the number of its triangles.
bool hasLengthOfStl(std::string_view start, std::uint64_t byteCount) {
  constexpr std::size_t kCountOffset = 80;
  constexpr std::size_t kHeaderBytes = 84;
  constexpr std::uint64_t kTriangleBytes = 50;
  if (start.size() < kHeaderBytes) return false;
  std::uint64_t triangles = 0;
  for (std::size_t i = kHeaderBytes; i-- > kCountOffset;) {
    triangles = triangles << 8 | static_cast<unsigned char>(start[i]);
  }
  return byteCount == kHeaderBytes + kTriangleBytes * triangles;
}

}  // namespace

const Format* findFormat(std::string_view name) {
  for (const Format& format : kFormats) {
    if (name == format.name) return &format;
  }
  return nullptr;
}

const Format* findFormatOfFile(std::string_view path) {
  for (const Format& format : kFormats) {
    for (std::string_view rest = format.extensions; !rest.empty();) {
      const std::size_t end = std::min(rest.find(' '), rest.size());
      if (endsWithIgnoringCase(path, rest.substr(0, end))) return &format;
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  return nullptr;
}

const Format* findFormatOfContent(std::string_view start, std::uint64_t byteCount) {
  const std::string_view text =
      start.substr(std::min(start.find_first_not_of(kWhiteSpace), start.size()));
  if (text.starts_with("ISO-10303-21")) return findFormat("step");
  if (start.starts_with("ply\n") || start.starts_with("ply\r")) return findFormat("ply");
  if (text.starts_with("solid") || hasLengthOfStl(start, byteCount)) return findFormat("stl");
  return nullptr;
}

std::string getExtension(const Format& format) {
  return std::string(format.extensions.substr(0, format.extensions.find(' ')));
}

std::string listReadFormats() { return listFormats(&Format::isRead); }

std::string listWrittenFormats() { return listFormats(&Format::isWritten); }

}  // namespace kova::translate
