#pragma once

#include "translators/interface/ByteWindow.h"
#include "translators/interface/Frame.h"
#include "translators/interface/Report.h"
#include "translators/interface/Text.h"
#include "translators/model/MeshBuilder.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The two forms of STL.
namespace kova::translators {

/// Binary STL, all little-endian: a comment of 80 bytes, the number of triangles as a 32-bit
/// unsigned integer, then for each triangle twelve 32-bit floats (normal and three corners) and a
/// 16-bit attribute: 50 bytes.
namespace stlBinary {

inline constexpr std::size_t kCommentBytes = 80;
inline constexpr std::size_t kHeaderBytes = 84;
inline constexpr std::size_t kTriangleBytes = 50;

/// The number of triangles that a header of `kHeaderBytes` bytes promises.
std::uint32_t getTriangleCount(const char* header);

/// The length of a file with this many triangles.
std::uint64_t getFileBytes(std::uint32_t triangles);

/// Checks the promise of the header, at which the window stands, and steps behind it.
KOVAResult readTriangleCount(ByteWindow& window, const Report& report, std::uint32_t& triangles);

/// Reads so many triangles into one part, or none when there are none.
KOVAResult readTriangles(ByteWindow& window, std::uint32_t triangles, Model& model,
                         const Report& report);

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

class Parser {
 public:
  /// The window stands at the start of the file.
  Parser(ByteWindow& window, Model& model, const Report& report);

  /// Finds the first solid.
  KOVAResult ReadStart();
  /// Whether a solid, or what is taken for one, is still to be read.
  bool HasSolid() const { return !_words.GetWord().empty(); }
  /// Reads the next solid into a part of its own.
  KOVAResult ReadSolid();
  /// Warns of what was found on the way.
  KOVAResult Finish();

 private:
  KOVAResult ReadFacet(MeshBuilder& builder);
  KOVAResult ReadNormal();
  KOVAResult ReadNumber(double& number);
  KOVAResult Expect(std::string_view keyword);
  KOVAResult FailExpecting(const char* expected);

  WordScanner _words;
  Model& _model;
  const Report& _report;
  Progress _progress;
  std::uint64_t _degenerates = 0;
  std::uint64_t _emptySolids = 0;
};

}  // namespace stlAscii

}  // namespace kova::translators
