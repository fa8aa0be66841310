#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/geometry/KOVAPointf.h"
#include "kovabase/geometry/KOVAVectorfArithmetic.h"

/// A direction of tessellated data, such as a normal, in single precision. Its length is the
/// caller's matter: it becomes 1 by `Normalize` alone.
class KOVABASE_API KOVADirectionf : public KOVAVectorfArithmetic<KOVADirectionf> {
 public:
  /// The zero vector.
  constexpr KOVADirectionf() = default;
  constexpr KOVADirectionf(float x, float y, float z) : KOVAVectorfArithmetic(x, y, z) {}
  /// @param components  three floats; null gives the zero vector.
  explicit KOVADirectionf(const float* components) : KOVAVectorfArithmetic(components) {}
  /// p - q, the way from q to p.
  KOVADirectionf(const KOVAPointf& p, const KOVAPointf& q)
      : KOVAVectorfArithmetic(p[0] - q[0], p[1] - q[1], p[2] - q[2]) {}
};
