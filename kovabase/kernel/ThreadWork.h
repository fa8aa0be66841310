#pragma once

#include "kovabase/kernel/JobQueue.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Our own stand-in for the thread-work service of the solid-modeling kernel.
namespace kova::kernel {

/// Whether it pays to wait actively before sleeping. Where there are more busy threads than
/// processors, or jobs are rare, it does not: what is waited for may need this very processor. Any
/// thread may use it; lost updates only make it slower to learn.
class SpinHistory {
 public:
  bool isPromising() noexcept {
    const int credit = _credit.load(std::memory_order_relaxed);
    if (credit < 0) _credit.store(credit + 1, std::memory_order_relaxed);
    return credit >= 0;
  }
  void noteSuccess() noexcept {
    const int credit = _credit.load(std::memory_order_relaxed);
    if (credit < kMost) _credit.store(credit + 1, std::memory_order_relaxed);
  }
  void noteFailure() noexcept {
    const int credit = _credit.load(std::memory_order_relaxed);
    _credit.store(credit > 0 ? credit - 1 : -kPause, std::memory_order_relaxed);
  }

 private:
  static constexpr int kMost = 4;
  // So many waits pass before the next trial.
  static constexpr int kPause = 16;

  std::atomic<int> _credit{kMost};
};

/// A fixed set of worker threads and one first-in first-out queue. Jobs start in the order in which
/// they were queued, one at a time on each worker.
///
/// `run` and `synchronise` may be called from any thread, `run` also from a job. `start` and
/// `terminate` belong to one thread at a time, never a worker.
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
  /// There must be no workers any more.
  ~ThreadWork();

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
  enum class State { kIdle, kWorking, kDraining, kAbandoned };

  // A cache line of its own: the worker counts in it after each job.
  struct alignas(64) Worker {
    std::thread thread;
    std::atomic<long> finished{0};
    // Its own: a worker that is never needed would spoil the hopes of the one that is.
    SpinHistory history;
    Worker* next = nullptr;
  };

  Worker& addWorker();
  void work(Worker& worker);
  void serve(Worker& worker);
  bool take(Job& job);
  bool awaitJob(Worker& worker);
  void wakeAnother();
  void tellWhoWaits();
  bool isDone() const noexcept;

  // What threads write often lies in cache lines apart from what others only read.
  JobQueue _queue;
  // For the popping side: held for a few instructions, by workers alone.
  alignas(64) std::atomic<bool> _isPopping{false};

  alignas(64) Procedures _procedures{};
  // A list that only grows: whoever waits reads the counts of all workers there have ever been.
  std::atomic<Worker*> _workers{nullptr};
  std::atomic<State> _state{State::kIdle};
  std::atomic<int> _sleeping{0};
  std::atomic<int> _waiting{0};
  SpinHistory _waitHistory;
  // Workers that wait actively: they need no waking. Written with nearly every job.
  alignas(64) std::atomic<int> _spinning{0};

  // Guards the pushing side of the queue and all other changes but those of the popping side.
  alignas(64) std::mutex _mutex;
  std::condition_variable _jobQueued;
  std::condition_variable _progressMade;
  // Workers that have started, that will still take a job, that have nothing more to do.
  int _started = 0;
  int _serving = 0;
  int _gone = 0;
  // One worker at a time is being woken; it wakes the next one when there is more to do.
  bool _isWaking = false;
};

}  // namespace kova::kernel
