#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAPointf.h"
#include "kovabase/geometry/KOVAVectorfArithmetic.h"

/// An offset of tessellated data, in single precision.
class KOVABASE_API KOVAVectorf : public KOVAVectorfArithmetic<KOVAVectorf> {
 public:
  /// The zero vector.
  constexpr KOVAVectorf() = default;
  constexpr KOVAVectorf(float x, float y, float z) : KOVAVectorfArithmetic(x, y, z) {}
  /// @param components  three floats; null gives the zero vector.
  explicit KOVAVectorf(const float* components) : KOVAVectorfArithmetic(components) {}
  /// p - q, the way from q to p.
  KOVAVectorf(const KOVAPointf& p, const KOVAPointf& q)
      : KOVAVectorfArithmetic(p[0] - q[0], p[1] - q[1], p[2] - q[2]) {}
};

/// p - q, the way from q to p.
inline KOVAVectorf operator-(const KOVAPointf& p, const KOVAPointf& q) { return {p, q}; }
