// Places a part in an assembly that stands in another one, and finds the way back.

#include <kovabase/KOVABase.h>

#include <cstdio>

int main() {
  KOVAFileOutputStream output(stdout);
  KOVAStreamFormatter out(&output);

  // [compose]
  // A quarter turn about z; then two millimetres up.
  KOVAAffine3D quarterTurn;
  quarterTurn.SetElement(0, 0, 0.0);
  quarterTurn.SetElement(0, 1, -1.0);
  quarterTurn.SetElement(1, 0, 1.0);
  quarterTurn.SetElement(1, 1, 0.0);
  const KOVAMorph3D inAssembly(quarterTurn, KOVAPoint3D(10.0, 0.0, 0.0), 1.0);
  const KOVAMorph3D assemblyInModel(KOVAPoint3D(0.0, 0.0, 2.0));
  const KOVAMorph3D inModel = inAssembly.multiply(assemblyInModel);  // the part's own first
  // [compose]

  // [points]
  double corners[] = {0.0, 0.0, 0.0, 4.0, 2.0, 0.5};
  KOVATransformPoints(corners, corners, 2, inModel);
  KOVABox3D box;
  box.Extend(KOVAPoint3D(corners));
  box.Extend(KOVAPoint3D(corners + 3));
  out << "in the model: " << box << KOVAEndLine;
  // [points]

  // [back]
  KOVAPoint3D point(corners + 3);
  point.Transform(inModel.inverse());
  out << "and back: " << point << KOVAEndLine;
  // [back]

  // [compare]
  // Within a tolerance, axis by axis.
  out << point.IsWithinTolerance(KOVAPoint3D(4.0, 2.0, 0.5 + 1e-7), Gk_Def::FuzzPos) << KOVAEndLine;
  // [compare]

  // [direction]
  KOVAPoint3D normal(1.0, 0.0, 0.0);
  normal.Transform(inModel, true);  // a direction takes no part in the translation
  out << "normal: " << normal << KOVAEndLine;
  // [direction]

  const KOVAMorph3D mirror(KOVAAssemblyComponentTransform(
      KOVAPoint3D(), KOVAVector(-1, 0, 0), KOVAVector(0, 1, 0), KOVAVector(0, 0, 1)));
  out << "mirrored: " << mirror.isMirror() << KOVAEndLine;
  return out.GetResult().IsSuccess() ? 0 : 1;
}
