#include "kovabase/concurrency/KOVAReadersWritersLock.h"

#include "kovabase/foundation/internal/Heap.h"

#include <atomic>

/// The room and its readers in one word: the writer's bit, and below it the number of readers,
/// those who wait for the writer to leave among them. A reader counts itself in and is inside when
/// there is no writer's bit; a writer sets the bit in a word of 0. So whoever holds the room, all
/// readers or one writer, is told by the word alone.
struct KOVAReadersWritersLock::State {
  std::atomic<unsigned> word{0};
  /// Writers that sleep, or are about to. The last reader looks here whether one is to be woken.
  std::atomic<unsigned> waitingWriters{0};
};

namespace {

constexpr unsigned kWriter = 0x80000000U;

}  // namespace

KOVAReadersWritersLock::KOVAReadersWritersLock() noexcept
    : _impl(kova::internal::tryCreate<State>()) {}

KOVAReadersWritersLock::~KOVAReadersWritersLock() {
  kova::internal::destroy(_impl);
  _impl = nullptr;
}

void KOVAReadersWritersLock::AcquireReadLock() noexcept {
  if (_impl == nullptr) return;
  std::atomic<unsigned>& word = _impl->word;
  if ((word.fetch_add(1, std::memory_order_acquire) & kWriter) == 0U) [[likely]]
    return;
  for (unsigned seen = word.load(std::memory_order_acquire); (seen & kWriter) != 0U;
       seen = word.load(std::memory_order_acquire)) {
    word.wait(seen, std::memory_order_relaxed);
  }
}

void KOVAReadersWritersLock::ReleaseReadLock() noexcept {
  if (_impl == nullptr) return;
  if (_impl->word.fetch_sub(1, std::memory_order_seq_cst) == 1U &&
      _impl->waitingWriters.load(std::memory_order_seq_cst) != 0U) {
    _impl->word.notify_all();
  }
}

void KOVAReadersWritersLock::AcquireWriteLock() noexcept {
  if (_impl == nullptr) return;
  std::atomic<unsigned>& word = _impl->word;
  unsigned seen = 0;
  if (word.compare_exchange_strong(seen, kWriter, std::memory_order_acquire)) [[likely]]
    return;
  _impl->waitingWriters.fetch_add(1, std::memory_order_seq_cst);
  seen = 0;
  while (!word.compare_exchange_strong(seen, kWriter, std::memory_order_seq_cst)) {
    word.wait(seen, std::memory_order_relaxed);
    seen = 0;
  }
  _impl->waitingWriters.fetch_sub(1, std::memory_order_relaxed);
}

void KOVAReadersWritersLock::ReleaseWriteLock() noexcept {
  if (_impl == nullptr) return;
  const unsigned before = _impl->word.fetch_and(~kWriter, std::memory_order_seq_cst);
  const bool readersWait = before != kWriter;
  if (readersWait || _impl->waitingWriters.load(std::memory_order_seq_cst) != 0U) {
    _impl->word.notify_all();
  }
}
