#pragma once

#include <atomic>

/// A 32-bit counter for many threads; it wraps around at both ends. The constructor is constexpr,
/// so that a counter of static storage is ready before any load-time code runs.
class KOVAAtomicCounter {
 public:
  /// Keeps the low 32 bits of `count`.
  constexpr KOVAAtomicCounter(long count = 0) noexcept : _count(static_cast<int>(count)) {}

  /// Copying reads and writes the two counters one after the other, not as one step.
  KOVAAtomicCounter(const KOVAAtomicCounter& other) noexcept
      : _count(other._count.load(std::memory_order_relaxed)) {}
  KOVAAtomicCounter& operator=(const KOVAAtomicCounter& other) noexcept {
    _count.store(other._count.load(std::memory_order_relaxed), std::memory_order_relaxed);
    return *this;
  }
  ~KOVAAtomicCounter() = default;

  /// @return the new value. What a thread wrote before is visible to whoever sees that value.
  long AtomicIncrement() noexcept {
    return static_cast<int>(static_cast<unsigned>(_count.fetch_add(1, std::memory_order_acq_rel)) +
                            1U);
  }
  long AtomicDecrement() noexcept {
    return static_cast<int>(static_cast<unsigned>(_count.fetch_sub(1, std::memory_order_acq_rel)) -
                            1U);
  }

  /// The value of this moment; another thread may have changed it before the caller looks.
  long GetCount() const noexcept { return _count.load(std::memory_order_acquire); }

 private:
  std::atomic<int> _count;
};
