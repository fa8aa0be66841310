#include "kovabase/geometry/KOVAMorph.h"

#include "kovabase/geometry/KOVAAffine.h"
#include "kovabase/geometry/KOVAPoint.h"
#include "kovabase/io/KOVAStreamFormatter.h"

bool KOVAMorph::isMirror() const { return GetAffine().Determinant() < 0.0; }

KOVAStreamFormatter& operator<<(KOVAStreamFormatter& formatter, const KOVAMorph& morph) {
  return formatter << "linear " << morph.GetAffine() << ", scale " << morph.GetScale()
                   << ", translation " << morph.GetTranslation();
}
