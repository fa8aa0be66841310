#pragma once

#include "kovabase/geometry/KOVAPoint3D.h"
#include "kovabase/geometry/KOVAVector.h"

/// Where product data puts a component in its assembly: the frame of the component, given in the
/// assembly's coordinates, and a uniform scale. Nothing is normalised or checked: axes that are
/// not of length 1 scale along themselves, and a left-handed frame mirrors.
class KOVAAssemblyComponentTransform {
 public:
  /// The frame of the assembly itself.
  KOVAAssemblyComponentTransform() = default;
  KOVAAssemblyComponentTransform(const KOVAPoint3D& origin, const KOVAVector& xAxis,
                                 const KOVAVector& yAxis, const KOVAVector& zAxis,
                                 double scale = 1.0)
      : _origin(origin), _xAxis(xAxis), _yAxis(yAxis), _zAxis(zAxis), _scale(scale) {}

  const KOVAPoint3D& GetOrigin() const { return _origin; }
  const KOVAVector& GetXAxis() const { return _xAxis; }
  const KOVAVector& GetYAxis() const { return _yAxis; }
  const KOVAVector& GetZAxis() const { return _zAxis; }
  /// Applied to the component along all axes; the origin is not scaled.
  double GetScale() const { return _scale; }

 private:
  KOVAPoint3D _origin;
  KOVAVector _xAxis = KOVAVector(1.0, 0.0, 0.0);
  KOVAVector _yAxis = KOVAVector(0.0, 1.0, 0.0);
  KOVAVector _zAxis = KOVAVector(0.0, 0.0, 1.0);
  double _scale = 1.0;
};
