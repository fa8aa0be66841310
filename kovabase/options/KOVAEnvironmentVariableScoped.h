#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

/// Sets an environment variable for as long as this object lives, then puts back exactly what was
/// there before, also an empty text or one in another code page, or removes the variable.
///
/// Guards of one variable end in reverse order, since each restores what it saw. A copy restores
/// the same state once more. The change affects all threads of the process.
class KOVABASE_API KOVAEnvironmentVariableScoped {
 public:
  /// Sets the variable as KOVAEnvironment::PutVariable does: an empty value removes it.
  KOVAEnvironmentVariableScoped(const KOVAString& name, const KOVAString& value);
  KOVAEnvironmentVariableScoped(const KOVAEnvironmentVariableScoped& other) = default;
  KOVAEnvironmentVariableScoped& operator=(const KOVAEnvironmentVariableScoped& other) = default;
  ~KOVAEnvironmentVariableScoped();

 private:
  KOVAString _name;
  KOVAString _previousValue;  // one unit for each byte, so that no code page can lose any
  bool _hadPreviousValue = false;
};
