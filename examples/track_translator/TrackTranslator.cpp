// The entry points of libkova_track.so.

#include "TrackReader.h"

// [entry-points]
int KOVATranslatorInterfaceNumber() { return kova::translators::kInterfaceNumber; }

void KOVATranslatorInitialize() {}

void KOVATranslatorFinalize() {}

const kova::translators::Description* KOVATranslatorDescribe() {
  static constexpr kova::translators::Description kDescription{"survey tracks", ".track"};
  return &kDescription;
}

KOVAFormatReader* KOVATranslatorCreateReader(const kova::translators::ReadRequest* request) {
  return new TrackReader(*request);
}
// [entry-points]
