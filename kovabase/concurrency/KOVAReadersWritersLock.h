#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Many readers or one writer.
///
/// Readers are preferred: while one of them is inside, others enter at once, and a steady stream of
/// them starves a writer. Nobody is recorded as an owner, so that each side may be released by
/// another thread than the one that acquired it. Asking for the write lock twice on one thread
/// deadlocks, and so does asking for the other side while holding one. A read lock that nobody
/// holds must not be released; a write lock that nobody holds may be. A lock for whose state there
/// was no memory does nothing.
class KOVABASE_API KOVAReadersWritersLock {
 public:
  /// Holds the read lock as long as it lives, which must be shorter than the lock does.
  class ReaderGuard_t {
   public:
    explicit ReaderGuard_t(KOVAReadersWritersLock& lock) : _lock(&lock) {
      _lock->AcquireReadLock();
    }
    ReaderGuard_t(const ReaderGuard_t&) = delete;
    ReaderGuard_t& operator=(const ReaderGuard_t&) = delete;
    ~ReaderGuard_t() { _lock->ReleaseReadLock(); }

   private:
    KOVAReadersWritersLock* _lock;
  };

  /// The same for the write lock.
  class WriterGuard_t {
   public:
    explicit WriterGuard_t(KOVAReadersWritersLock& lock) : _lock(&lock) {
      _lock->AcquireWriteLock();
    }
    WriterGuard_t(const WriterGuard_t&) = delete;
    WriterGuard_t& operator=(const WriterGuard_t&) = delete;
    ~WriterGuard_t() { _lock->ReleaseWriteLock(); }

   private:
    KOVAReadersWritersLock* _lock;
  };

  KOVAReadersWritersLock() noexcept;
  KOVAReadersWritersLock(const KOVAReadersWritersLock&) = delete;
  KOVAReadersWritersLock& operator=(const KOVAReadersWritersLock&) = delete;
  ~KOVAReadersWritersLock();

  /// Waits until no writer is inside.
  void AcquireReadLock() noexcept;
  void ReleaseReadLock() noexcept;
  /// Waits until nobody is inside.
  void AcquireWriteLock() noexcept;
  void ReleaseWriteLock() noexcept;

 private:
  struct State;

  State* _impl;
};
