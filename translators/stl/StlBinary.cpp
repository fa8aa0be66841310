#include "translators/stl/StlForms.h"

#include <bit>

namespace kova::translators::stlBinary {

namespace {

constexpr std::size_t kNormalBytes = 12;
constexpr std::size_t kCornerBytes = 12;

std::uint32_t readUnsigned(const char* bytes) {
  const auto byte = [bytes](int i) {
    return std::uint32_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
  };
  return byte(0) | byte(1) | byte(2) | byte(3);
}

bool isFinite(std::uint32_t bits) { return (bits & 0x7F800000U) != 0x7F800000U; }

// False when a coordinate is infinite or not a number.
bool readCorner(const char* bytes, Point& point) {
  const std::uint32_t x = readUnsigned(bytes);
  const std::uint32_t y = readUnsigned(bytes + 4);
  const std::uint32_t z = readUnsigned(bytes + 8);
  point = {double{std::bit_cast<float>(x)}, double{std::bit_cast<float>(y)},
           double{std::bit_cast<float>(z)}};
  return isFinite(x) && isFinite(y) && isFinite(z);
}

KOVAResult failReading(std::uint64_t offset, const Report& report) {
  return report.Fail(KOVAResultCode::kFileOpenError, Place::Byte(offset),
                     "the file cannot be read any further");
}

}  // namespace

std::uint32_t getTriangleCount(const char* header) { return readUnsigned(header + kCommentBytes); }

std::uint64_t getFileBytes(std::uint32_t triangles) {
  return kHeaderBytes + std::uint64_t{triangles} * kTriangleBytes;
}

KOVAResult readTriangleCount(ByteWindow& window, const Report& report, std::uint32_t& triangles) {
  if (!window.Require(kHeaderBytes)) {
    if (window.HasFailed()) return failReading(window.size(), report);
    return report.Fail(
        KOVAResultCode::kInvalidFile, Place::Byte(window.size()),
        "the file ends inside the header of a binary STL file, which takes %zu bytes; it is no "
        "ASCII STL file either",
        kHeaderBytes);
  }
  triangles = getTriangleCount(window.begin());
  const std::uint64_t promised = getFileBytes(triangles);
  const std::uint64_t bytes = window.GetByteCount();
  window.Skip(kHeaderBytes);
  if (bytes < promised) {
    return report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(bytes),
                       "the file ends here, but its header promises %u triangles, %llu bytes in "
                       "all",
                       triangles, static_cast<unsigned long long>(promised));
  }
  if (bytes > promised && triangles == 0) {
    return report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(kCommentBytes),
                       "the header promises no triangles, but more bytes follow");
  }
  if (bytes > promised) {
    report.Warn(Place::Byte(promised), "%llu bytes after the last triangle are not used",
                static_cast<unsigned long long>(bytes - promised));
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult readTriangles(ByteWindow& window, std::uint32_t triangles, Model& model,
                         const Report& report) {
  if (triangles == 0) return KOVAResultCode::kSuccess;
  Progress progress("read", window.GetByteCount(), Progress::kBytesPerEvent);
  MeshBuilder builder(true);
  // Not on trust: the file is as long.
  builder.Reserve(static_cast<int>(triangles));
  for (std::uint32_t triangle = 0; triangle < triangles; ++triangle) {
    if (!window.Require(kTriangleBytes)) {
      return failReading(window.GetOffset() + window.size(), report);
    }
    Point corners[3];
    for (std::size_t corner = 0; corner < 3; ++corner) {
      const std::size_t at = kNormalBytes + corner * kCornerBytes;
      if (!readCorner(window.begin() + at, corners[corner])) {
        return report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(window.GetOffset() + at),
                           "corner %zu of triangle %u has a coordinate that is not a finite number",
                           corner + 1, triangle + 1);
      }
    }
    if (!builder.AddTriangle(corners)) {
      return report.Fail(KOVAResultCode::kNotSupported, Place::Byte(window.GetOffset()),
                         "more than %d triangles or vertices", MeshBuilder::kMostElements);
    }
    window.Skip(kTriangleBytes);
    progress.Reach(window.GetOffset());
  }
  Part part;
  part.meshes.add(builder.Finish());
  if (builder.GetDegenerateCount() != 0) {
    report.Warn({}, "triangles with coinciding corners, kept as they are: %llu",
                static_cast<unsigned long long>(builder.GetDegenerateCount()));
  }
  addPart(model, part);
  return KOVAResultCode::kSuccess;
}

}  // namespace kova::translators::stlBinary
