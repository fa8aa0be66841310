#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/options/KOVAOptionName.h"
#include "kovabase/options/KOVAValue.h"
#include "kovabase/strings/KOVAString.h"

/// A named setting: a default value, which fixes the type for good, a current value, and a flag
/// that hides it from listings. It can be overridden from the environment when it is read.
///
/// An option whose default has no type is not initialised: reading it gives NotInitialized.
/// One option belongs to one thread at a time. It survives a move of its bytes.
class KOVABASE_API KOVAOption {
 public:
  KOVAOption() = default;

  /// Set the default and the current value.
  KOVAOption(const KOVAOptionName& name, const KOVAString& value, bool isPrivate = false);
  KOVAOption(const KOVAOptionName& name, const char* value, bool isPrivate = false);
  KOVAOption(const KOVAOptionName& name, const KOVAValue& value, bool isPrivate = false);
  KOVAOption(const KOVAOptionName& name, int value, bool isPrivate = false);
  KOVAOption(const KOVAOptionName& name, double value, bool isPrivate = false);
  KOVAOption(const KOVAOptionName& name, bool value, bool isPrivate = false);

  /// Values and type stay. @return Success.
  KOVAResult ChangeName(const KOVAString& name);

  /// These read the option; NotInitialized when it has no type.
  KOVAResult GetName(KOVAString& name) const;
  KOVAResult IsPrivate(bool& isPrivate) const;
  KOVAResult GetValueType(KOVAValue::KOVAValueType& type) const;

  /// Read the default, converted as `KOVAValue::GetValue` does.
  KOVAResult GetDefaultValue(int& value) const;
  KOVAResult GetDefaultValue(double& value) const;
  KOVAResult GetDefaultValue(KOVAString& value) const;
  KOVAResult GetDefaultValue(bool& value) const;
  KOVAResult GetDefaultValue(KOVAValue& value) const;

  /// Read the current value, converted as `KOVAValue::GetValue` does.
  KOVAResult GetValue(int& value) const;
  KOVAResult GetValue(double& value) const;
  KOVAResult GetValue(KOVAString& value) const;
  KOVAResult GetValue(bool& value) const;
  KOVAResult GetValue(KOVAValue& value) const;

  /// With `checkEnvironment`, the variable "KOVA" + name (case kept, no separator) comes first:
  /// when it is set and its text converts, it gives the value and a warning says so. Otherwise the
  /// stored value, which the override never changes.
  KOVAResult GetValue(int& value, bool checkEnvironment) const;
  KOVAResult GetValue(double& value, bool checkEnvironment) const;
  KOVAResult GetValue(KOVAString& value, bool checkEnvironment) const;
  KOVAResult GetValue(bool& value, bool checkEnvironment) const;

  /// Set the current value; the first one also becomes the default and fixes the type. An integer
  /// is accepted by a bool option.
  /// @return ErrorEncountered, with a message and nothing changed, when the types do not fit (a
  ///   warning for the integer form, an error for the others; kept so).
  KOVAResult SetValue(int value);
  KOVAResult SetValue(double value);
  KOVAResult SetValue(bool value);
  KOVAResult SetValue(const KOVAString& value);
  KOVAResult SetValue(const char* value);
  /// A text is parsed as the option's type. A value of another type replaces the current value
  /// without a check; kept so.
  KOVAResult SetValue(const KOVAValue& value);

  /// The texts for a listing; an empty value shows as two double quotes.
  /// @return NotInitialized, or InvalidArgument when the current value has no type.
  KOVAResult GetNameAndValueAsString(KOVAString& name, KOVAString& value) const;

 private:
  friend class KOVAOptions;
  friend class KOVAInternalOptionManager;

  /// The name alone; not initialised.
  explicit KOVAOption(const KOVAString& name);

  static KOVAString FormEnvVarName(const KOVAString& name);

  bool isInitialized() const { return _default.IsValid(); }
  template <class T>
  KOVAResult readCurrent(T& value, KOVAValue::KOVAValueType asked) const;
  template <class T>
  KOVAResult setTyped(const T& value, KOVAValue::KOVAValueType type);
  KOVAResult setParsed(const KOVAString& text);
  KOVAResult mismatch(KOVAValue::KOVAValueType given, bool asWarning) const;

  KOVAValue _default;
  KOVAValue _current;
  KOVAString _name;
  bool _private = false;
};
