#pragma once

#include "apps/kova-translate/CommandLine.h"
#include "kovabase/events/KOVAConsoleLogger.h"
#include "kovabase/events/KOVALogger.h"
#include "kovabase/events/KOVATimingLogger.h"

#include <string>

namespace kova::translate {

/// The listeners that turn events into text, for as long as it lives. Main thread.
///
/// The console shows warnings and errors, or what KOVAConsoleTracesLevel says. The log is written
/// when it is asked for: by its level, its folder, or KOVALogLevel. Tasks are timed, by
/// KOVATaskTiming, as messages of their own.
class Loggers {
 public:
  /// @param problem  receives why the log cannot be written.
  Loggers(const Settings& settings, std::string& problem);
  Loggers(const Loggers&) = delete;
  Loggers& operator=(const Loggers&) = delete;
  /// Reports the totals of the timing.
  ~Loggers();

 private:
  KOVAConsoleLogger _console;
  // In the place of the console logger when standard output is for results alone.
  KOVALogger _errors;
  KOVALogger _log;
  KOVATimingLogger _timing;
};

}  // namespace kova::translate
