#pragma once

#include "translators/interface/ByteWindow.h"
#include "translators/interface/Report.h"
#include "translators/model/Model.h"

#include <cstddef>
#include <cstdint>

/// The two forms of STL. Both read from the start of the window to the end of the file, add parts
/// to the model, and warn of what they find on the way.
namespace kova::translators {

/// Binary STL, all little-endian: a comment of 80 bytes, the number of triangles as a 32-bit
/// unsigned integer, then for each triangle twelve 32-bit floats (normal and three corners) and a
/// 16-bit attribute: 50 bytes.
namespace stlBinary {

inline constexpr std::size_t kHeaderBytes = 84;
inline constexpr std::size_t kTriangleBytes = 50;

/// The number of triangles that a header of `kHeaderBytes` bytes promises.
std::uint32_t getTriangleCount(const char* header);

/// The length of a file with this many triangles.
std::uint64_t getFileBytes(std::uint32_t triangles);

KOVAResult read(ByteWindow& window, Model& model, Report& report);

}  // namespace stlBinary

/// ASCII STL: words divided by white space, in capitals or not.
///
///     solid NAME
///       facet normal X Y Z
///         outer loop
///           vertex X Y Z          three times
///         endloop
///       endfacet
///     endsolid NAME
///
/// NAME is the rest of its line and may be missing. A file may hold several solids.
namespace stlAscii {

KOVAResult read(ByteWindow& window, Model& model, Report& report);

}  // namespace stlAscii

}  // namespace kova::translators
