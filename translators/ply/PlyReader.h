#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Reads PLY in its three forms into one part: faces and triangle strips become a mesh over the
/// vertices as the file has them, edges become curves; edges of which each begins where the one
/// before ends become one curve. Polygons are divided into triangles; see PolygonDivider. Elements
/// and properties that are not known are stepped over.
///
/// The part has the name that a comment "name: TEXT" gives.
/// @return a counted object, as KOVATranslatorCreateReader says.
KOVAFormatReader* createPlyReader(const ReadRequest& request);

}  // namespace kova::translators
