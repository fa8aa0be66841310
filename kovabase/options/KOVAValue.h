#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

class KOVAStreamFormatter;

/// A tagged value: a double, an integer, a bool, a text or nothing, converted on request.
///
/// The narrow and wide texts that the pointer conversions hand out are made on first request and
/// kept; only assignment drops them, so that setting another value leaves an old text in place.
/// One value belongs to one thread at a time. It survives a move of its bytes.
class KOVABASE_API KOVAValue {
 public:
  /// What a value is; the numbers are fixed.
  enum KOVAValueType : int {
    kUnknown = 0,
    kDouble = 1,
    kInteger = 2,
    kBool = 3,
    kString = 4,
  };

  /// "unknown", "double", "int", "bool", "string", indexed by type.
  static const char* const KOVAValueTypeNames[5];

  /// A value of no type.
  KOVAValue() noexcept;
  KOVAValue(const KOVAString& value);
  KOVAValue(int value) noexcept;
  KOVAValue(double value) noexcept;
  KOVAValue(bool value) noexcept;
  /// A text in the default code page; null is the empty text. The narrow text is made at once, '_'
  /// standing for what the code page lacks.
  KOVAValue(const char* value);
  KOVAValue(const KOVAValue& other);
  KOVAValue& operator=(const KOVAValue& other);
  ~KOVAValue();

  /// Store the value and its type. They always succeed.
  KOVAResult SetValue(const KOVAString& value);
  KOVAResult SetValue(const char* value);
  KOVAResult SetValue(int value) noexcept;
  KOVAResult SetValue(double value) noexcept;
  KOVAResult SetValue(bool value) noexcept;

  /// Read the value as the asked type. A double read as an integer or a bool is a truth test, not a
  /// truncation: 0.3 gives 1. A text is first tried as a bool word, then as a number. A number's
  /// text has a decimal point whatever the locale.
  /// @return InvalidArgument when there is no value; the text conversion's failure otherwise. The
  ///   output is then unchanged.
  KOVAResult GetValue(int& value) const {
    if (_type == kInteger) {
      value = _number.integer;
      return KOVAResultCode::kSuccess;
    }
    return convertTo(value);
  }
  KOVAResult GetValue(double& value) const {
    if (_type == kDouble) {
      value = _number.real;
      return KOVAResultCode::kSuccess;
    }
    return convertTo(value);
  }
  KOVAResult GetValue(bool& value) const {
    if (_type == kBool) {
      value = _number.boolean;
      return KOVAResultCode::kSuccess;
    }
    return convertTo(value);
  }
  KOVAResult GetValue(KOVAString& value) const;

  /// @return Success.
  KOVAResult GetValueType(KOVAValueType& type) const noexcept {
    type = _type;
    return KOVAResultCode::kSuccess;
  }
  bool IsInteger() const noexcept { return _type == kInteger; }
  bool IsValid() const noexcept { return _type != kUnknown; }

  /// False for different types, and for two values of no type.
  bool operator==(const KOVAValue& other) const noexcept;

  /// The value as zero-terminated text in the default code page, respectively in UTF-16. Owned by
  /// this value and valid until it is assigned or destroyed; null when there is no value.
  operator const char*() const;
  operator const unsigned short*() const;

  /// Equal values have equal hashes. A NaN or a double outside the integers hashes as 0.
  unsigned GetHashCode() const noexcept;
  /// The integer mix alone.
  static unsigned GetHashCode(int value) noexcept;

  /// Writes the value; a bool as 1 or 0, nothing for no type.
  void Dump(KOVAStreamFormatter& formatter) const;

 private:
  union Number {
    double real;
    int integer;
    bool boolean;
  };

  KOVAResult convertTo(int& value) const;
  KOVAResult convertTo(double& value) const;
  KOVAResult convertTo(bool& value) const;
  void releaseCaches() noexcept;

  KOVAString _text;
  mutable char* _narrow = nullptr;
  mutable unsigned short* _wide = nullptr;
  Number _number;
  KOVAValueType _type;
};
