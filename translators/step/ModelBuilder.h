#pragma once

#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/options/KOVAOptions.h"
#include "translators/model/Model.h"
#include "translators/step/Records.h"

namespace kova::translators::step {

/// Settles the references between the records of a file and makes the model of them.
/// @return NoTranslatableGeometry, which is a success, when there is nothing to show; a failure has
///   been reported.
KOVAResult buildModel(Document& document, const KOVAOptions& options, Model& model);

}  // namespace kova::translators::step
