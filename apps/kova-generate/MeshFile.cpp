#include "apps/kova-generate/MeshFile.h"

#include "kovabase/io/KOVAOutputStream.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <unordered_map>

namespace kova::generate {

namespace {

Point3D normalOf(const Facet& facet) {
  const auto& [a, b, c] = facet;
  const Point3D u{b.x - a.x, b.y - a.y, b.z - a.z};
  const Point3D v{c.x - a.x, c.y - a.y, c.z - a.z};
  const Point3D n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
  const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
  if (length == 0) return {0, 0, 0};
  return {n.x / length, n.y / length, n.z / length};
}

void writeUnsigned(KOVAOutputStream& stream, std::uint32_t value, int bytes) {
  char text[4];
  for (int i = 0; i < bytes; ++i) text[i] = static_cast<char>(value >> (8 * i) & 0xFF);
  stream.Write(text, static_cast<std::size_t>(bytes));
}

void writeBinaryStl(KOVAOutputStream& stream, const std::vector<Shape>& shapes) {
  std::size_t facets = 0;
  for (const Shape& shape : shapes) facets += shape.facets.size();
  std::string comment = "solid in spite of this word a binary file, made by kova-generate";
  comment.resize(80, ' ');
  stream.Write(comment.data(), comment.size());
  writeUnsigned(stream, static_cast<std::uint32_t>(facets), 4);
  for (const Shape& shape : shapes) {
    for (const Facet& facet : shape.facets) {
      for (const Point3D& point : {normalOf(facet), facet[0], facet[1], facet[2]}) {
        for (const double value : {point.x, point.y, point.z}) {
          writeUnsigned(stream, std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
        }
      }
      writeUnsigned(stream, 0, 2);
    }
  }
}

void writeAsciiPoint(KOVAOutputStream& stream, const char* keyword, const Point3D& point) {
  stream.Write(keyword);
  for (const double value : {point.x, point.y, point.z}) {
    std::array<char, 32> text;
    text[0] = ' ';
    // Adding zero leaves no negative zero.
    const float number = static_cast<float>(value) + 0.0F;
    const char* end = std::to_chars(text.data() + 1, text.data() + text.size(), number,
                                    std::chars_format::scientific)
                          .ptr;
    stream.Write(text.data(), static_cast<std::size_t>(end - text.data()));
  }
  stream.Write("\n");
}

void writeAsciiStl(KOVAOutputStream& stream, const std::vector<Shape>& shapes) {
  for (const Shape& shape : shapes) {
    stream.Write(("solid " + shape.name + "\n").c_str());
    for (const Facet& facet : shape.facets) {
      writeAsciiPoint(stream, "  facet normal", normalOf(facet));
      stream.Write("    outer loop\n");
      for (const Point3D& point : facet) writeAsciiPoint(stream, "      vertex", point);
      stream.Write("    endloop\n  endfacet\n");
    }
    stream.Write(("endsolid " + shape.name + "\n").c_str());
  }
}

struct Corner {
  float x;
  float y;
  float z;

  bool operator==(const Corner& other) const = default;
};

struct CornerHash {
  std::size_t operator()(const Corner& corner) const {
    std::size_t hash = 0;
    for (const float value : {corner.x, corner.y, corner.z}) {
      hash = (hash ^ std::bit_cast<std::uint32_t>(value)) * 0x9E3779B97F4A7C15U;
      hash ^= hash >> 32;
    }
    return hash;
  }
};

}  // namespace

void writeStl(KOVAOutputStream& stream, const std::vector<Shape>& shapes, bool isAscii) {
  if (isAscii) {
    writeAsciiStl(stream, shapes);
  } else {
    writeBinaryStl(stream, shapes);
  }
}

void writePly(KOVAOutputStream& stream, const std::vector<Shape>& shapes, bool isAscii) {
  std::vector<Corner> corners;
  std::vector<std::uint32_t> faces;
  std::unordered_map<Corner, std::uint32_t, CornerHash> numbers;
  for (const Shape& shape : shapes) {
    for (const Facet& facet : shape.facets) {
      for (const Point3D& point : facet) {
        const Corner corner{static_cast<float>(point.x) + 0.0F, static_cast<float>(point.y) + 0.0F,
                            static_cast<float>(point.z) + 0.0F};
        const auto [place, isNew] =
            numbers.emplace(corner, static_cast<std::uint32_t>(corners.size()));
        if (isNew) corners.push_back(corner);
        faces.push_back(place->second);
      }
    }
  }
  stream.Write(
      ("ply\nformat " + std::string(isAscii ? "ascii" : "binary_little_endian") +
       " 1.0\ncomment made by kova-generate\nelement vertex " + std::to_string(corners.size()) +
       "\nproperty float x\nproperty float y\nproperty float z\nelement face " +
       std::to_string(faces.size() / 3) + "\nproperty list uchar int vertex_indices\nend_header\n")
          .c_str());
  for (const Corner& corner : corners) {
    if (isAscii) {
      writeAsciiPoint(stream, "", {corner.x, corner.y, corner.z});
      continue;
    }
    for (const float value : {corner.x, corner.y, corner.z}) {
      writeUnsigned(stream, std::bit_cast<std::uint32_t>(value), 4);
    }
  }
  for (std::size_t i = 0; i < faces.size(); i += 3) {
    if (isAscii) {
      stream.Write(("3 " + std::to_string(faces[i]) + ' ' + std::to_string(faces[i + 1]) + ' ' +
                    std::to_string(faces[i + 2]) + '\n')
                       .c_str());
      continue;
    }
    writeUnsigned(stream, 3, 1);
    for (std::size_t j = 0; j < 3; ++j) writeUnsigned(stream, faces[i + j], 4);
  }
}

}  // namespace kova::generate
