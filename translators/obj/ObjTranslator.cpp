#include "translators/interface/Translator.h"
#include "translators/obj/ObjWriter.h"

int KOVATranslatorInterfaceNumber() { return kova::translators::kInterfaceNumber; }

void KOVATranslatorInitialize() {}

void KOVATranslatorFinalize() {}

const kova::translators::Description* KOVATranslatorDescribe() {
  static constexpr kova::translators::Description kDescription{
      "Wavefront OBJ, faces and polylines in groups per part", ".obj"};
  return &kDescription;
}

KOVAFormatWriter* KOVATranslatorCreateWriter(const kova::translators::WriteRequest* request) {
  return kova::translators::createObjWriter(*request);
}
