#pragma once

#include "kovabase/options/KOVAOptions.h"
#include "kovabase/strings/KOVAString.h"

/// Reads the settings of a translation. The program has put what the environment overrides into
/// the set already, so that any thread may read it.
namespace kova::translators {

/// The value of the option that applies to `name`, or `standard` when there is none or it does not
/// convert. T is double, int, bool or KOVAString.
template <class T>
T readOption(const KOVAOptions& options, const char* name, T standard) {
  KOVAOption* option = nullptr;
  T value = standard;
  if (options.GetOption(KOVAString(name), option).IsFailure()) return standard;
  return option->GetValue(value).IsSuccess() ? value : standard;
}

}  // namespace kova::translators
