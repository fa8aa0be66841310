#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

/// What the optional library "KOVAPerf" offers to the timing logger. The library exports
///
///     extern "C" KOVABasePerformanceMonitor* InitializePerformanceMonitor();
///     extern "C" void TerminatePerformanceMonitor();
///
/// The first makes the monitor, or gives the one that there is; the second destroys it. Used on the
/// thread that sets up the loggers.
class KOVABASE_API KOVABasePerformanceMonitor {
 public:
  KOVABasePerformanceMonitor() = default;
  KOVABasePerformanceMonitor(const KOVABasePerformanceMonitor&) = delete;
  KOVABasePerformanceMonitor& operator=(const KOVABasePerformanceMonitor&) = delete;
  virtual ~KOVABasePerformanceMonitor();

  /// Reports the memory figures as messages, a line each.
  /// @return Failure, with nothing reported, when none were gathered.
  virtual KOVAResult PrintStatistics() = 0;

  /// The processor time of the process so far, in seconds, inside the system and outside it.
  virtual KOVAResult QueryProcessTimes(double& kernelSeconds, double& userSeconds) = 0;

  /// The monitor of the library, which the first call loads by name; null when there is none, and
  /// then the next call tries again.
  static KOVABasePerformanceMonitor* Instance();

  /// Has the library destroy the monitor, when there is one.
  static void Clear();
};
