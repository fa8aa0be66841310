#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAAffine.h"

/// A linear map of the plane, the identity at first.
class KOVABASE_API KOVAAffine2D : public KOVAAffine {
 public:
  KOVAAffine2D() : KOVAAffine(2) {}
  /// @param elements  four doubles in column order; null gives the identity.
  explicit KOVAAffine2D(const double* elements) : KOVAAffine(2, elements) {}
};
