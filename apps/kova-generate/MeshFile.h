#pragma once

#include "apps/kova-generate/Shapes.h"

#include <vector>

class KOVAOutputStream;

namespace kova::generate {

/// A solid for each shape in ASCII; in binary all in one, behind a comment that begins with
/// "solid", as that of some systems does.
void writeStl(KOVAOutputStream& stream, const std::vector<Shape>& shapes, bool isAscii);

/// All shapes in one mesh with shared vertices; binary is little-endian.
void writePly(KOVAOutputStream& stream, const std::vector<Shape>& shapes, bool isAscii);

}  // namespace kova::generate
