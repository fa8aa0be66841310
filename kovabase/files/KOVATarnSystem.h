#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Guards the process's locale against code that is loaded into it: a library may change the locale
/// when it is loaded, in its own functions and when it is unloaded.
class KOVABASE_API KOVATarnSystem {
 public:
  KOVATarnSystem() = delete;

  /// Remembers the process's locale as the one to come back to. While several live, on any threads,
  /// it is the one from before the first.
  class KOVABASE_API LocaleGuard_t {
   public:
    LocaleGuard_t();
    LocaleGuard_t(const LocaleGuard_t&) = delete;
    LocaleGuard_t& operator=(const LocaleGuard_t&) = delete;
    ~LocaleGuard_t();
  };

  /// Puts the category of code pages back to what the guard remembers. Without a living guard there
  /// is nothing to come back to, and nothing changes. The locale belongs to all threads: when this
  /// has something to change, no other thread may be using it.
  static void RefreshACPLocale();
  /// The same for all categories.
  static void RefreshLocale();
};
