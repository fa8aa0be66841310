#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Mutual exclusion. A thread that holds the mutex may acquire it again, and gives it up with as
/// many releases; a thread may release only what it holds. A mutex for whose state there was no
/// memory does nothing.
class KOVABASE_API KOVAMutex {
 public:
  /// Holds the mutex as long as it lives, which must be shorter than the mutex does.
  class LockGuard_t {
   public:
    explicit LockGuard_t(KOVAMutex& mutex) : _mutex(&mutex) { _mutex->Acquire(); }
    LockGuard_t(const LockGuard_t&) = delete;
    LockGuard_t& operator=(const LockGuard_t&) = delete;
    ~LockGuard_t() { _mutex->Release(); }

   private:
    KOVAMutex* _mutex;
  };

  KOVAMutex() noexcept;
  KOVAMutex(const KOVAMutex&) = delete;
  KOVAMutex& operator=(const KOVAMutex&) = delete;
  ~KOVAMutex();

  /// Waits until no other thread holds the mutex.
  void Acquire() noexcept;
  void Release() noexcept;

 private:
  void* _impl;
};
