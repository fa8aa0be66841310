#pragma once

#include "tests/translators/ReaderFixture.h"

#include <cstdint>
#include <cstdlib>
#include <initializer_list>

/// Any bytes as a file: one error, or a sound model that comes back when it is written in any form
/// and read again.
namespace kova::translators {

struct Round {
  CreateWriter write;
  CreateReader read;
  const char* option;
  const char* form;
};

inline void require(bool condition) {
  if (!condition) std::abort();
}

inline void fuzzRoundTrip(const std::uint8_t* data, std::size_t size, CreateReader read,
                          std::initializer_list<Round> rounds) {
  MemoryRequest first(std::string(reinterpret_cast<const char*>(data), size));
  first.Run(read);
  require(first.errors.size() == (first.result.IsFailure() ? 1U : 0U));
  if (first.result.IsFailure()) return;
  require(isSound(first.model));
  const std::vector<Point> corners = collectCorners(first.model);
  for (const Round& round : rounds) {
    WriteTrial trial;
    trial.options.AddOption(KOVAString(round.option), round.form);
    trial.Run(round.write, first.model);
    require(trial.errors.size() == (trial.result.IsFailure() ? 1U : 0U));
    // Nothing else is wrong with a model that was read.
    require(trial.result.IsSuccess() || corners.empty());
    if (trial.result.IsFailure()) continue;
    MemoryRequest second(trial.bytes);
    second.Run(round.read);
    require(second.result.IsSuccess() && isSound(second.model));
    require(areSameFloats(collectCorners(second.model), corners));
  }
}

}  // namespace kova::translators
