#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Writes Wavefront OBJ: for each instance a group with its vertices, faces and polylines, placed.
/// Indices are positive and count through the whole file. Coordinates are the shortest texts that
/// read back to the same value. The same model always gives the same bytes.
/// @return a counted object, as KOVATranslatorCreateWriter says.
KOVAFormatWriter* createObjWriter(const WriteRequest& request);

}  // namespace kova::translators
