#pragma once

#include "kovabase/foundation/KOVAExport.h"

#include <atomic>

// The name is part of the interface.
// NOLINTBEGIN(bugprone-reserved-identifier)
/// How deep traces are indented, in levels of three blanks.
extern KOVABASE_API std::atomic<int> _KOVATraceTab;
// NOLINTEND(bugprone-reserved-identifier)

/// The kind of event that a trace fires; any other value fires nothing.
enum KOVATraceLevel : int {
  kKOVATraceDebug = 1,
  kKOVATraceMessage = 2,
  kKOVATraceError = 3,
};

/// A named trace, for the output of one part of a translator. It is enabled when the variable
/// "KOVALoggers" contains its name, when it is made. Any thread may print.
class KOVABASE_API KOVATrace {
 public:
  /// Null is disabled.
  explicit KOVATrace(const char* name);

  bool IsEnabled() const noexcept { return _isEnabled; }

  /// Formats, indents and fires, when the trace is enabled; the text is cut at 1023 bytes, the
  /// indentation included. A null format does nothing.
  void Printf(KOVATraceLevel level, const char* format, ...) const KOVABASE_PRINTF(3, 4);

  /// One level deeper, one level back; for all traces of the process.
  static void Tab() noexcept { _KOVATraceTab.fetch_add(1, std::memory_order_relaxed); }
  static void Untab() noexcept { _KOVATraceTab.fetch_sub(1, std::memory_order_relaxed); }

 private:
  bool _isEnabled = false;
};
