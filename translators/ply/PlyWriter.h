#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Writes PLY in the form that the option "Ply.Write.Form" names: "little" and "big" for the binary
/// forms, "ascii". The meshes of all instances, placed, become one list of vertices and one of
/// faces, the curves a list of edges. Coordinates are doubles, unless all of them are values of a
/// `float`. Faces have colours when something that is written has one.
///
/// A model without triangles and curves, and one that is too large for the form, are errors, and
/// the file is not touched.
/// @return a counted object, as KOVATranslatorCreateWriter says.
KOVAFormatWriter* createPlyWriter(const WriteRequest& request);

}  // namespace kova::translators
