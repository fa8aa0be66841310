#pragma once

#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Formats.h"
#include "apps/kova-translate/system/StandardStreams.h"

#include <string>
#include <vector>

namespace kova::translate {

/// What is to be done with one input.
struct Task {
  /// As the user has given it; "-" is standard input.
  std::string input;
  /// What messages call it.
  std::string name;
  /// Null when there is a problem.
  const Format* source = nullptr;
  const Format* target = nullptr;
  /// Where the result goes; "-" is standard output.
  std::string output;
  /// Where the picture goes; empty for none.
  std::string preview;
  /// The bytes of standard input; of a file none.
  Block block;
  /// Why it cannot be done; empty when nothing speaks against it.
  std::string problem;
};

/// Settles what becomes of every input, in the order in which they were given, and finds what can
/// be known before the work: inputs that cannot be read or are of no known format, and results that
/// cannot be written or would take the place of an input or of another result. Reads standard input
/// to its end when it is among the inputs.
std::vector<Task> makePlan(const Settings& settings);

}  // namespace kova::translate
