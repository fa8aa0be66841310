#include "translators/interface/Translator.h"
#include "translators/ply/PlyReader.h"
#include "translators/ply/PlyWriter.h"

int KOVATranslatorInterfaceNumber() { return kova::translators::kInterfaceNumber; }

void KOVATranslatorInitialize() {}

void KOVATranslatorFinalize() {}

const kova::translators::Description* KOVATranslatorDescribe() {
  static constexpr kova::translators::Description kDescription{
      "PLY polygon files, ASCII and binary", ".ply"};
  return &kDescription;
}

KOVAFormatReader* KOVATranslatorCreateReader(const kova::translators::ReadRequest* request) {
  return kova::translators::createPlyReader(*request);
}

KOVAFormatWriter* KOVATranslatorCreateWriter(const kova::translators::WriteRequest* request) {
  return kova::translators::createPlyWriter(*request);
}
