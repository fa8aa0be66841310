#include "kovabase/kernel/ThreadWork.h"

#include "kovabase/platform/Processor.h"

#include <chrono>

namespace kova::kernel {

namespace {

using Clock = std::chrono::steady_clock;

// To sleep and be woken takes tens of microseconds; the next job often comes sooner.
constexpr auto kSpinTime = std::chrono::microseconds(6);
// How long the end of the process waits for jobs that are still running.
constexpr auto kPatience = std::chrono::seconds(1);

template <typename Condition>
bool spinUntil(Condition isMet) {
  const auto end = Clock::now() + kSpinTime;
  do {
    for (int i = 0; i < 16; ++i) {
      if (isMet()) return true;
      platform::relaxProcessor();
    }
  } while (Clock::now() < end);
  return isMet();
}

// The mutex is held for a few instructions at a time: trying again beats falling asleep.
void lockSoon(std::unique_lock<std::mutex>& lock) {
  for (int i = 0; i < 64; ++i) {
    if (lock.try_lock()) return;
    platform::relaxProcessor();
  }
  lock.lock();
}

}  // namespace

int ThreadWork::start(int count, const Procedures& procedures) {
  std::unique_lock lock(_mutex);
  if (_state == State::kAbandoned) return 0;
  _procedures = procedures;
  _state = State::kWorking;
  _started = _gone = 0;
  _isWaking = false;
  for (int i = 0; i < count; ++i) {
    try {
      _threads.emplace_back([this] { work(); });
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
  std::unique_lock lock(_mutex, std::defer_lock);
  lockSoon(lock);
  if (_serving == 0 || _state == State::kAbandoned) return false;
  _queue.push({work, data});
  _queued.store(_queued.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
  _unfinished.store(_unfinished.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
  const bool wake = mayWakeAnother();
  lock.unlock();
  if (wake) _jobQueued.notify_one();
  return true;
}

void ThreadWork::synchronise() {
  const auto isDone = [this] { return _unfinished.load(std::memory_order_acquire) == 0; };
  if (spinUntil(isDone)) return;
  std::unique_lock lock(_mutex);
  ++_waiting;
  _progressMade.wait(lock, isDone);
  --_waiting;
}

void ThreadWork::terminate() {
  {
    const std::lock_guard lock(_mutex);
    if (_state == State::kWorking) _state = State::kDraining;
  }
  _jobQueued.notify_all();
  for (std::thread& thread : _threads) thread.join();
  _threads.clear();
  const std::lock_guard lock(_mutex);
  _started = _gone = 0;
  _queue.clear();
  if (_state == State::kDraining) _state = State::kIdle;
}

void ThreadWork::abandon() noexcept {
  std::unique_lock lock(_mutex);
  _state = State::kAbandoned;
  _jobQueued.notify_all();
  // A job may end the process: its own worker then stands here.
  const auto self = std::this_thread::get_id();
  bool isOnWorker = false;
  for (const std::thread& thread : _threads) isOnWorker |= thread.get_id() == self;
  const int others = static_cast<int>(_threads.size()) - (isOnWorker ? 1 : 0);
  const bool allGone = _progressMade.wait_for(lock, kPatience, [&] { return _gone == others; });
  lock.unlock();
  for (std::thread& thread : _threads) {
    if (allGone && thread.get_id() != self) {
      thread.join();
    } else {
      thread.detach();
    }
  }
  _threads.clear();
}

void ThreadWork::work() {
  _procedures.start();
  std::unique_lock lock(_mutex);
  ++_started;
  _progressMade.notify_all();
  serve(lock);
  --_serving;
  if (_state != State::kAbandoned) {
    lock.unlock();
    _procedures.end();
    lock.lock();
  }
  ++_gone;
  _progressMade.notify_all();
}

void ThreadWork::serve(std::unique_lock<std::mutex>& lock) {
  while (_state != State::kAbandoned) {
    const long queued = _queued.load(std::memory_order_relaxed);
    if (queued == 0) {
      if (_state != State::kWorking) return;
      awaitJob(lock);
      continue;
    }
    const Job job = _queue.pop();
    _queued.store(queued - 1, std::memory_order_relaxed);
    const bool wake = mayWakeAnother();
    lock.unlock();
    if (wake) _jobQueued.notify_one();

    _procedures.run(job.work, job.data);

    lockSoon(lock);
    const long unfinished = _unfinished.load(std::memory_order_relaxed) - 1;
    _unfinished.store(unfinished, std::memory_order_release);
    if (unfinished == 0 && _waiting > 0) _progressMade.notify_all();
  }
}

void ThreadWork::awaitJob(std::unique_lock<std::mutex>& lock) {
  const auto hasWork = [this] {
    return _queued.load(std::memory_order_relaxed) != 0 ||
           _state.load(std::memory_order_relaxed) != State::kWorking;
  };
  lock.unlock();
  spinUntil(hasWork);
  lockSoon(lock);
  if (hasWork()) return;
  ++_sleeping;
  // One wait only: a worker that was woken in vain must say so before it sleeps again.
  _jobQueued.wait(lock);
  --_sleeping;
  _isWaking = false;
}

// Whether the caller is to wake a sleeping worker once it has let go of the mutex.
bool ThreadWork::mayWakeAnother() noexcept {
  if (_isWaking || _sleeping == 0 || _queued.load(std::memory_order_relaxed) == 0) return false;
  _isWaking = true;
  return true;
}

}  // namespace kova::kernel
