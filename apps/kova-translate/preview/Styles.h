#pragma once

#include "apps/kova-translate/preview/Colours.h"
#include "translators/model/Model.h"

#include <cstdint>
#include <map>
#include <vector>

namespace kova::translate::preview {

/// The colours of the pieces of a model, under small numbers: those of the file, or one for each
/// part. There are some hundred at most; more colours of a file become coarser.
class Styles {
 public:
  /// @param model  lives longer than the object.
  explicit Styles(const translators::Model& model);

  /// The number of the style of a piece as it stands in this instance.
  int GetStyle(const translators::Looks& piece, const translators::Instance& instance);

  /// A face under a light from 0 to 1.
  SeenColour GetFaceColour(int style, double light) const;
  /// A line at full strength.
  SeenColour GetLineColour(int style) const;

 private:
  struct Style {
    SeenColour colour;
    bool isFromFile;
  };

  bool IsColour(int index) const { return _model.colours.isValidIndex(index); }
  std::uint32_t Pack(const translators::Colour& colour) const;

  const translators::Model& _model;
  bool _isCoarse = false;
  std::map<std::uint32_t, int> _numbers;
  std::vector<Style> _styles;
};

}  // namespace kova::translate::preview
