#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Reads STL: the binary form becomes one part, the ASCII form one part for each solid. The forms
/// are told apart by content, because binary files may begin with "solid" too. Vertices with equal
/// coordinates are merged; normals and attributes are not used.
/// @return a counted object, as KOVATranslatorCreateReader says.
KOVAFormatReader* createStlReader(const ReadRequest& request);

}  // namespace kova::translators
