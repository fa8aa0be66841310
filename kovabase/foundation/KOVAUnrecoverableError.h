#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Base of what ends the work on hand: no caller can repair it on the way up.
class KOVABASE_API KOVAUnrecoverableError {
 public:
  /// Always 0: these exceptions are told apart by their class.
  int GetValue() const noexcept { return _value; }

 private:
  int _value = 0;
};
