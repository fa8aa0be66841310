#include "kovabase/options/KOVAValue.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/strings/KOVAStringConversions.h"

#include <limits>

using namespace KOVAResultCode;

namespace {

// The text is one of the two bool words, or a number of the asked type.
template <class T, KOVAResult (&FromText)(const KOVAString&, T&)>
KOVAResult numberFromText(const KOVAString& text, T& value) {
  bool word = false;
  if (KOVAStringToBool(text, word).IsSuccess()) {
    value = static_cast<T>(word);
    return kSuccess;
  }
  return FromText(text, value);
}

}  // namespace

const char* const KOVAValue::KOVAValueTypeNames[5] = {"unknown", "double", "int", "bool", "string"};

KOVAValue::KOVAValue() noexcept : _number{0.0}, _type(kUnknown) {}

KOVAValue::KOVAValue(const KOVAString& value) : _text(value), _number{0.0}, _type(kString) {}

KOVAValue::KOVAValue(int value) noexcept : _number{0.0}, _type(kInteger) {
  _number.integer = value;
}

KOVAValue::KOVAValue(double value) noexcept : _number{value}, _type(kDouble) {}

KOVAValue::KOVAValue(bool value) noexcept : _number{0.0}, _type(kBool) { _number.boolean = value; }

KOVAValue::KOVAValue(const char* value) : _text(value), _number{0.0}, _type(kString) {
  const int bytes = _text.getConvertToMBCSSize(nullptr);
  if (bytes < 1) return;
  _narrow = static_cast<char*>(kova::internal::allocate(static_cast<std::size_t>(bytes)));
  _text.convertToMBCS(_narrow, bytes, nullptr, true, '_');
}

KOVAValue::KOVAValue(const KOVAValue& other)
    : _text(other._text), _number(other._number), _type(other._type) {}

KOVAValue& KOVAValue::operator=(const KOVAValue& other) {
  if (this == &other) return *this;
  _text = other._text;
  _number = other._number;
  _type = other._type;
  releaseCaches();
  return *this;
}

KOVAValue::~KOVAValue() { releaseCaches(); }

KOVAResult KOVAValue::SetValue(const KOVAString& value) {
  _text = value;
  _type = kString;
  return kSuccess;
}

KOVAResult KOVAValue::SetValue(const char* value) { return SetValue(KOVAString(value)); }

KOVAResult KOVAValue::SetValue(int value) noexcept {
  _text.clear();
  _number.integer = value;
  _type = kInteger;
  return kSuccess;
}

KOVAResult KOVAValue::SetValue(double value) noexcept {
  _text.clear();
  _number.real = value;
  _type = kDouble;
  return kSuccess;
}

KOVAResult KOVAValue::SetValue(bool value) noexcept {
  _text.clear();
  _number.boolean = value;
  _type = kBool;
  return kSuccess;
}

KOVAResult KOVAValue::GetValue(KOVAString& value) const {
  switch (_type) {
    case kDouble: value = KOVAStringFromDouble(_number.real).replace(',', '.'); return kSuccess;
    case kInteger: value = KOVAStringFromInteger(_number.integer); return kSuccess;
    case kBool: value = KOVAStringFromBool(_number.boolean); return kSuccess;
    case kString: value = _text; return kSuccess;
    default: return kInvalidArgument;
  }
}

bool KOVAValue::operator==(const KOVAValue& other) const noexcept {
  if (_type != other._type) return false;
  switch (_type) {
    case kDouble: return _number.real == other._number.real;
    case kInteger: return _number.integer == other._number.integer;
    case kBool: return _number.boolean == other._number.boolean;
    case kString: return _text == other._text;
    default: return false;
  }
}

KOVAValue::operator const char*() const {
  KOVAString text;
  if (_narrow == nullptr && GetValue(text).IsSuccess()) KOVAStringToChars(text, _narrow);
  return _narrow;
}

KOVAValue::operator const unsigned short*() const {
  KOVAString text;
  if (_wide == nullptr && GetValue(text).IsSuccess()) KOVAStringToWideChars(text, _wide);
  return _wide;
}

unsigned KOVAValue::GetHashCode() const noexcept {
  switch (_type) {
    case kDouble: {
      const double truncatable = std::numeric_limits<int>::max() + 1.0;
      const bool fits = _number.real > -truncatable - 1.0 && _number.real < truncatable;
      return fits ? GetHashCode(static_cast<int>(_number.real)) : 0;
    }
    case kInteger: return GetHashCode(_number.integer);
    case kBool: return GetHashCode(_number.boolean ? 1 : 0);
    case kString: return _text.hashCode();
    default: return 0;
  }
}

unsigned KOVAValue::GetHashCode(int value) noexcept {
  // The right shifts carry the sign along.
  const auto shifted = [](unsigned word, int bits) {
    return static_cast<unsigned>(static_cast<int>(word) >> bits);
  };
  unsigned hash = static_cast<unsigned>(value);
  hash += ~(hash << 15);
  hash ^= shifted(hash, 10);
  hash *= 9;
  hash ^= shifted(hash, 6);
  hash += ~(hash << 11);
  hash ^= shifted(hash, 16);
  return hash;
}

void KOVAValue::Dump(KOVAStreamFormatter& formatter) const {
  switch (_type) {
    case kDouble: formatter << _number.real; break;
    case kInteger: formatter << _number.integer; break;
    case kBool: formatter << (_number.boolean ? 1 : 0); break;
    case kString: formatter << _text; break;
    default: break;
  }
}

KOVAResult KOVAValue::convertTo(int& value) const {
  switch (_type) {
    case kDouble: value = _number.real != 0.0 ? 1 : 0; return kSuccess;  // a truth test; kept
    case kInteger: value = _number.integer; return kSuccess;
    case kBool: value = _number.boolean ? 1 : 0; return kSuccess;
    case kString: return numberFromText<int, KOVAStringToInteger>(_text, value);
    default: return kInvalidArgument;
  }
}

KOVAResult KOVAValue::convertTo(double& value) const {
  switch (_type) {
    case kDouble: value = _number.real; return kSuccess;
    case kInteger: value = _number.integer; return kSuccess;
    case kBool: value = _number.boolean ? 1.0 : 0.0; return kSuccess;
    case kString: return numberFromText<double, KOVAStringToDouble>(_text, value);
    default: return kInvalidArgument;
  }
}

KOVAResult KOVAValue::convertTo(bool& value) const {
  switch (_type) {
    case kDouble: value = _number.real != 0.0; return kSuccess;
    case kInteger: value = _number.integer != 0; return kSuccess;
    case kBool: value = _number.boolean; return kSuccess;
    case kString: break;
    default: return kInvalidArgument;
  }
  if (KOVAStringToBool(_text, value).IsSuccess()) return kSuccess;
  int integer = 0;
  const KOVAResult result = KOVAStringToInteger(_text, integer);
  if (result.IsSuccess()) value = integer != 0;
  return result;
}

void KOVAValue::releaseCaches() noexcept {
  if (_narrow != nullptr) KOVAReleaseChars(_narrow);
  if (_wide != nullptr) KOVAReleaseWideChars(_wide);
}
