#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators::step {

/// Creates the reader of ISO 10303-21 files: products and their assembly, edges and tessellated
/// surfaces, units, layers and colours. Counted; see KOVATranslatorCreateReader.
///
/// The first step reads the whole file into memory and the header section, the second one checks
/// the syntax of everything and makes the entity readers, the third one files those that are looked
/// for by their kind, and `Resolve` builds the model. A failure has been reported.
KOVAFormatReader* createReader(const ReadRequest& request);

}  // namespace kova::translators::step
