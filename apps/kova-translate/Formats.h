#pragma once

#include <string>

namespace kova::translate {

/// A format that the program knows by name; whether its translator is there shows when it is
/// loaded.
struct Format {
  /// Also the middle of its library's name, and the word for --to.
  const char* name;
  /// Lower case, with the dot.
  const char* extension;
  bool isRead;
  bool isWritten;
};

inline constexpr Format kFormats[] = {{"obj", ".obj", false, true}, {"stl", ".stl", true, false}};

/// @return null for a name that is none.
const Format* findFormat(const std::string& name);

/// By the extension of the file name, in capitals or not; null when there is none that is known.
const Format* findFormatOfFile(const std::string& path);

/// "obj, stl": the names of the formats that are read or written, for messages.
std::string listReadFormats();
std::string listWrittenFormats();

}  // namespace kova::translate
