#pragma once

#include "kovabase/strings/KOVAString.h"

#include <string_view>

namespace kova::translators::step {

/// The text of a string of an ISO 10303-21 file, of which `raw` is what stands between the
/// apostrophes. Understands doubled apostrophes and backslashes, "\S\c" in the pages that "\P.\"
/// chooses (ISO 8859-1 to -9), "\X\hh", "\X2\...\X0\" and "\X4\...\X0\". Line ends of the file are
/// no part of it, "\N\", "\F\" and control characters become blanks, bytes above 127 are UTF-8 or
/// else Latin-1. A malformed directive stands as it is.
KOVAString decodeString(std::string_view raw);

}  // namespace kova::translators::step
