// Places a part that was modelled in inches into an assembly in millimetres, and prints its box.

#include "kovabase/KOVABase.h"

#include <cstdio>

int main() {
  const KOVAPoint3D bracket[] = {
      {0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {0, 2, 0}, {0, 0, 0.5}, {0, 2, 0.5},
  };
  KOVAUnit partUnit = KOVAUnitUnknown;
  if (KOVAUnitValue::GetUnitFromString(partUnit, "inches").IsFailure()) return 1;
  const double scale = KOVAUnitValue::GetScalingFactor(partUnit, KOVAUnitMillimeter);

  // Where the assembly has it: the part's origin, in millimetres, and its axes.
  const KOVAMorph3D placement(
      KOVAAssemblyComponentTransform(KOVAPoint3D(100, 50, 0), KOVAVector(0, 1, 0),
                                     KOVAVector(-1, 0, 0), KOVAVector(0, 0, 1), scale));

  KOVABox3D partBox;
  KOVABox3D assemblyBox;
  for (KOVAPoint3D point : bracket) {
    partBox.Extend(point);
    point.Transform(placement);
    assemblyBox.Extend(point);
  }

  KOVAFileOutputStream output(stdout);
  KOVAStreamFormatter formatter(&output);
  formatter << "part, in: " << partBox << KOVAEndLine;
  formatter << "assembly, mm: " << assemblyBox << KOVAEndLine;
  return formatter.GetResult().IsSuccess() ? 0 : 1;
}
