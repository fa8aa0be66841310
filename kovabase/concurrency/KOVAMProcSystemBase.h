#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// The process-wide switches for translations that run in several processes. Any thread may read
/// them; they are set from the driver's thread before the processes start.
class KOVABASE_API KOVAMProcSystemBase {
 public:
  KOVAMProcSystemBase() = delete;

  /// Unlocks `SetMultiProcessMode` and `SetNumberOfProcessorsToUseRequested`, which are ignored
  /// before this call. There is no way back.
  static void AllowNonWindowsPlatform() noexcept;

  static void SetMultiProcessMode(bool allowed) noexcept;
  static bool IsMultiProcessAllowed() noexcept;

  /// 0, the initial value, asks for no particular number.
  static void SetNumberOfProcessorsToUseRequested(unsigned processors) noexcept;
  static unsigned GetNumberOfProcessorsToUseRequested() noexcept;

  /// A process is a master until it is told otherwise.
  static void SetAsMasterProcess() noexcept;
  static void SetAsSlaveProcess() noexcept;
  static bool IsSlaveProcess() noexcept;

  /// Whether slave work is to run in this process, for a debugger. Never set by the library.
  static bool IsDebugInSingleProcess() noexcept;
};
