#pragma once

#include "translators/model/ModelTools.h"

#include <cstdint>
#include <string>

namespace kova::translate {

/// What is known about one translated file. Lengths are in its unit.
struct Statistics {
  /// As the user has given it; "-" is standard input.
  std::string file;
  translators::Summary summary;
  /// In lower case; empty when it is unknown.
  std::string unit;
  double seconds = 0.0;
  /// Of the whole process up to the end of this file.
  std::int64_t peakBytes = 0;
  std::uint64_t warnings = 0;
  std::uint64_t errors = 0;

  /// One line each, with its line end. The JSON object is valid UTF-8 whatever the file's name is.
  std::string ToText() const;
  std::string ToJson() const;
};

}  // namespace kova::translate
