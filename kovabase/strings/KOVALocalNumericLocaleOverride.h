#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// While it lives, numbers are read and printed on this thread with the decimal point of the "C"
/// locale, whatever locale the process has set. For code that calls `printf`, `strtod` or a
/// foreign library; the library's own conversions do not depend on the locale.
///
/// Other threads and the other categories of the locale are not touched. Objects of one thread
/// nest, and each is destroyed on the thread that made it.
class KOVABASE_API KOVALocalNumericLocaleOverride {
 public:
  KOVALocalNumericLocaleOverride() noexcept;
  /// Puts back the locale that the thread had before.
  ~KOVALocalNumericLocaleOverride();

  KOVALocalNumericLocaleOverride(const KOVALocalNumericLocaleOverride&) = delete;
  KOVALocalNumericLocaleOverride& operator=(const KOVALocalNumericLocaleOverride&) = delete;

  /// False when the system had no memory for the locale: the thread's locale is then unchanged.
  bool IsActive() const noexcept { return _pushed != nullptr; }

 private:
  void* _pushed;
};
