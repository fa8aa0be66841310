#include "translators/interface/Translator.h"
#include "translators/obj/ObjWriter.h"

int KOVATranslatorInterfaceNumber() { return kova::translators::kInterfaceNumber; }

void KOVATranslatorInitialize() {}

void KOVATranslatorFinalize() {}

const kova::translators::Description* KOVATranslatorDescribe() {
  static constexpr kova::translators::Description kDescription{
      "Wavefront OBJ, faces in groups per part", ".obj"};
  return &kDescription;
}

kova::translators::Writer* KOVATranslatorCreateWriter() { return new kova::translators::ObjWriter; }
