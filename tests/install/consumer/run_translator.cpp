// A host of another project: loads a translator and has it read a block of memory.
// Usage: run_translator LIBRARY

#include "kovabase/KOVABase.h"
#include "translators/interface/Translator.h"

#include <cstdio>
#include <cstring>

int main(int count, char** arguments) {
  using namespace kova::translators;
  if (count != 2) return 2;
  KOVAVexilLibrary library(KOVAString(arguments[1]), "KOVATranslatorInitialize",
                           "KOVATranslatorFinalize");
  void* number = nullptr;
  void* create = nullptr;
  library.GetFunction("KOVATranslatorInterfaceNumber", number);
  library.GetFunction("KOVATranslatorCreateReader", create);
  if (number == nullptr || create == nullptr) return 1;
  if (reinterpret_cast<decltype(&KOVATranslatorInterfaceNumber)>(number)() != kInterfaceNumber) {
    std::fprintf(stderr, "the translator has another interface\n");
    return 1;
  }

  char text[] = "0 0 0\n4 0 0\n0 3 0\n";
  const Report report("corners");
  const KOVAOptions options;
  KOVAFileHeader header;
  Model model;
  const ReadRequest request{
      {},   reinterpret_cast<unsigned char*>(text), std::strlen(text), report, options, header,
      model};
  KOVAReader reader(reinterpret_cast<decltype(&KOVATranslatorCreateReader)>(create)(&request));
  KOVAResult result = reader.ReadHeaderSection();
  if (result.IsSuccess()) result &= reader.ReadDataSection();
  if (result.IsFailure()) return 1;
  const Mesh& mesh = model.parts[0].meshes[0];
  std::printf("%d triangles, %d vertices\n", mesh.triangles.size(), mesh.vertices.size());
  return mesh.triangles.size() == 1 && mesh.vertices.size() == 3 ? 0 : 1;
}
