#pragma once

#include "kovabase/options/KOVAOptions.h"

#include <string>

namespace kova::translate {

struct Settings;

/// Files every option of the catalogue with its default, then sets those that the configuration
/// files and then the arguments name. A name applies to all options that the look-up of an option
/// set would find under it: "Tolerance" and "*.Read.Tolerance" to "Step.Read.Tolerance".
/// @param problem  receives what is wrong: an unknown name, a value that is not of the option's
///   type, a file that cannot be read.
bool gatherOptions(const Settings& settings, KOVAOptions& options, std::string& problem);

/// Takes over what the environment overrides, each with a warning, so that all threads may read the
/// options from then on.
bool applyEnvironment(KOVAOptions& options, std::string& problem);

/// Sets the process's units by the options of the program.
void setUnits(const KOVAOptions& options);

}  // namespace kova::translate
