#include "fuzz/translators/RoundTrip.h"
#include "translators/ply/PlyReader.h"
#include "translators/ply/PlyWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kova::translators;
  fuzzRoundTrip(data, size, createPlyReader,
                {{createPlyWriter, createPlyReader, "Ply.Write.Form", "little"},
                 {createPlyWriter, createPlyReader, "Ply.Write.Form", "big"},
                 {createPlyWriter, createPlyReader, "Ply.Write.Form", "ascii"}});
  return 0;
}
