#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/strings/KOVAString.h"

class KOVAOption;

/// The process-wide registry of internal options, named "/component/option path". Options live
/// until the process ends. The registry itself may be used from any thread; the options that it
/// hands out belong to one thread at a time.
class KOVABASE_API KOVAInternalOptionManager {
 public:
  KOVAInternalOptionManager() = delete;

  /// Sets the option of that name, which is made when there is none and then takes the value's
  /// type. A value of another type is refused with a message, as `KOVAOption::SetValue` says.
  /// @return the option, never null.
  static KOVAOption* AddOption(const KOVAString& name, const KOVAString& value);
  static KOVAOption* AddOption(const KOVAString& name, const char* value);
  static KOVAOption* AddOption(const KOVAString& name, int value);
  static KOVAOption* AddOption(const KOVAString& name, double value);
  static KOVAOption* AddOption(const KOVAString& name, bool value);

  /// The option of exactly this name, or null.
  static KOVAOption* GetOption(const KOVAString& name);

  /// Sets the options of component `to` to the current values of those of component `from`, where
  /// `to` has an option of the same path. Components are bare prefixes with their leading slash,
  /// such as "/step"; case matters. Names without a second slash are passed over.
  static void SynchOptionsBetweenComponents(const KOVAString& from, const KOVAString& to);

 private:
  class KOVAInternalOptionsMap;

  static KOVAInternalOptionsMap& map();
  template <class V>
  static KOVAOption* setOption(const KOVAString& name, const V& value);
};
