#pragma once

#include <cstdint>
#include <string_view>

class KOVAOutputStream;

namespace kova::generate {

/// Writes a gear train as a STEP file: solids with faces and triangles, curves alone and triangles
/// alone, in an assembly that uses a sub-assembly twice; names in several scripts, colours, layers,
/// and one part in inches among millimetres. The same bytes on every run.
/// @param name  what the file is called, UTF-8.
/// @param repeats  how many gear trains, at least 1: side by side, sharing nothing.
/// @param bytes  more of them are written until the file is at least so large.
void writeGearTrain(KOVAOutputStream& stream, std::string_view name, int repeats,
                    std::uint64_t bytes);

}  // namespace kova::generate
