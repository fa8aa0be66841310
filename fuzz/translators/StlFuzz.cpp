// Any bytes as an STL file: one error, or a model whose coordinates are finite and whose corners
// exist. The same bytes as a file and as a pipe must give the same triangles when both are read.

#include "tests/translators/ReaderFixture.h"
#include "translators/stl/StlReader.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace kova::translators;

void require(bool condition) {
  if (!condition) std::abort();
}

// The triangles of a sound model; -1 when the file was refused.
std::int64_t read(const std::uint8_t* data, std::size_t size, bool isPipe) {
  MemorySource source(data, size, isPipe);
  Model model;
  RecordingReport report;
  const KOVAResult result = StlReader().Read(source, model, report);
  require(report.errors.size() == (result.IsFailure() ? 1U : 0U));
  if (result.IsFailure()) return -1;
  std::int64_t triangles = 0;
  for (const Part& part : model.parts) {
    for (const Point& point : part.mesh.vertices) {
      require(std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z));
    }
    for (const Triangle& triangle : part.mesh.triangles) {
      for (const std::uint32_t corner : triangle.corners) {
        require(corner < static_cast<std::uint32_t>(part.mesh.vertices.size()));
      }
    }
    triangles += part.mesh.triangles.size();
  }
  return triangles;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::int64_t asFile = read(data, size, false);
  const std::int64_t asPipe = read(data, size, true);
  require(asFile < 0 || asPipe < 0 || asFile == asPipe);
  return 0;
}
