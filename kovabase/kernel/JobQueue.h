#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace kova::kernel {

/// What a worker runs: two pointers that only their sender understands.
struct Job {
  void* work;
  void* data;
};

/// A first-in first-out queue of jobs in chunks, so that a million of them cost a few thousand
/// allocations and no copy. Who pops counts them: the queue does not know when it is empty. Not
/// synchronised.
class JobQueue {
 public:
  JobQueue() = default;
  JobQueue(const JobQueue&) = delete;
  JobQueue& operator=(const JobQueue&) = delete;
  ~JobQueue() { clear(); }

  void push(Job job) {
    if (_tail == nullptr || _back == kJobsPerChunk) addChunk();
    _tail->jobs[_back++] = job;
  }

  /// The queue must not be empty.
  Job pop() noexcept {
    if (_front == kJobsPerChunk) dropChunk();
    return _first->jobs[_front++];
  }

  /// Forgets all jobs and frees the memory.
  void clear() noexcept {
    // A loop, since a chain of owners would be destroyed by recursion.
    while (_first != nullptr) _first = std::move(_first->next);
    _spare.reset();
    _tail = nullptr;
    _front = _back = 0;
  }

 private:
  static constexpr std::size_t kJobsPerChunk = 510;

  struct Chunk {
    std::unique_ptr<Chunk> next;
    Job jobs[kJobsPerChunk];
  };

  void addChunk() {
    // Not make_unique: the jobs need no zeros.
    std::unique_ptr<Chunk> chunk =
        _spare != nullptr ? std::move(_spare) : std::unique_ptr<Chunk>(new Chunk);
    Chunk* const added = chunk.get();
    if (_tail != nullptr) {
      _tail->next = std::move(chunk);
    } else {
      _first = std::move(chunk);
      _front = 0;
    }
    _tail = added;
    _back = 0;
  }

  void dropChunk() noexcept {
    std::unique_ptr<Chunk> next = std::move(_first->next);
    _spare = std::move(_first);
    _first = std::move(next);
    _front = 0;
  }

  std::unique_ptr<Chunk> _first;
  std::unique_ptr<Chunk> _spare;
  Chunk* _tail = nullptr;
  // The next job to pop in the first chunk, the next free place in the last one.
  std::size_t _front = 0;
  std::size_t _back = 0;
};

}  // namespace kova::kernel
