#pragma once

#include "kovabase/events/KOVCEventListener.h"
#include "kovabase/foundation/KOVAExport.h"

#include <memory>

class KOVABasePerformanceMonitor;

/// Measures tasks from their start and end events, reports each as it ends and all of them at last,
/// as messages. The task identifier pairs the events; the name of the start event is shown. Ends
/// without a start are passed over, and a task may run inside itself.
///
/// Tasks that are delivered at once are measured by a steady clock and the process's times; those
/// that a parallel phase has queued by the stamps of their events, whose processor time counts as
/// user time. Used on the thread that delivers events.
class KOVABASE_API KOVATimingLogger : public KOVCEventListener {
 public:
  KOVATimingLogger();
  KOVATimingLogger(const KOVATimingLogger&) = delete;
  KOVATimingLogger& operator=(const KOVATimingLogger&) = delete;
  /// As `Stop`.
  ~KOVATimingLogger() override;

  void HandleEvent(KOVCEvent& event) override;

  /// Starts to listen. Tasks are timed when the variable "KOVATaskTiming" is true; with
  /// "KOVATaskInfoDetailed" every task's figures come as a block, else those of the tasks
  /// "Translation", "Conversion" and "Repair" alone.
  void SetUp();
  /// Ends timing and stops listening. The totals stay.
  void Stop();
  /// Reports the totals of all tasks, the process's time and, with the library "KOVAPerf", its
  /// memory.
  void Finalize();

  bool IsEnabled() const noexcept { return _isEnabled; }

 private:
  struct Tasks;

  bool _isEnabled = false;
  bool _isDetailed = false;
  bool _isRegistered = false;
  std::unique_ptr<Tasks> _tasks;

  static KOVABasePerformanceMonitor* _pMonitor;
};
