#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// A declared option name. Each one that is constructed from a text registers itself for the life
/// of the process, so declared names are static objects; copies do not register.
///
/// Names are declared from one thread (static initialisers and set-up); afterwards any thread may
/// match them.
class KOVABASE_API KOVAOptionName {
 public:
  /// Explicit, so that no temporary registers itself.
  explicit KOVAOptionName(const KOVAString& name);
  KOVAOptionName(const KOVAOptionName& other) = default;
  KOVAOptionName& operator=(const KOVAOptionName& other);

  operator KOVAString() const { return _name; }

  /// Whether some declared name matches. A part of the asked name that is "*" matches any part.
  /// @return Success or Failure.
  static KOVAResult IsValid(const KOVAString& name);

  /// Compares two names part by part, ignoring case; parts are separated by '.'.
  /// @param score  0 for equal names; otherwise the sum of 2^i over the parts i of `asked` that are
  ///   "*", so that an early wildcard costs least; 65535 when the names do not match.
  /// @return Success, also without a match; Failure, `score` untouched, when a wildcard's bit does
  ///   not fit (part 32 or beyond).
  static KOVAResult Match(const KOVAString& declared, const KOVAString& asked, int& score);

  /// Every declared name, in the order of construction. Usable from other static initialisers and
  /// destructors: it is built before the first name and never destroyed.
  static KOVADynamicArray<KOVAOptionName*>& _optionNames;

 private:
  KOVAString _name;
};
