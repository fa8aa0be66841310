#pragma once

#include "kovabase/foundation/KOVAExport.h"

class KOVAThreadJob;

/// The process's one pool of worker threads. Workers have the ids 1, 2, ... and start jobs in the
/// order in which they were queued; the main thread, and every thread that the pool did not make,
/// has the id 0.
///
/// Any thread may call any function. A process that ends with the pool running drops what is still
/// queued, waits up to a second for running jobs and then leaves them; end operations do not run.
class KOVABASE_API KOVASingletonThreadPool {
 public:
  /// What a host wants to run on each worker at its start and end. The pool does not own it. An
  /// exception is reported as an error event.
  class KOVABASE_API ThreadInitializerCallback_t {
   public:
    /// On the worker, before its first job and after its last one.
    virtual void ThreadStart() = 0;
    virtual void ThreadEnd() = 0;
    virtual ~ThreadInitializerCallback_t();
  };

  KOVASingletonThreadPool() = delete;

  /// Starts the workers, as many as "VEX_NUM_THREADS" or else as there are processors, unless
  /// "VEX_FORCE_NO_ORLA_THREADS" (T, t, Y, y or 1 first) or `multithreaded` forbids it. Returns
  /// when each worker has its id and has run the start operations.
  ///
  /// Calls are counted: only the first one acts, and each needs its `Shutdown`. From inside a job
  /// or a callback on a worker neither has an effect.
  static void Initialize(bool multithreaded);

  /// The last one runs what is queued, lets each worker run its end operations and joins it. Does
  /// nothing without a matching `Initialize`.
  static void Shutdown();

  /// Between the first `Initialize` and the last `Shutdown`.
  static bool IsReadyForUse() noexcept;
  static bool IsMTEnabled() noexcept;

  /// The number of workers wanted, set by `Initialize` with or without multithreading and 0 outside
  /// it. A negative "VEX_NUM_THREADS" stays as it is and makes no workers; when the system refuses
  /// some workers it is the number of those that could be made.
  static int GetThreadCount() noexcept;

  /// The calling worker's id; 0 for any other thread.
  static int GetCurrentThreadID() noexcept;

  /// The place for one pointer of thread `threadId` (0 is the main thread), null at each start of
  /// the workers. Not synchronised: it belongs to that thread.
  /// @return null outside 0 to `GetThreadCount()` and without workers.
  static void** GetThreadValue(int threadId) noexcept;

  /// Queues `job->Work(data)`; a null job is ignored. Without workers the job runs before this
  /// returns.
  static void Enqueue(KOVAThreadJob* job, void* data);

  /// Returns when no job is queued or running. From inside a job it returns at once.
  static void WaitForAllCurrentJobs();

  /// Registers a callback once no job runs (at once when called from inside a job). Null is
  /// ignored. Workers that start later run both its operations. Workers that live now do not run
  /// its start, and run its end twice: once from their own list and once from the registry.
  static void AddInitializerCallback(ThreadInitializerCallback_t* callback);

  /// Takes the first registration of the callback out of the registry, once no job runs. The lists
  /// of living workers keep it, so it must live until they have ended.
  static void RemoveInitializerCallback(ThreadInitializerCallback_t* callback);

  /// Tolerances for the kernel, in model length units, applied at the next `Initialize` and by
  /// every worker that starts later. Values that are not positive are ignored.
  static void CacheSessionValues(double absoluteResolution, double fitTolerance);

  /// Counted. The kernel starts only once in a process: after the last `ShutdownKernel` this throws
  /// `KOVAAbortException`.
  static void InitializeKernel();
  static void ShutdownKernel();

  /// False as long as no solid-modeling kernel is present.
  static bool HasKernelBeenInitialized() noexcept;
};
