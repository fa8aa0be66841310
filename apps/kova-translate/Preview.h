#pragma once

#include "kovabase/io/KOVAOutputStream.h"
#include "translators/model/Model.h"
#include "translators/model/ModelTools.h"

#include <string>

namespace kova::translate {

/// Draws the model as an SVG image: seen from the front, the right and above, with z up. Curves are
/// lines that fade with their distance, triangles a shaded surface with outlines. Name, size, unit
/// and counts stand in a corner; a scale, the directions of the axes and the names of a few parts
/// are added.
///
/// The image takes at most about 3 MB however large the model is, and the same model always gives
/// the same bytes. The work grows with the points and triangles of all instances; the memory is
/// some 45 MiB at most.
/// @param summary  of this model.
/// @param title  the name that stands in the corner, UTF-8; any bytes do.
/// What the stream refuses stays in its result.
void writePreview(const translators::Model& model, const translators::Summary& summary,
                  const std::string& title, KOVAOutputStream& stream);

}  // namespace kova::translate
