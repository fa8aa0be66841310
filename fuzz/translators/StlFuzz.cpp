// Any bytes as an STL file: one error, or a model whose coordinates are finite and whose corners
// exist.

#include "tests/translators/ReaderFixture.h"
#include "translators/stl/StlReader.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kova::translators;
  MemoryRequest request(std::string(reinterpret_cast<const char*>(data), size));
  request.Run(createStlReader);
  if (request.errors.size() != (request.result.IsFailure() ? 1U : 0U)) std::abort();
  if (request.result.IsSuccess() && !isSound(request.model)) std::abort();
  return 0;
}
