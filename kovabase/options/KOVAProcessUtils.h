#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdint>

/// What the running process knows about itself. Any thread may ask.
class KOVABASE_API KOVAProcessUtils {
 public:
  KOVAProcessUtils() = delete;

  static int GetProcessID();

  /// The directory of the running program's file; empty when the system does not tell.
  static KOVAString GetProgramDirectory();

  /// The most memory that the process has had in use at one time, in bytes; 0 when the system does
  /// not tell.
  static std::int64_t GetPeakMemory();
};
