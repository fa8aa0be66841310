#include "tests/translators/ReaderFixture.h"
#include "translators/step/StepReader.h"

#include <cstdint>
#include <cstdlib>
#include <string>

// Any bytes as a STEP file: one error, or a sound model that is not much larger than the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kova::translators;
  MemoryRequest request(std::string(reinterpret_cast<const char*>(data), size));
  request.Run(step::createReader);
  if (request.errors.size() != (request.result.IsFailure() ? 1U : 0U)) std::abort();
  if (request.result.IsFailure()) return 0;
  if (!isSound(request.model)) std::abort();
  return 0;
}
