#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// A piece of work for the process's pool. The pool does not own it: it must live until the work
/// has ended.
class KOVABASE_API KOVAThreadJob {
 public:
  virtual ~KOVAThreadJob();

  /// Does the work, on a worker thread (or on the caller of `Enqueue` when there are no workers).
  /// An exception ends this job alone and is reported as an error event; an abort is not reported.
  /// @param data  as given to `KOVASingletonThreadPool::Enqueue`.
  virtual void Work(void* data) = 0;
};
