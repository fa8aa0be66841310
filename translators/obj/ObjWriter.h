#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Writes Wavefront OBJ: for each part a group with its vertices and faces. Indices are positive
/// and count through the whole file. Coordinates are the shortest texts that read back to the same
/// value. The same model always gives the same bytes.
class ObjWriter : public Writer {
 public:
  KOVAResult Write(const Model& model, KOVAOutputStream& stream, Report& report) override;
};

}  // namespace kova::translators
