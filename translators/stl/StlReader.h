#pragma once

#include "translators/interface/Translator.h"

namespace kova::translators {

/// Reads STL: the binary form becomes one part, the ASCII form one part for each solid. The forms
/// are told apart by content, because binary files may begin with "solid" too. Vertices with equal
/// coordinates are merged; normals and attributes are not used.
class StlReader : public Reader {
 public:
  KOVAResult Read(Source& source, Model& model, Report& report) override;
};

}  // namespace kova::translators
