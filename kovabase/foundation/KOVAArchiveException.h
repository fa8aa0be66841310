#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Why an archive gave up. The archive classes give the values their meaning.
enum eKOVAArchiveException : int {};

/// An archive cannot be read or written any further.
class KOVABASE_API KOVAArchiveException {
 public:
  explicit KOVAArchiveException(eKOVAArchiveException reason) noexcept : _reason(reason) {}

  eKOVAArchiveException GetReason() const noexcept { return _reason; }

 private:
  eKOVAArchiveException _reason;
};
