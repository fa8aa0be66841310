#pragma once

#include "kovabase/io/KOVAFileHeader.h"
#include "translators/interface/ByteWindow.h"
#include "translators/interface/Report.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kova::translators::ply {

/// What a PLY file begins with, lines of words:
///
///     ply
///     format FORM 1.0                     ascii, binary_little_endian or binary_big_endian
///     comment TEXT
///     obj_info TEXT
///     element NAME COUNT                  COUNT records of these values, in this order:
///     property TYPE NAME                  a number
///     property list TYPE TYPE NAME        how many numbers, and the numbers
///     end_header
///
/// The records of all elements follow, element by element, in the ASCII form as words. G. Turk,
/// "The PLY Polygon File Format", 1994; the type names "int8" to "float64" have come later.

enum class Form { kAscii, kLittle, kBig };

enum class Type : unsigned char {
  kInt8,
  kUint8,
  kInt16,
  kUint16,
  kInt32,
  kUint32,
  kFloat32,
  kFloat64
};

inline std::size_t getBytes(Type type) {
  constexpr std::size_t kBytes[] = {1, 1, 2, 2, 4, 4, 4, 8};
  return kBytes[static_cast<std::size_t>(type)];
}

inline bool isInteger(Type type) { return type < Type::kFloat32; }

/// What is read of a record; all other values are stepped over.
enum class Role : unsigned char { kNone, kX, kY, kZ, kIndices, kVertex1, kVertex2 };

struct Property {
  Type type = Type::kInt8;
  bool isList = false;
  /// Of the number of values before a list.
  Type countType = Type::kInt8;
  Role role = Role::kNone;
};

enum class Kind { kOther, kVertex, kFace, kEdge, kStrips };

struct Element {
  std::string name;
  Kind kind = Kind::kOther;
  std::uint64_t count = 0;
  /// Where the header names it.
  std::uint64_t line = 0;
  std::vector<Property> properties;

  bool HasRole(Role role) const;
  /// The least that a record takes; in the ASCII form without the white space behind it.
  std::uint64_t GetLeastBytes(Form form) const;
};

struct Header {
  Form form = Form::kAscii;
  std::vector<Element> elements;
  /// What a comment "name: TEXT" says; else empty.
  std::string name;
  /// The line behind the header.
  std::uint64_t nextLine = 1;
};

/// Reads the header at the start of the window, and steps behind it.
/// @param entries  receives the comments, the first hundred of them.
/// @return InvalidFile or FileOpenError, which has been reported.
KOVAResult readHeader(ByteWindow& window, const Report& report, Header& header,
                      KOVAFileHeader& entries);

}  // namespace kova::translators::ply
