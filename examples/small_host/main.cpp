// Loads a translator by name and reads a file with it.
// Usage: small_host FORMAT FILE FOLDER   (the folder where the translator is)

#include <kovabase/KOVABase.h>

#include <cstdio>
#include <translators/interface/Translator.h>

using namespace kova::translators;

int main(int, char** arguments) {
  KOVAConsoleLogger console;
  console.Initialize(KOVAEventLevels::kWarning);
  KOVALibrary::AddDirectoryToPath(arguments[3]);
  KOVAVexilLibrary library(KOVAString("kova_") + KOVAString(arguments[1]),
                           "KOVATranslatorInitialize", "KOVATranslatorFinalize");
  void* create = nullptr;
  if (library.GetFunction("KOVATranslatorCreateReader", create).IsFailure()) return 2;

  const KOVAFilePath path(arguments[2]);
  const Report report("the file");
  const KOVAOptions options;
  KOVAFileHeader header;
  Model model;
  const ReadRequest request{new KOVAFile(path), nullptr, 0, report, options, header, model};
  KOVAReader reader(reinterpret_cast<decltype(&KOVATranslatorCreateReader)>(create)(&request));
  KOVAResult result = reader.ReadHeaderSection();
  if (result.IsSuccess()) result = reader.ReadFileInfoSection();
  if (result.IsSuccess()) result = reader.ReadDataSection();
  if (result.IsSuccess()) reader.Resolve();
  reader.ReleaseEntityReaders();
  std::printf("%s: %d parts\n", result.GetMessage(), model.parts.size());
  return result.IsSuccess() ? 0 : 1;
}
