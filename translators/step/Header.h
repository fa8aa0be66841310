#pragma once

#include "kovabase/io/KOVAFileHeader.h"
#include "translators/step/Records.h"
#include "translators/step/Syntax.h"

namespace kova::translators::step {

/// Reads from the beginning of the file to the end of its header section: description, name,
/// schema and the other entries, in the order of the file.
/// @return false after a failure of the scanner.
bool readHeader(Scanner& scanner, KOVAFileHeader& header, const Report& report,
                const Document& document);

}  // namespace kova::translators::step
