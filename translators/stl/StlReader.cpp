#include "translators/stl/StlReader.h"

#include "translators/stl/StlForms.h"

#include <algorithm>
#include <string_view>

namespace kova::translators {

namespace {

constexpr std::size_t kWindowBytes = std::size_t{256} << 10;
constexpr std::size_t kProbedBytes = 1024;

bool isText(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(), [](char c) {
    const unsigned char byte = static_cast<unsigned char>(c);
    return byte < 0x20 && (byte < '\t' || byte > '\r');
  });
}

bool isBinary(const ByteWindow& window) {
  if (window.size() >= stlBinary::kHeaderBytes) {
    // The one certain sign, whatever the comment says.
    const std::int64_t bytes = window.GetSource().GetByteCount();
    const std::uint32_t triangles = stlBinary::getTriangleCount(window.begin());
    if (bytes >= 0 && static_cast<std::uint64_t>(bytes) == stlBinary::getFileBytes(triangles)) {
      return true;
    }
  }
  const std::string_view start(window.begin(), std::min(window.size(), kProbedBytes));
  if (isText(start)) return false;
  // A text with a stray control character is reported as one, by its line.
  return !(start.starts_with("solid") && start.find("facet") != std::string_view::npos);
}

}  // namespace

KOVAResult StlReader::Read(Source& source, Model& model, Report& report) {
  ByteWindow window(source, kWindowBytes);
  window.Require(kProbedBytes);
  if (window.size() == 0 && !window.HasFailed()) {
    return report.Fail(KOVAResultCode::kInvalidFile, Place::Byte(0), "the file is empty");
  }
  const int partsBefore = model.parts.size();
  const KOVAResult result = isBinary(window) ? stlBinary::read(window, model, report)
                                             : stlAscii::read(window, model, report);
  if (result.IsFailure() || model.parts.size() != partsBefore) return result;
  report.Warn({}, "there are no triangles in the file");
  return KOVAResultCode::kNoTranslatableGeometry;
}

}  // namespace kova::translators
