#include "translators/model/MeshBuilder.h"
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

KOVAResult failAtEnd(const ByteWindow& window, std::uint64_t offset, std::uint32_t triangles,
                     Report& report) {
  if (window.HasFailed()) {
    return report.Fail(KOVAResultCode::kFileOpenError, Place::Byte(offset),
                       "the file cannot be read any further: %s",
                       window.GetSource().GetFailureReason());
  }
  return report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(offset),
                     "the file ends here, but its header promises %u triangles, %llu bytes in all",
                     triangles, static_cast<unsigned long long>(getFileBytes(triangles)));
}

// What stands behind the last triangle, when the length of the file is known.
void warnOfRest(std::uint64_t bytes, std::uint64_t offset, Report& report) {
  report.Warn(Place::Byte(offset), "%llu bytes after the last triangle are not used",
              static_cast<unsigned long long>(bytes));
}

}  // namespace

std::uint32_t getTriangleCount(const char* header) {
  return readUnsigned(header + kHeaderBytes - 4);
}

std::uint64_t getFileBytes(std::uint32_t triangles) {
  return kHeaderBytes + std::uint64_t{triangles} * kTriangleBytes;
}

KOVAResult read(ByteWindow& window, Model& model, Report& report) {
  if (!window.Require(kHeaderBytes)) {
    if (window.HasFailed()) return failAtEnd(window, window.size(), 0, report);
    return report.Fail(
        KOVAResultCode::kInvalidFile, Place::Byte(window.size()),
        "the file ends inside the header of a binary STL file, which takes %zu bytes; it is no "
        "ASCII STL file either",
        kHeaderBytes);
  }
  const std::uint32_t triangles = getTriangleCount(window.begin());
  const std::uint64_t promised = getFileBytes(triangles);
  const std::int64_t known = window.GetSource().GetByteCount();
  window.Skip(kHeaderBytes);

  // A promise that the file cannot keep costs no memory.
  if (known >= 0 && static_cast<std::uint64_t>(known) < promised) {
    return failAtEnd(window, static_cast<std::uint64_t>(known), triangles, report);
  }
  if (triangles == 0 && window.Require(1)) {
    return report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(kHeaderBytes - 4),
                       "the header promises no triangles, but more bytes follow");
  }
  if (triangles > static_cast<std::uint32_t>(MeshBuilder::kMostElements)) {
    return report.Fail(KOVAResultCode::kNotSupported, Place::Byte(kHeaderBytes - 4),
                       "%u triangles are more than one part can hold, %d", triangles,
                       MeshBuilder::kMostElements);
  }
  if (triangles == 0) return KOVAResultCode::kSuccess;

  MeshBuilder builder(true);
  if (known >= 0) builder.Reserve(static_cast<int>(triangles));
  for (std::uint32_t triangle = 0; triangle < triangles; ++triangle) {
    if (!window.Require(kTriangleBytes)) {
      return failAtEnd(window, window.GetOffset() + window.size(), triangles, report);
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
                         "more than %d different vertices", MeshBuilder::kMostElements);
    }
    window.Skip(kTriangleBytes);
  }
  if (known >= 0 && static_cast<std::uint64_t>(known) > promised) {
    warnOfRest(static_cast<std::uint64_t>(known) - promised, promised, report);
  } else if (known < 0 && window.Require(1)) {
    report.Warn(Place::Byte(promised), "the bytes after the last triangle are not used");
  }
  const Mesh& mesh = builder.Finish();
  if (builder.GetDegenerateCount() != 0) {
    report.Warn({}, "triangles with coinciding corners, kept as they are: %llu",
                static_cast<unsigned long long>(builder.GetDegenerateCount()));
  }
  model.parts.add({KOVAString(), mesh});
  return KOVAResultCode::kSuccess;
}

}  // namespace kova::translators::stlBinary
