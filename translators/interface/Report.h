#pragma once

#include "kovabase/foundation/KOVAResult.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kova::translators {

/// Where in a file something was found.
struct Place {
  enum class Kind { kNowhere, kLine, kByte };

  Kind kind = Kind::kNowhere;
  std::uint64_t number = 0;

  /// Lines count from 1, byte offsets from 0.
  static Place Line(std::uint64_t number) { return {Kind::kLine, number}; }
  static Place Byte(std::uint64_t offset) { return {Kind::kByte, offset}; }
};

/// The messages of a reader or writer about the file that it works on, as events of the process's
/// bus: "'part.stl', line 7: TEXT". Used by the thread that reads or writes the file.
class Report {
 public:
  /// @param file  what messages call the file, in UTF-8 and without control characters: a name in
  ///   single quotes or words like "standard input".
  explicit Report(std::string file) : _file(std::move(file)) {}
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  const std::string& GetFile() const { return _file; }

  /// Something is not as it should be, and the translation goes on: a warning event. Printf-style,
  /// cut at 1023 bytes, the name of the file before all else. A kind of trouble that can come often
  /// is counted by the caller and told once.
  void Warn(Place place, const char* format, ...) const __attribute__((format(printf, 3, 4)));

  /// The reason why the translation of this file ends: an error event. Told once for each file.
  /// @return `result`, for `return report.Fail(...)`.
  KOVAResult Fail(KOVAResult result, Place place, const char* format, ...) const
      __attribute__((format(printf, 4, 5)));

 private:
  std::string _file;
};

/// A piece of a file as it may stand in a message: in single quotes, what cannot be shown as
/// "\xNN", cut after 40 bytes.
std::string quote(const char* bytes, std::size_t count);

}  // namespace kova::translators
