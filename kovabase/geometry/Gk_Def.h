#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// The process-wide tolerances and constants of the geometry.
///
/// They are read at every comparison and hold their values before the first constructor runs.
/// Changing one is for set-up, while no other thread computes: access is not synchronised.
class KOVABASE_API Gk_Def {
 public:
  Gk_Def() = delete;

  /// General real comparison: 1e-10.
  static double FuzzReal;
  /// Positions and directions, in the length unit of the data: 1e-06.
  static double FuzzPos;
  /// Knots of splines: 1e-10.
  static double FuzzKnot;
  /// Snapping: 0.001.
  static double FuzzSnap;
  /// The double nearest pi.
  static double KOVAPI;
  /// The double nearest pi / 2.
  static double KOVAPIBYTWO;
};
