#pragma once

#include <cmath>

/// Comparisons with an absolute tolerance. A NaN on either side compares as false.
class Gk_Func {
 public:
  Gk_Func() = delete;

  /// |a - b| <= tolerance; a negative tolerance is never met.
  static bool equal(double a, double b, double tolerance) { return std::fabs(a - b) <= tolerance; }
  static bool equal(float a, float b, float tolerance) { return std::fabs(a - b) <= tolerance; }

  /// a <= b + tolerance.
  static bool lesseq(double a, double b, double tolerance) { return a <= b + tolerance; }
};
