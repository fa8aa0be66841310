#pragma once

#include <string>

class KOVAString;

namespace kova::internal {

/// The text in the default code page, '_' for each character that it lacks.
/// @return false, `narrow` untouched, when the text holds U+0000 and no variable can keep it.
bool toEnvironmentText(const KOVAString& text, std::string& narrow);

/// The same for a name, which must be neither empty nor hold '='.
bool toEnvironmentName(const KOVAString& name, std::string& narrow);

}  // namespace kova::internal
