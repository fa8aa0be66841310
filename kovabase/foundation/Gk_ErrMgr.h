#pragma once

#include "kovabase/foundation/KOVAExport.h"

class Gk_Exception;

/// Raises translator failures, and carries the user's wish to stop from any thread to the loops
/// that do the work. All functions may be called on any thread.
class KOVABASE_API Gk_ErrMgr {
 public:
  Gk_ErrMgr() = delete;

  /// Reports the message, if there is one, as an error and throws a copy of `exception`. What
  /// arrives is a Gk_Exception, also for a derived class; to keep the class, throw it directly.
  [[noreturn]] static void raise(const Gk_Exception& exception);

  /// Asks the work to stop at its next safe point.
  static void setAbort() noexcept;
  static bool shouldAbort() noexcept;
  /// A safe point: throws KOVAAbortException once for each abort that was asked for.
  static void checkAbort();

  /// Both do nothing. They are where a debugger's breakpoint catches what is not reported.
  static void doAssert(const char* file, int line) noexcept;
  static void trap() noexcept;
};
