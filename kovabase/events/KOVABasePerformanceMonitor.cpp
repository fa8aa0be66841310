#include "kovabase/events/KOVABasePerformanceMonitor.h"

#include "kovabase/files/KOVAVexilLibrary.h"

namespace {

KOVAVexilLibrary& library() {
  static KOVAVexilLibrary* const instance =
      new KOVAVexilLibrary(KOVAString("KOVAPerf"), KOVAString(), KOVAString());
  return *instance;
}

KOVABasePerformanceMonitor* g_monitor = nullptr;

}  // namespace

KOVABasePerformanceMonitor::~KOVABasePerformanceMonitor() = default;

KOVABasePerformanceMonitor* KOVABasePerformanceMonitor::Instance() {
  if (g_monitor != nullptr) return g_monitor;
  library().SetUnloadable(true);
  void* function = nullptr;
  if (library().GetFunction(KOVAString("InitializePerformanceMonitor"), function).IsFailure() ||
      function == nullptr) {
    return nullptr;
  }
  g_monitor = reinterpret_cast<KOVABasePerformanceMonitor* (*)()>(function)();
  return g_monitor;
}

void KOVABasePerformanceMonitor::Clear() {
  if (g_monitor == nullptr) return;
  g_monitor = nullptr;
  void* function = nullptr;
  if (library().GetFunction(KOVAString("TerminatePerformanceMonitor"), function).IsSuccess() &&
      function != nullptr) {
    reinterpret_cast<void (*)()>(function)();
  }
}
