#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace kova::internal {

/// The plain heap for the chunks of a queue.
struct HeapMemory {
  static void* allocate(std::size_t bytes) { return ::operator new(bytes); }
  static void release(void* block, std::size_t /*bytes*/) noexcept { ::operator delete(block); }
};

/// A first-in first-out queue of small records in chunks, so that a million of them cost a few
/// thousand allocations and no copy. Not synchronised.
template <typename T, typename Memory = HeapMemory>
class ChunkedQueue {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  ChunkedQueue() = default;
  ChunkedQueue(const ChunkedQueue&) = delete;
  ChunkedQueue& operator=(const ChunkedQueue&) = delete;
  ~ChunkedQueue() { clear(); }

  bool isEmpty() const noexcept { return _first == _last && _front == _back; }

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
    while (_first != nullptr) release(std::exchange(_first, _first->next));
    if (_spare != nullptr) release(std::exchange(_spare, nullptr));
    _last = nullptr;
    _front = _back = 0;
  }

 private:
  static constexpr std::size_t kRecordsPerChunk = 510;

  struct Chunk {
    Chunk* next;
    T records[kRecordsPerChunk];
  };

  static void release(Chunk* chunk) noexcept { Memory::release(chunk, sizeof(Chunk)); }

  void addChunk() {
    Chunk* const added = _spare != nullptr ? std::exchange(_spare, nullptr)
                                           : static_cast<Chunk*>(Memory::allocate(sizeof(Chunk)));
    added->next = nullptr;
    (_last != nullptr ? _last->next : _first) = added;
    _last = added;
    _back = 0;
  }

  // One chunk is kept, so that a short queue that is filled and emptied again allocates nothing.
  void dropChunk() noexcept {
    Chunk* const dropped = std::exchange(_first, _first->next);
    _front = 0;
    if (_spare == nullptr) {
      _spare = dropped;
    } else {
      release(dropped);
    }
  }

  Chunk* _first = nullptr;
  Chunk* _spare = nullptr;
  Chunk* _last = nullptr;
  // The oldest record in the first chunk, the next free place in the last one.
  std::size_t _front = 0;
  std::size_t _back = 0;
};

}  // namespace kova::internal
