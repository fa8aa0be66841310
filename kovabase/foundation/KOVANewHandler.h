#pragma once

#include "kovabase/foundation/KOVAAtomicCounter.h"
#include "kovabase/foundation/KOVAExport.h"

#include <atomic>
#include <new>

/// Turns a failing `new` into KOVAAllocException for as long as an object of this class lives, and
/// holds 1 MiB back for the clean-up that then follows. Objects nest: the last one made is the
/// first to go. The handler is the process's, for all its threads.
class KOVABASE_API KOVANewHandler {
 public:
  KOVANewHandler() noexcept;
  KOVANewHandler(const KOVANewHandler&) = delete;
  KOVANewHandler& operator=(const KOVANewHandler&) = delete;
  ~KOVANewHandler() { Reset(); }

  /// Puts the previous handler back; the last object releases the reserve. A second call does
  /// nothing.
  void Reset() noexcept;

  /// Holds the reserve back, unless it is held already or cannot be had.
  static void ReserveBuffer() noexcept;
  /// Gives the reserve to the heap.
  static void ReleaseBuffer() noexcept;

 private:
  void SetNewHandler() noexcept;
  static void Clean() noexcept;
  [[noreturn]] static void NewHandlerFunction();
  /// The form that another runtime's hook expects; the name is spelled so on purpose.
  [[noreturn]] static int NewHandlerFuctionForWindows(unsigned size);

  static std::atomic<void*> _pReserveBuffer;
  /// The objects that have not been reset.
  static KOVAAtomicCounter _refCount;

  std::new_handler _previousHandler = nullptr;
  /// This runtime has no new-mode, so that none is ever saved.
  int _previousMode = -1;
  bool _isInstalled = false;
};
