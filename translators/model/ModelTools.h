#pragma once

#include "kovabase/strings/KOVAString.h"
#include "kovabase/translation/KOVALayerFilterC.h"
#include "kovabase/translation/KOVASelectionSet.h"
#include "kovabase/units/KOVAUnit.h"
#include "translators/model/Model.h"

#include <cstdint>

/// What a translation asks of a model between reading and writing. A change never reaches a copy
/// of the model: arrays that change become the model's own first.
namespace kova::translators {

/// The size of a model as it is placed: what stands twice counts twice.
struct Summary {
  /// Parts of the model, placed or not.
  std::uint64_t parts = 0;
  std::uint64_t instances = 0;
  std::uint64_t edges = 0;
  std::uint64_t triangles = 0;
  /// Of the curves, in the unit of the model.
  double edgeLength = 0.0;
  /// Whether there is a point; without one the box means nothing.
  bool hasBox = false;
  /// Of all points and vertices.
  Point lowest{0.0, 0.0, 0.0};
  Point highest{0.0, 0.0, 0.0};
};

/// Costs a pass over the points of a part for each of its instances.
Summary summarize(const Model& model);

/// Multiplies every length by `factor` and sets the unit. The linear parts of the placements stay.
/// A mesh stays in single precision only when the new coordinates are values of a `float` as well.
/// @return false, with the model as it was, when the factor is not finite and above 0, or when a
///   length might not be finite any more.
bool scaleModel(Model& model, double factor, KOVAUnit unit);

/// Drops the curves and meshes that are on a layer which the filter does not list. Their layer is
/// their own or, when that is 0, their instance's; what is on no layer has the layer 0. A part
/// whose instances keep different pieces becomes two parts. Instances of which nothing is left go,
/// and so do parts that no instance shows. A filter for all layers drops nothing.
void keepLayers(Model& model, const KOVALayerFilterC& filter);

/// Adds the instances whose name or whose part's name matches: '*' stands for any characters, also
/// none, '?' for one; case is ignored, character by character. The members are the addresses of the
/// model's instances, good until its instances change.
/// @return how many match.
int select(const Model& model, const KOVAString& pattern, KOVASelectionSet& set);

/// Drops the instances that are not in the set, and the parts that no instance shows any more.
void keepSelected(Model& model, const KOVASelectionSet& set);

}  // namespace kova::translators
