#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace kova::internal {

/// A first-in first-out queue of small records in chunks, so that a million of them cost a few
/// thousand allocations and no copy. Not synchronised.
template <typename T>
class ChunkedQueue {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  ChunkedQueue() = default;
  ChunkedQueue(const ChunkedQueue&) = delete;
  ChunkedQueue& operator=(const ChunkedQueue&) = delete;
  ~ChunkedQueue() { clear(); }

  bool isEmpty() const noexcept { return _first.get() == _last && _front == _back; }

  void push(const T& record) {
    if (_last == nullptr || _back == kRecordsPerChunk) addChunk();
    _last->records[_back++] = record;
  }

  /// The oldest record; the queue must not be empty.
  const T& front() noexcept {
    if (_front == kRecordsPerChunk) dropChunk();
    return _first->records[_front];
  }

  /// Removes and returns the oldest record; the queue must not be empty.
  T pop() noexcept {
    const T record = front();
    ++_front;
    return record;
  }

  /// Forgets all records and frees the memory.
  void clear() noexcept {
    // A loop, since a chain of owners would be destroyed by recursion.
    while (_first != nullptr) _first = std::move(_first->next);
    _spare.reset();
    _last = nullptr;
    _front = _back = 0;
  }

 private:
  static constexpr std::size_t kRecordsPerChunk = 510;

  struct Chunk {
    std::unique_ptr<Chunk> next;
    T records[kRecordsPerChunk];
  };

  void addChunk() {
    // Not make_unique: the records need no zeros.
    if (_spare == nullptr) _spare.reset(new Chunk);
    Chunk* const added = _spare.get();
    (_last != nullptr ? _last->next : _first) = std::move(_spare);
    _last = added;
    _back = 0;
  }

  // One chunk is kept, so that a short queue that is filled and emptied again allocates nothing.
  void dropChunk() noexcept {
    std::unique_ptr<Chunk> next = std::move(_first->next);
    _spare = std::move(_first);
    _first = std::move(next);
    _front = 0;
  }

  std::unique_ptr<Chunk> _first;
  std::unique_ptr<Chunk> _spare;
  Chunk* _last = nullptr;
  // The oldest record in the first chunk, the next free place in the last one.
  std::size_t _front = 0;
  std::size_t _back = 0;
};

}  // namespace kova::internal
