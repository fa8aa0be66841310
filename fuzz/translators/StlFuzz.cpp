#include "fuzz/translators/RoundTrip.h"
#include "translators/stl/StlReader.h"
#include "translators/stl/StlWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kova::translators;
  fuzzRoundTrip(data, size, createStlReader,
                {{createStlWriter, createStlReader, "Stl.Write.Form", "binary"},
                 {createStlWriter, createStlReader, "Stl.Write.Form", "ascii"}});
  return 0;
}
