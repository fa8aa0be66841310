#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

/// The name of the test that is running in this process, so that what it writes can be kept apart
/// from what other tests write. Any thread may ask.
class KOVABASE_API KOVACurrentlyRunningTest {
 public:
  /// Names the running test as long as it lives, and puts the name before back.
  class KOVABASE_API Scope_t {
   public:
    explicit Scope_t(const KOVAString& name);
    Scope_t(const Scope_t&) = delete;
    Scope_t& operator=(const Scope_t&) = delete;
    ~Scope_t();

   private:
    KOVAString _previous;
  };

  KOVACurrentlyRunningTest() = delete;

  static bool IsRunning();
  /// The empty text when no test is running.
  static KOVAString GetName();
  /// An empty name says that no test is running any more.
  static void SetName(const KOVAString& name);
};
