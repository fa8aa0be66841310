#pragma once

#include <atomic>
#include <cstddef>

namespace kova::kernel {

/// What a worker runs: two pointers that only their sender understands.
struct Job {
  void* work;
  void* data;
};

/// A first-in first-out queue of jobs in chunks. One thread at a time pushes and one thread at a
/// time pops: each side has a lock of its own, so that they do not wait for each other.
class JobQueue {
 public:
  JobQueue() : _last(new Chunk), _first(_last) {}
  JobQueue(const JobQueue&) = delete;
  JobQueue& operator=(const JobQueue&) = delete;
  ~JobQueue() {
    while (_first != nullptr) {
      const Chunk* const chunk = _first;
      _first = _first->next;
      delete chunk;
    }
    delete _spare.load(std::memory_order_relaxed);
  }

  /// Belongs to the pushing side; `std::bad_alloc` leaves the queue as it was.
  void push(Job job) {
    if (_back == kJobsPerChunk) addChunk();
    _last->jobs[_back++] = job;
    _pushed.store(_pushed.load(std::memory_order_relaxed) + 1, std::memory_order_release);
  }

  /// Belongs to the popping side.
  /// @return false when there is nothing to pop.
  bool pop(Job& job) noexcept {
    const long popped = _popped.load(std::memory_order_relaxed);
    // The other side's counter is read only when it matters: its cache line is on the move.
    if (popped == _knownPushed) _knownPushed = _pushed.load(std::memory_order_acquire);
    if (popped == _knownPushed) return false;
    if (_front == kJobsPerChunk) dropChunk();
    job = _first->jobs[_front++];
    _popped.store(popped + 1, std::memory_order_relaxed);
    return true;
  }

  /// How many jobs there have been; any thread may ask.
  long getPushed() const noexcept { return _pushed.load(std::memory_order_acquire); }
  bool isEmpty() const noexcept {
    return _popped.load(std::memory_order_relaxed) == _pushed.load(std::memory_order_acquire);
  }

 private:
  static constexpr std::size_t kJobsPerChunk = 511;

  struct Chunk {
    Chunk* next = nullptr;
    Job jobs[kJobsPerChunk];
  };

  void addChunk() {
    Chunk* added = _spare.exchange(nullptr, std::memory_order_acquire);
    if (added == nullptr) added = new Chunk;
    added->next = nullptr;
    _last->next = added;
    _last = added;
    _back = 0;
  }

  void dropChunk() noexcept {
    Chunk* dropped = _first;
    _first = _first->next;
    _front = 0;
    // One chunk is handed back, so that a steady stream of jobs allocates nothing.
    delete _spare.exchange(dropped, std::memory_order_acq_rel);
  }

  // The pushing side.
  alignas(64) Chunk* _last;
  std::size_t _back = 0;
  std::atomic<long> _pushed{0};
  // The popping side.
  alignas(64) Chunk* _first;
  std::size_t _front = 0;
  long _knownPushed = 0;
  std::atomic<long> _popped{0};
  alignas(64) std::atomic<Chunk*> _spare{nullptr};
};

}  // namespace kova::kernel
