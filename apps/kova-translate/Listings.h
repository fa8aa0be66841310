#pragma once

#include "apps/kova-translate/TranslatorSet.h"
#include "kovabase/options/KOVAOptions.h"

#include <string>

/// What --list, --options and --env print.
namespace kova::translate {

/// Every format with its library or, for a missing one, every place that was tried and the reason.
std::string listTranslators(TranslatorSet& translators);

/// Every option with its value, type, default and meaning.
std::string listOptions(const KOVAOptions& options);

/// Every variable with its value, default and meaning, and those that look like one and are none.
std::string listEnvironment();

}  // namespace kova::translate
