#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Writes STL, binary or ASCII as the option "Stl.Write.Form" says: the triangles of all instances,
/// placed, with their normals; zeros for the normal of a triangle without area. The ASCII form has
/// a solid for each instance. Coordinates are rounded to single precision in the binary form; in
/// the ASCII form they are the shortest texts that read back to the same value.
///
/// A model without triangles, and one that is too large for the form, are errors, and the file is
/// not touched.
/// @return a counted object, as KOVATranslatorCreateWriter says.
KOVAFormatWriter* createStlWriter(const WriteRequest& request);

}  // namespace kova::translators
