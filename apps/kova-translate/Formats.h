#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kova::translate {

/// A format that the program knows by name; whether its translator is there shows when it is
/// loaded.
struct Format {
  /// Also the middle of its library's name, and the word for --to.
  const char* name;
  /// In lower case, each with its dot, divided by blanks; the first one is that of files which are
  /// written.
  std::string_view extensions;
  bool isRead;
  bool isWritten;
};

inline constexpr Format kFormats[] = {{"obj", ".obj", false, true},
                                      {"ply", ".ply", true, true},
                                      {"step", ".stp .step .p21", true, false},
                                      {"stl", ".stl", true, true}};

/// @return null for a name that is none.
const Format* findFormat(std::string_view name);

/// By the extension of the file name, in capitals or not; null when there is none that is known.
const Format* findFormatOfFile(std::string_view path);

/// By the first bytes of a file, as many as `kProbedBytes` or all: "ISO-10303-21" behind white
/// space is STEP, "ply" on a line of its own is PLY, "solid" and a length that fits its count of
/// triangles are STL. Null for anything else.
/// @param byteCount  of the whole file.
const Format* findFormatOfContent(std::string_view start, std::uint64_t byteCount);
inline constexpr std::size_t kProbedBytes = 1024;

/// The extension of files that are written, with its dot.
std::string getExtension(const Format& format);

/// "obj, stl": the names of the formats that are read or written, for messages.
std::string listReadFormats();
std::string listWrittenFormats();

}  // namespace kova::translate
