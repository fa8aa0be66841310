#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAAffine.h"

/// A linear map of space, the identity at first.
class KOVABASE_API KOVAAffine3D : public KOVAAffine {
 public:
  KOVAAffine3D() : KOVAAffine(3) {}
  /// @param elements  nine doubles in column order; null gives the identity.
  explicit KOVAAffine3D(const double* elements) : KOVAAffine(3, elements) {}
};
