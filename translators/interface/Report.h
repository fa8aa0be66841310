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

/// Takes the messages of a reader or writer about the file that it works on. Whoever runs the
/// translator names the file and shows the text; the translator says where in it and what.
class Report {
 public:
  Report() = default;
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  virtual ~Report() = default;

  /// Something is not as it should be, and the translation goes on. Printf-style, cut at 1023
  /// bytes. A kind of trouble that can come often is counted and told once.
  void Warn(Place place, const char* format, ...) __attribute__((format(printf, 3, 4)));

  /// The reason why the translation of this file ends.
  /// @return `result`, for `return report.Fail(...)`.
  KOVAResult Fail(KOVAResult result, Place place, const char* format, ...)
      __attribute__((format(printf, 4, 5)));

 protected:
  virtual void HandleWarning(Place place, const char* text) = 0;
  virtual void HandleError(Place place, const char* text) = 0;
};

/// A piece of a file as it may stand in a message: in single quotes, what cannot be shown as
/// "\xNN", cut after 40 bytes.
std::string quote(const char* bytes, std::size_t count);

}  // namespace kova::translators
