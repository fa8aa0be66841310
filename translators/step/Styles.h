#pragma once

#include "translators/model/Model.h"
#include "translators/step/Records.h"

#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kova::translators::step {

/// The colours and layers that the file gives to its records.
///
/// An overriding style comes before another one, and of several the first in the file. Surfaces
/// take the colour of a surface style before that of a curve style, curves the other way around. A
/// layer has the number that its name is; layers with other names take the free numbers from 1 on.
class Styles {
 public:
  /// Reads them all, and fills the colours and layers of the model.
  Styles(Document& document, Model& model);

  /// What the file says of a record itself, and else what holds around it.
  Looks Get(RecordNumber record, const Looks& around, bool isCurve) const;
  bool IsEmpty() const { return _colours.empty() && _layers.empty(); }

 private:
  struct StyleColours {
    int surface = -1;
    int curve = -1;
  };

  void ReadStyles();
  void ReadLayers();
  StyleColours FindColours(RecordNumber style);
  int ReadColour(RecordNumber record);
  int AddColour(const Colour& colour);

  Document& _document;
  Model& _model;
  std::vector<std::pair<RecordNumber, StyleColours>> _colours;
  std::vector<std::pair<RecordNumber, int>> _layers;
  std::unordered_map<RecordNumber, StyleColours> _knownStyles;
  std::map<std::tuple<float, float, float>, int> _knownColours;
};

}  // namespace kova::translators::step
