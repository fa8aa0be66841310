#include "kovabase/kernel/ThreadWork.h"

#include "kovabase/platform/Processor.h"

#include <chrono>
#include <utility>

namespace kova::kernel {

namespace {

using Clock = std::chrono::steady_clock;

// To sleep and be woken takes tens of microseconds. A wait that is shorter than that never sees who
// is just being woken, and both sides would go on waking each other.
constexpr auto kSpinTime = std::chrono::microseconds(50);
constexpr int kPausesOfWorkers = 32;
// How long the end of the process waits for jobs that are still running.
constexpr auto kPatience = std::chrono::seconds(1);

// Waits actively for as long as a wake-up takes, unless that has been in vain of late.
// @param pauses  between two looks: each look takes a cache line away from those who write it.
template <typename Condition>
bool spinUntil(SpinHistory& history, int pauses, Condition isMet) {
  if (!history.isPromising()) return isMet();
  const Clock::time_point end = Clock::now() + kSpinTime;
  do {
    for (int i = 0; i < 32; ++i) {
      if ((i + 1) % pauses == 0 && isMet()) {
        history.noteSuccess();
        return true;
      }
      platform::relaxProcessor();
    }
  } while (Clock::now() < end);
  history.noteFailure();
  return isMet();
}

// The mutex is held for a few instructions at a time: trying again beats falling asleep.
class [[nodiscard]] BriefLock {
 public:
  explicit BriefLock(std::mutex& mutex) : _lock(mutex, std::defer_lock) {
    for (int i = 0; i < 64; ++i) {
      if (_lock.try_lock()) return;
      platform::relaxProcessor();
    }
    _lock.lock();
  }
  std::unique_lock<std::mutex>& get() { return _lock; }

 private:
  std::unique_lock<std::mutex> _lock;
};

}  // namespace

ThreadWork::~ThreadWork() {
  for (const Worker* worker = _workers; worker != nullptr;) {
    const Worker* const next = worker->next;
    delete worker;
    worker = next;
  }
}

int ThreadWork::start(int count, const Procedures& procedures) {
  std::unique_lock lock(_mutex);
  if (_state == State::kAbandoned) return 0;
  _procedures = procedures;
  _state = State::kWorking;
  _started = _gone = 0;
  _isWaking = false;
  Worker* idle = _workers;
  for (int i = 0; i < count; ++i) {
    try {
      // One of an earlier start, or a new one.
      Worker& worker = idle != nullptr ? *std::exchange(idle, idle->next) : addWorker();
      worker.thread = std::thread([this, &worker] { work(worker); });
    } catch (...) {
      break;  // no more threads or no more memory: those that could be made stay
    }
    ++_serving;
  }
  _progressMade.wait(lock, [this] { return _started == _serving; });
  if (_serving == 0) _state = State::kIdle;
  return _serving;
}

bool ThreadWork::run(void* work, void* data) {
  bool wake = false;
  {
    const BriefLock lock(_mutex);
    if (_serving == 0 || _state == State::kAbandoned) return false;
    _queue.push({work, data});
    // A worker that waits actively sees the job by itself, at the latest before it falls asleep,
    // for which it needs this mutex. When there are more jobs it wakes the next worker.
    wake = _sleeping.load(std::memory_order_relaxed) > 0 && !_isWaking &&
           _spinning.fetch_add(0, std::memory_order_acq_rel) == 0;
    if (wake) _isWaking = true;
  }
  if (wake) _jobQueued.notify_one();
  return true;
}

void ThreadWork::synchronise() {
  const auto isDoneNow = [this] { return isDone(); };
  if (isDone() || spinUntil(_waitHistory, 1, isDoneNow)) return;
  std::unique_lock lock(_mutex);
  // Either the worker that finishes last sees in tellWhoWaits that somebody waits, or what it has
  // finished is seen here.
  _waiting.fetch_add(1, std::memory_order_acq_rel);
  _progressMade.wait(lock, isDoneNow);
  _waiting.fetch_sub(1, std::memory_order_acq_rel);
}

void ThreadWork::terminate() {
  {
    const std::lock_guard lock(_mutex);
    if (_state == State::kWorking) _state = State::kDraining;
  }
  _jobQueued.notify_all();
  for (Worker* worker = _workers; worker != nullptr; worker = worker->next) {
    if (worker->thread.joinable()) worker->thread.join();
  }
  const std::lock_guard lock(_mutex);
  // The end of the process must not wait for workers that have been joined.
  _started = _gone = 0;
  if (_state == State::kDraining) _state = State::kIdle;
}

void ThreadWork::abandon() noexcept {
  std::unique_lock lock(_mutex);
  _state = State::kAbandoned;
  _jobQueued.notify_all();
  _progressMade.notify_all();
  // A job may end the process: its own worker then stands here.
  const auto self = std::this_thread::get_id();
  int others = 0;
  for (const Worker* worker = _workers; worker != nullptr; worker = worker->next) {
    if (worker->thread.joinable() && worker->thread.get_id() != self) ++others;
  }
  const bool allGone = _progressMade.wait_for(lock, kPatience, [&] { return _gone == others; });
  lock.unlock();
  for (Worker* worker = _workers; worker != nullptr; worker = worker->next) {
    if (!worker->thread.joinable()) continue;
    if (allGone && worker->thread.get_id() != self) {
      worker->thread.join();
    } else {
      worker->thread.detach();
    }
  }
}

ThreadWork::Worker& ThreadWork::addWorker() {
  Worker* const added = new Worker;
  added->next = _workers;
  _workers = added;
  return *added;
}

void ThreadWork::work(Worker& worker) {
  _procedures.start();
  {
    const std::lock_guard lock(_mutex);
    ++_started;
    _progressMade.notify_all();
  }
  serve(worker);
  if (_state != State::kAbandoned) _procedures.end();
  const std::lock_guard lock(_mutex);
  ++_gone;
  _progressMade.notify_all();
}

void ThreadWork::serve(Worker& worker) {
  for (;;) {
    Job job{};
    if (!take(job)) {
      tellWhoWaits();
      if (!awaitJob(worker)) return;
      continue;
    }
    if (_sleeping.load(std::memory_order_relaxed) > 0 && !_queue.isEmpty()) wakeAnother();
    _procedures.run(job.work, job.data);
    worker.finished.store(worker.finished.load(std::memory_order_relaxed) + 1,
                          std::memory_order_release);
  }
}

bool ThreadWork::take(Job& job) {
  for (int tries = 0; _isPopping.exchange(true, std::memory_order_acquire); ++tries) {
    // The worker in front may have lost its processor.
    if (tries % 64 == 63) std::this_thread::yield();
    platform::relaxProcessor();
  }
  const bool isTaken =
      _state.load(std::memory_order_relaxed) != State::kAbandoned && _queue.pop(job);
  _isPopping.store(false, std::memory_order_release);
  return isTaken;
}

// False when the worker is not needed any more.
bool ThreadWork::awaitJob(Worker& worker) {
  // A worker that is faster than the sender leaves it time to queue some more. One that waits
  // actively is enough: the sender needs a processor, too.
  const bool isAlone = _spinning.fetch_add(1, std::memory_order_relaxed) == 0;
  const bool isNeeded = isAlone && spinUntil(worker.history, kPausesOfWorkers, [this] {
                          return !_queue.isEmpty() || _state != State::kWorking;
                        });
  // Orders with the sender's reading: either it finds nobody waiting, or its job is seen from here
  // on.
  _spinning.fetch_sub(1, std::memory_order_acq_rel);
  if (isNeeded && _state == State::kWorking) return true;
  BriefLock lock(_mutex);
  if (_state == State::kAbandoned || (_state == State::kDraining && _queue.isEmpty())) {
    --_serving;
    return false;
  }
  if (_queue.isEmpty()) {
    _sleeping.fetch_add(1, std::memory_order_relaxed);
    // One wait only: a worker that was woken in vain must say so before it sleeps again.
    _jobQueued.wait(lock.get());
    _sleeping.fetch_sub(1, std::memory_order_relaxed);
    _isWaking = false;
  }
  return true;
}

void ThreadWork::wakeAnother() {
  {
    const BriefLock lock(_mutex);
    if (_isWaking || _sleeping.load(std::memory_order_relaxed) == 0 || _queue.isEmpty()) return;
    _isWaking = true;
  }
  _jobQueued.notify_one();
}

// For a worker that has finished its job and found no other.
void ThreadWork::tellWhoWaits() {
  // A reading that also orders: see synchronise.
  if (_waiting.fetch_add(0, std::memory_order_acq_rel) == 0 || !isDone()) return;
  const std::lock_guard lock(_mutex);
  _progressMade.notify_all();
}

// Whether every job that was queued has finished, or never will. What is finished is counted before
// what is queued: if both agree then, nothing was left in between.
bool ThreadWork::isDone() const noexcept {
  long finished = 0;
  for (const Worker* worker = _workers; worker != nullptr; worker = worker->next) {
    finished += worker->finished.load(std::memory_order_acquire);
  }
  return finished == _queue.getPushed() || _state == State::kAbandoned;
}

}  // namespace kova::kernel
