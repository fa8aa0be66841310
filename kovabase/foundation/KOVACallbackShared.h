#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// The process-wide callback for a user's abort.
class KOVABASE_API KOVACallbackShared {
 public:
  using AbortCallback = bool (*)();

  /// With a callback set and an abort asked for (`Gk_ErrMgr::setAbort`): calls the callback, whose
  /// result is ignored, and throws KOVAAbortException.
  /// @return false in all other cases, so also for an abort without a callback; it never returns
  ///   true, and the abort stays asked for. All of this is kept.
  static bool IsAborted();

  /// Null when there is none. Set at start-up, before other threads ask.
  static AbortCallback _abortCallback;

 private:
  KOVACallbackShared() = default;
  ~KOVACallbackShared() = default;
};
