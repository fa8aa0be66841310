#include "kovabase/options/KOVAOption.h"

#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/foundation/Gk_ErrMgr.h"
#include "kovabase/foundation/KOVAError.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/strings/Gk_String.h"
#include "kovabase/strings/Gk_StringParser.h"
#include "kovabase/strings/KOVAStringConversions.h"

#include <cstdio>

using namespace KOVAResultCode;

namespace {

const char* nameOf(KOVAValue::KOVAValueType type) { return KOVAValue::KOVAValueTypeNames[type]; }

}  // namespace

KOVAOption::KOVAOption(const KOVAString& name) : _name(name) {}

KOVAOption::KOVAOption(const KOVAOptionName& name, const KOVAString& value, bool isPrivate)
    : _default(value), _current(value), _name(name), _private(isPrivate) {}

KOVAOption::KOVAOption(const KOVAOptionName& name, const char* value, bool isPrivate)
    : KOVAOption(name, KOVAString(value), isPrivate) {}

KOVAOption::KOVAOption(const KOVAOptionName& name, const KOVAValue& value, bool isPrivate)
    : _default(value), _current(value), _name(name), _private(isPrivate) {}

KOVAOption::KOVAOption(const KOVAOptionName& name, int value, bool isPrivate)
    : _default(value), _current(value), _name(name), _private(isPrivate) {}

KOVAOption::KOVAOption(const KOVAOptionName& name, double value, bool isPrivate)
    : _default(value), _current(value), _name(name), _private(isPrivate) {}

KOVAOption::KOVAOption(const KOVAOptionName& name, bool value, bool isPrivate)
    : _default(value), _current(value), _name(name), _private(isPrivate) {}

KOVAResult KOVAOption::ChangeName(const KOVAString& name) {
  _name = name;
  return kSuccess;
}

KOVAResult KOVAOption::GetName(KOVAString& name) const {
  if (!isInitialized()) return kNotInitialized;
  name = _name;
  return kSuccess;
}

KOVAResult KOVAOption::IsPrivate(bool& isPrivate) const {
  if (!isInitialized()) return kNotInitialized;
  isPrivate = _private;
  return kSuccess;
}

KOVAResult KOVAOption::GetValueType(KOVAValue::KOVAValueType& type) const {
  return isInitialized() ? _default.GetValueType(type) : KOVAResult(kNotInitialized);
}

KOVAResult KOVAOption::GetDefaultValue(int& value) const {
  return isInitialized() ? _default.GetValue(value) : KOVAResult(kNotInitialized);
}

KOVAResult KOVAOption::GetDefaultValue(double& value) const {
  return isInitialized() ? _default.GetValue(value) : KOVAResult(kNotInitialized);
}

KOVAResult KOVAOption::GetDefaultValue(KOVAString& value) const {
  return isInitialized() ? _default.GetValue(value) : KOVAResult(kNotInitialized);
}

KOVAResult KOVAOption::GetDefaultValue(bool& value) const {
  return isInitialized() ? _default.GetValue(value) : KOVAResult(kNotInitialized);
}

KOVAResult KOVAOption::GetDefaultValue(KOVAValue& value) const {
  if (!isInitialized()) return kNotInitialized;
  value = _default;
  return kSuccess;
}

KOVAResult KOVAOption::GetValue(int& value) const {
  return readCurrent(value, KOVAValue::kInteger);
}

KOVAResult KOVAOption::GetValue(double& value) const {
  return readCurrent(value, KOVAValue::kDouble);
}

KOVAResult KOVAOption::GetValue(KOVAString& value) const {
  return readCurrent(value, KOVAValue::kString);
}

KOVAResult KOVAOption::GetValue(bool& value) const { return readCurrent(value, KOVAValue::kBool); }

KOVAResult KOVAOption::GetValue(KOVAValue& value) const {
  if (!isInitialized()) return kNotInitialized;
  value = _current;
  return kSuccess;
}

// The integer and double forms name the variable, the text and bool forms the option; kept so.

KOVAResult KOVAOption::GetValue(int& value, bool checkEnvironment) const {
  if (checkEnvironment) {
    const KOVAString variable = FormEnvVarName(_name);
    KOVAString text;
    if (KOVAEnvironment::GetVariable(variable, text).IsSuccess() &&
        KOVAStringToInteger(text, value).IsSuccess()) {
      KOVAWarning::Printf("%s value overridden to %d by environment variable",
                          Gk_String(variable).getText(), value);
      return kSuccess;
    }
  }
  return GetValue(value);
}

KOVAResult KOVAOption::GetValue(double& value, bool checkEnvironment) const {
  if (checkEnvironment) {
    const KOVAString variable = FormEnvVarName(_name);
    KOVAString text;
    if (KOVAEnvironment::GetVariable(variable, text).IsSuccess() &&
        KOVAStringToDouble(text, value).IsSuccess()) {
      KOVAWarning::Printf("%s value overridden to %7.3g by environment variable",
                          Gk_String(variable).getText(), value);
      return kSuccess;
    }
  }
  return GetValue(value);
}

KOVAResult KOVAOption::GetValue(KOVAString& value, bool checkEnvironment) const {
  if (checkEnvironment) {
    KOVAString text;
    if (KOVAEnvironment::GetVariable(FormEnvVarName(_name), text).IsSuccess()) {
      value = text;
      KOVAWarning::Printf("%s value overridden to %s by environment variable",
                          Gk_String(_name).getText(), Gk_String(text).getText());
      return kSuccess;
    }
  }
  return GetValue(value);
}

KOVAResult KOVAOption::GetValue(bool& value, bool checkEnvironment) const {
  if (checkEnvironment) {
    KOVAString text;
    if (KOVAEnvironment::GetVariable(FormEnvVarName(_name), text).IsSuccess() &&
        KOVAStringToBool(text, value).IsSuccess()) {
      KOVAWarning::Printf("%s value overridden to %s by environment variable",
                          Gk_String(_name).getText(), value ? "On" : "Off");
      return kSuccess;
    }
  }
  return GetValue(value);
}

KOVAResult KOVAOption::SetValue(int value) {
  // Integers are accepted by bool options on purpose.
  if (_default.IsValid()) {
    KOVAValue::KOVAValueType type;
    _default.GetValueType(type);
    if (type == KOVAValue::kBool) return _current.SetValue(value != 0);
  }
  return setTyped(value, KOVAValue::kInteger);
}

KOVAResult KOVAOption::SetValue(double value) { return setTyped(value, KOVAValue::kDouble); }

KOVAResult KOVAOption::SetValue(bool value) { return setTyped(value, KOVAValue::kBool); }

KOVAResult KOVAOption::SetValue(const KOVAString& value) {
  return setTyped(value, KOVAValue::kString);
}

KOVAResult KOVAOption::SetValue(const char* value) { return SetValue(KOVAString(value)); }

KOVAResult KOVAOption::SetValue(const KOVAValue& value) {
  if (!isInitialized()) {
    _default = value;
    _current = value;
    return kSuccess;
  }
  KOVAValue::KOVAValueType type;
  value.GetValueType(type);
  if (type != KOVAValue::kString) {
    _current = value;
    return kSuccess;
  }
  KOVAString text;
  value.GetValue(text);
  return setParsed(text);
}

KOVAResult KOVAOption::GetNameAndValueAsString(KOVAString& name, KOVAString& value) const {
  KOVAResult result = GetName(name);
  if (result.IsFailure()) return result;
  result = GetValue(value);
  if (result.IsSuccess() && value.isEmpty()) value = KOVAString("\"\"");
  return result;
}

KOVAString KOVAOption::FormEnvVarName(const KOVAString& name) {
  KOVAString variable("KOVA");
  variable.append(name);
  return variable;
}

template <class T>
KOVAResult KOVAOption::readCurrent(T& value, KOVAValue::KOVAValueType asked) const {
  if (!isInitialized()) return kNotInitialized;
  const KOVAResult result = _current.GetValue(value);
  // A value that cannot be read as asked prints nothing: it is the caller's question to decide.
  if (result.IsFailure() && asked != KOVAValue::kUnknown) Gk_ErrMgr::trap();
  return result;
}

template <class T>
KOVAResult KOVAOption::setTyped(const T& value, KOVAValue::KOVAValueType type) {
  KOVAValue::KOVAValueType fixed;
  _default.GetValueType(fixed);
  if (fixed != KOVAValue::kUnknown && fixed != type) {
    return mismatch(type, type == KOVAValue::kInteger);
  }
  if (fixed == KOVAValue::kUnknown) _default.SetValue(value);
  return _current.SetValue(value);
}

KOVAResult KOVAOption::setParsed(const KOVAString& text) {
  KOVAValue::KOVAValueType type;
  _default.GetValueType(type);
  const Gk_StringParser parser(text);
  bool word = false;
  switch (type) {
    case KOVAValue::kDouble:
      if (parser.isReal()) return _current.SetValue(parser.getReal());
      break;
    case KOVAValue::kInteger:
      if (parser.isInteger()) return _current.SetValue(parser.getInteger());
      if (KOVAStringToBool(text, word).IsSuccess()) return _current.SetValue(word ? 1 : 0);
      break;
    case KOVAValue::kBool:
      if (KOVAStringToBool(text, word).IsSuccess()) return _current.SetValue(word);
      if (parser.isInteger()) return _current.SetValue(parser.getInteger() != 0);
      break;
    default: return _current.SetValue(text);
  }
  return mismatch(KOVAValue::kString, false);
}

KOVAResult KOVAOption::mismatch(KOVAValue::KOVAValueType given, bool asWarning) const {
  static constexpr char kFormat[] =
      "KOVAOption::SetValue: Specified type (%s) doesn't match stored type (%s) for option '%s'.";
  KOVAValue::KOVAValueType stored;
  _default.GetValueType(stored);
  const Gk_String name(_name);
  if (asWarning) {
    KOVAWarning::Printf(kFormat, nameOf(given), nameOf(stored), name.getText());
  } else {
    KOVAError::Printf(kFormat, nameOf(given), nameOf(stored), name.getText());
  }
  return kErrorEncountered;
}
