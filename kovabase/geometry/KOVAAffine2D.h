#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAAffine.h"

/// A linear map of the plane, the identity at first.
class KOVABASE_API KOVAAffine2D : public KOVAAffine {
 public:
  KOVAAffine2D() : KOVAAffine(2) {}
};
