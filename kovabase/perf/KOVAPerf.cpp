// The optional library "KOVAPerf": process times and memory figures for the timing logger.

#include "kovabase/events/KOVABasePerformanceMonitor.h"
#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/platform/Process.h"
#include "kovabase/platform/Resources.h"

#include <cstdint>
#include <memory>

namespace {

class PerformanceMonitor : public KOVABasePerformanceMonitor {
 public:
  KOVAResult PrintStatistics() override {
    const std::int64_t current = kova::platform::currentMemory();
    const std::int64_t peak = kova::platform::peakMemory();
    if (current == 0 && peak == 0) return KOVAResultCode::kFailure;
    KOVAInfo::Printf("%50s = %10.1f MiB", "Memory in use", inMebibytes(current));
    KOVAInfo::Printf("%50s = %10.1f MiB", "Peak memory in use", inMebibytes(peak));
    return KOVAResultCode::kSuccess;
  }

  KOVAResult QueryProcessTimes(double& kernelSeconds, double& userSeconds) override {
    return kova::platform::processTimes(kernelSeconds, userSeconds) ? KOVAResultCode::kSuccess
                                                                    : KOVAResultCode::kFailure;
  }

 private:
  static double inMebibytes(std::int64_t bytes) {
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
  }
};

std::unique_ptr<PerformanceMonitor> g_monitor;

}  // namespace

extern "C" KOVABASE_API KOVABasePerformanceMonitor* InitializePerformanceMonitor() {
  if (g_monitor == nullptr) g_monitor = std::make_unique<PerformanceMonitor>();
  return g_monitor.get();
}

extern "C" KOVABASE_API void TerminatePerformanceMonitor() { g_monitor.reset(); }
