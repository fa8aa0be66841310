#pragma once

#include "kovabase/events/KOVAEventLevel.h"
#include "kovabase/events/KOVCEventListener.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVAFileOutputStream.h"

#include <memory>

/// Writes events to the console: warnings, errors and assertions (level 70 and above) to standard
/// error, all others to standard output, each description in one piece. Never fails visibly.
class KOVABASE_API KOVAConsoleLogger : public KOVCEventListener {
 public:
  KOVAConsoleLogger();
  KOVAConsoleLogger(const KOVAConsoleLogger&) = delete;
  KOVAConsoleLogger& operator=(const KOVAConsoleLogger&) = delete;
  ~KOVAConsoleLogger() override;

  void HandleEvent(KOVCEvent& event) override;

  /// Starts to listen; does nothing the second time.
  /// @param level  events below it are passed over; the variable "KOVAConsoleTracesLevel" takes its
  ///   place when it is set to a level.
  void Initialize(KOVAEventLevel level);

  /// Initialises the one console logger of the process, which is never destroyed.
  static void SetUp(KOVAEventLevel level);

 protected:
  bool IsInitialized() const noexcept { return _output != nullptr || _error != nullptr; }

 private:
  KOVAEventLevel _level = 0;
  std::unique_ptr<KOVAFileOutputStream> _output;
  std::unique_ptr<KOVAFileOutputStream> _error;
};
