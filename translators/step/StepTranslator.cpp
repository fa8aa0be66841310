#include "translators/interface/Translator.h"
#include "translators/step/StepReader.h"

int KOVATranslatorInterfaceNumber() { return kova::translators::kInterfaceNumber; }

void KOVATranslatorInitialize() {}

void KOVATranslatorFinalize() {}

const kova::translators::Description* KOVATranslatorDescribe() {
  static constexpr kova::translators::Description kDescription{
      "STEP files (ISO 10303-21): assemblies, edges and tessellated surfaces", ".step .stp .p21"};
  return &kDescription;
}

KOVAFormatReader* KOVATranslatorCreateReader(const kova::translators::ReadRequest* request) {
  return kova::translators::step::createReader(*request);
}
