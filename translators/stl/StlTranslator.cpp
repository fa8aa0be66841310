#include "translators/interface/Translator.h"
#include "translators/stl/StlReader.h"
#include "translators/stl/StlWriter.h"

int KOVATranslatorInterfaceNumber() { return kova::translators::kInterfaceNumber; }

void KOVATranslatorInitialize() {}

void KOVATranslatorFinalize() {}

const kova::translators::Description* KOVATranslatorDescribe() {
  static constexpr kova::translators::Description kDescription{
      "stereolithography meshes, binary and ASCII", ".stl"};
  return &kDescription;
}

KOVAFormatReader* KOVATranslatorCreateReader(const kova::translators::ReadRequest* request) {
  return kova::translators::createStlReader(*request);
}

KOVAFormatWriter* KOVATranslatorCreateWriter(const kova::translators::WriteRequest* request) {
  return kova::translators::createStlWriter(*request);
}
