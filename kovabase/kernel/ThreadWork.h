#pragma once

#include "kovabase/foundation/internal/ChunkedQueue.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// Our own stand-in for the thread-work service of the solid-modeling kernel.
namespace kova::kernel {

/// A fixed set of worker threads and one first-in first-out queue. Jobs start in the order in which
/// they were queued, one at a time on each worker.
///
/// `run` may be called from any thread, also from a job. `start`, `terminate` and `abandon` belong
/// to one thread at a time and never to a worker (`abandon` excepted).
class ThreadWork {
 public:
  struct Procedures {
    /// Called once on each worker: before its first job, and after its last one.
    void (*start)();
    void (*end)();
    /// Runs one job. None of the three may throw.
    void (*run)(void* work, void* data);
  };

  ThreadWork() = default;
  ThreadWork(const ThreadWork&) = delete;
  ThreadWork& operator=(const ThreadWork&) = delete;
  ~ThreadWork() = default;

  /// Starts `count` workers and returns when each of them has run its start procedure.
  /// @return how many the system let us have, fewer than `count` when it refuses more; 0 when
  ///   count < 1.
  int start(int count, const Procedures& procedures);

  /// Queues a job.
  /// @return false, with nothing queued, when there are no workers.
  bool run(void* work, void* data);

  /// Returns when no job is queued or running. Must not be called from a job.
  void synchronise();

  /// Runs what is queued, lets each worker run its end procedure and joins it.
  void terminate();

  /// For the end of the process: drops what is queued, waits a moment for running jobs and leaves
  /// those that go on to themselves. End procedures do not run: what they need may be gone.
  void abandon() noexcept;

 private:
  struct Job {
    void* work;
    void* data;
  };
  enum class State { kIdle, kWorking, kDraining, kAbandoned };

  void work();
  void serve(std::unique_lock<std::mutex>& lock);
  void awaitJob(std::unique_lock<std::mutex>& lock);
  bool mayWakeAnother() noexcept;

  Procedures _procedures{};
  std::vector<std::thread> _threads;

  std::mutex _mutex;
  std::condition_variable _jobQueued;
  std::condition_variable _progressMade;
  // Everything below changes under the mutex. The atomic ones are also read without it, by those
  // who spin.
  kova::internal::ChunkedQueue<Job> _queue;
  std::atomic<State> _state{State::kIdle};
  std::atomic<long> _queued{0};
  std::atomic<long> _unfinished{0};
  // Workers that have started, that will still take a job, that have nothing more to do.
  int _started = 0;
  int _serving = 0;
  int _gone = 0;
  int _sleeping = 0;
  int _waiting = 0;
  // One worker at a time is being woken; it wakes the next one when there is more to do.
  bool _isWaking = false;
};

}  // namespace kova::kernel
