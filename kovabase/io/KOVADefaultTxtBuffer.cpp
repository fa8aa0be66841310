#include "kovabase/io/KOVADefaultTxtBuffer.h"

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCharUtil.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>

using namespace KOVAResultCode;

namespace {

constexpr int kNumberBytes = 128;
constexpr char kInvalidLength[] = " Found number with invalid digit length.\n";

bool isBlank(int c) { return c == ' ' || c == '\t'; }
bool isLineEnd(int c) { return c == '\r' || c == '\n'; }
bool isDigit(int c) { return c >= '0' && c <= '9'; }
bool isExponent(int c) { return c == 'e' || c == 'E'; }
bool isOfNumber(int c) { return isDigit(c) || c == '-' || c == '+' || c == '.' || isExponent(c); }

// A leading plus is the one thing that from_chars does not take.
const char* withoutPlus(const char* text) {
  return *text == '+' && text[1] != '-' ? text + 1 : text;
}

// As atoi reads it: what follows the number counts no more, and no number is 0.
bool toInteger(const char* text, long long lowest, long long highest, long long& value) {
  value = 0;
  const char* const begin = withoutPlus(text);
  const auto parsed = std::from_chars(begin, begin + std::strlen(begin), value);
  if (parsed.ec == std::errc::result_out_of_range) return false;
  return value >= lowest && value <= highest;
}

template <class T>
bool toReal(const char* text, T& value) {
  value = 0;
  const char* const begin = withoutPlus(text);
  const auto parsed = std::from_chars(begin, begin + std::strlen(begin), value);
  if (parsed.ec != std::errc::result_out_of_range) return true;
  // Too small is zero, too large is no number.
  double wide = 0.0;
  const bool isWide = std::from_chars(begin, begin + std::strlen(begin), wide).ec == std::errc();
  if (isWide) return std::fabs(wide) < 1.0;
  const char* exponent = begin;
  while (*exponent != '\0' && !isExponent(*exponent)) ++exponent;
  return *exponent != '\0' && exponent[1] == '-';
}

}  // namespace

KOVADefaultTxtBuffer::~KOVADefaultTxtBuffer() = default;

int KOVADefaultTxtBuffer::PeekNextWindow() { return Refill(_refill) ? *_cursor : -1; }

// Appends the characters up to the first for which `isEnd` holds, which stays; moves back to the
// begin when the data cannot be read.
template <class IsEnd>
KOVAResult KOVADefaultTxtBuffer::TakeRun(std::string& bytes, IsEnd isEnd) {
  const long begin = GetOffset();
  while (PeekChar() >= 0) {
    const unsigned char* const stop = std::find_if(_cursor, _end, isEnd);
    bytes.append(_cursor, stop);
    _cursor = stop;
    if (stop != _end) return kSuccess;
  }
  if (_refill.IsFailure()) SetOffset(begin);
  return _refill;
}

// A question mark stands where a number is not known; it is consumed.
bool KOVADefaultTxtBuffer::IsNumberMissing() {
  const int c = PeekChar();
  if (c == '?') ++_cursor;
  return c < 0 || c == '?';
}

KOVAResult KOVADefaultTxtBuffer::ExtractNumberBuffer(int limit, char* destination) {
  if (limit < 2 || destination == nullptr) return kFailure;
  if (!IsBufferValid()) return kNotInitialized;
  const long begin = GetOffset();
  if (PeekChar() < 0) {
    if (_refill.IsFailure()) return _refill;
    KOVAWarningEvent::Fire("%s", kInvalidLength);
    return kFailure;
  }
  int count = 0;
  int previous = 0;
  while (count < limit - 1) {
    const int c = TakeChar();
    if (c < 0 && _refill.IsFailure()) {
      SetOffset(begin);
      return _refill;
    }
    if (c < 0 || isBlank(c)) break;
    if (!isOfNumber(c) && !isLineEnd(c)) {
      const bool givesExponentBack = isExponent(previous);
      if (givesExponentBack && count > 0) --count;
      SetOffset(GetOffset() - (givesExponentBack ? 2 : 1));
      break;
    }
    previous = c;
    if (!isLineEnd(c)) destination[count++] = static_cast<char>(c);
  }
  destination[count] = '\0';
  if (count < 1) {
    KOVAWarningEvent::Fire("%s", kInvalidLength);
    return kFailure;
  }
  if (count < limit - 1) return kSuccess;

  const long behind = GetOffset();
  int next = TakeChar();
  while (next == '\n') next = TakeChar();
  SetOffset(next < 0 && _refill.IsFailure() ? begin : behind);
  if (next < 0 && _refill.IsFailure()) return _refill;
  if (isBlank(next)) return kSuccess;
  KOVAErrorEvent::Fire(" Found number with digit length more than maximum possible length of %d.\n",
                       limit);
  return kFailure;
}

// Most integers are a few digits, a blank behind them and all of it in the window.
bool KOVADefaultTxtBuffer::TakePlainInt(int& value) {
  constexpr int kMostDigits = 18;
  const unsigned char* at = _cursor;
  if (_end - at < kMostDigits + 2) return false;
  const bool isNegative = *at == '-';
  if (isNegative) ++at;
  const unsigned char* const firstDigit = at;
  long long number = 0;
  unsigned digit;
  while ((digit = *at - static_cast<unsigned>('0')) < 10 && at - firstDigit < kMostDigits) {
    number = number * 10 + digit;
    ++at;
  }
  if (at == firstDigit || !isBlank(*at)) return false;
  if (isNegative) number = -number;
  if (number < INT_MIN || number > INT_MAX) return false;
  value = static_cast<int>(number);
  _cursor = at + 1;
  return true;
}

bool KOVADefaultTxtBuffer::TakePlainDouble(double& value) {
  if (_end - _cursor < kNumberBytes) return false;
  const auto* const begin = reinterpret_cast<const char*>(_cursor);
  if (!isDigit(*begin) && *begin != '-' && *begin != '.') return false;
  double number;
  // One character less than the longest token, whose blank stays.
  const auto parsed = std::from_chars(begin, begin + kNumberBytes - 2, number);
  // Words such as "-inf" are numbers to from_chars and end at once for the token.
  const char last = parsed.ptr > begin ? parsed.ptr[-1] : '\0';
  if (parsed.ec != std::errc() || !isBlank(*parsed.ptr)) return false;
  if (!isDigit(last) && last != '.') return false;
  value = number;
  _cursor = reinterpret_cast<const unsigned char*>(parsed.ptr) + 1;
  return true;
}

template <class T, class Convert>
KOVAResult KOVADefaultTxtBuffer::ReadNumber(T& value, Convert convert) {
  if (!IsBufferValid()) return kNotInitialized;
  _refill = kSuccess;
  if (IsNumberMissing()) return _refill;
  char number[kNumberBytes] = {};
  const KOVAResult result = ExtractNumberBuffer(kNumberBytes, number);
  if (result.IsFailure()) return result;
  return convert(number, value) ? kSuccess : kFailure;
}

KOVAResult KOVADefaultTxtBuffer::ReadInt(int& value) {
  if (TakePlainInt(value)) return kSuccess;
  int read = kUnsetInt;
  const KOVAResult result = ReadNumber(read, [](const char* text, int& number) {
    long long wide;
    if (!toInteger(text, INT_MIN, INT_MAX, wide)) return false;
    number = static_cast<int>(wide);
    return true;
  });
  value = read;
  return result;
}

KOVAResult KOVADefaultTxtBuffer::ReadShort(short& value) {
  return ReadNumber(value, [](const char* text, short& number) {
    long long wide;
    if (!toInteger(text, SHRT_MIN, SHRT_MAX, wide)) {
      KOVAWarningEvent::Fire("\n Found short with value out of range.\n");
      return false;
    }
    number = static_cast<short>(wide);
    return true;
  });
}

KOVAResult KOVADefaultTxtBuffer::ReadFloat(float& value) {
  return ReadNumber(value, [](const char* text, float& number) {
    float read;
    if (!toReal(text, read)) return false;
    number = read;
    return true;
  });
}

KOVAResult KOVADefaultTxtBuffer::ReadDouble(double& value) {
  if (TakePlainDouble(value)) return kSuccess;
  return ReadNumber(value, [](const char* text, double& number) {
    double read;
    if (!toReal(text, read)) return false;
    number = read;
    return true;
  });
}

KOVAResult KOVADefaultTxtBuffer::ReadULngInt(unsigned long& value) {
  const long begin = GetOffset();
  const KOVAResult skipped = SkipChars(" \t\n\r");
  if (skipped.IsFailure()) return skipped;
  const KOVAResult result = ReadNumber(value, [](const char* text, unsigned long& number) {
    long long wide;
    if (!toInteger(text, INT_MIN, INT_MAX, wide)) return false;
    number = static_cast<unsigned long>(wide);
    return true;
  });
  if (_refill.IsFailure()) SetOffset(begin);
  return result;
}

KOVAResult KOVADefaultTxtBuffer::ReadInts(int* values, int count, int* done) {
  int read = 0;
  KOVAResult result = values == nullptr || count < 0 ? kFailure : kSuccess;
  while (result.IsSuccess() && read < count) {
    result = ReadInt(values[read]);
    if (result.IsSuccess()) ++read;
  }
  if (done != nullptr) *done = read;
  return result;
}

KOVAResult KOVADefaultTxtBuffer::ReadDoubles(double* values, int count, int* done) {
  int read = 0;
  KOVAResult result = values == nullptr || count < 0 ? kFailure : kSuccess;
  while (result.IsSuccess() && read < count) {
    result = ReadDouble(values[read]);
    if (result.IsSuccess()) ++read;
  }
  if (done != nullptr) *done = read;
  return result;
}

KOVAResult KOVADefaultTxtBuffer::ReadLine(KOVAString& line) {
  if (!IsBufferValid()) return kNotInitialized;
  const long begin = GetOffset();
  std::string bytes;
  const KOVAResult result = TakeRun(bytes, isLineEnd);
  if (result.IsFailure()) return result;
  if (GetOffset() == GetSize() && bytes.empty()) {
    KOVAWarningEvent::Fire("\n Found line with invalid length.\n");
    return kFailure;
  }
  if (bytes.size() > INT_MAX) {
    SetOffset(begin);
    KOVAWarningEvent::Fire("\n Found line with invalid length.\n");
    return kFailure;
  }
  if (TakeChar() == '\r' && PeekChar() == '\n') ++_cursor;
  line = KOVAString::fromBytes(bytes.data(), static_cast<int>(bytes.size()), "US-ASCII");
  return kSuccess;
}

KOVAResult KOVADefaultTxtBuffer::ReadAsciiString(int count, KOVAString& text) {
  if (!IsBufferValid()) return kNotInitialized;
  if (count < 0 || count > GetSize() - GetOffset()) return kFailure;
  std::string bytes(static_cast<std::size_t>(count), '\0');
  const KOVAResult result = ReadBytes(bytes.data(), count);
  if (result.IsSuccess()) text = KOVAString::fromBytes(bytes.data(), count, "US-ASCII");
  return result;
}

KOVAResult KOVADefaultTxtBuffer::ReadWord(KOVAString& word) {
  if (!IsBufferValid()) return kNotInitialized;
  const long begin = GetOffset();
  KOVAResult result = SkipChars(" \t\n\r");
  if (result.IsFailure()) return result;
  std::string bytes;
  result = TakeRun(bytes, [](int c) { return isBlank(c) || isLineEnd(c); });
  if (result.IsSuccess() && (bytes.empty() || bytes.size() > INT_MAX)) result = kFailure;
  if (result.IsFailure()) {
    if (!bytes.empty() || _refill.IsFailure()) SetOffset(begin);
    return result;
  }
  word = KOVAString::fromBytes(bytes.data(), static_cast<int>(bytes.size()), "US-ASCII");
  return kSuccess;
}

KOVAResult KOVADefaultTxtBuffer::SkipChars(const char* characters) {
  if (!IsBufferValid()) return kNotInitialized;
  if (characters == nullptr) return kSuccess;
  const long begin = GetOffset();
  _refill = kSuccess;
  int c;
  while ((c = PeekChar()) > 0 && std::strchr(characters, c) != nullptr) ++_cursor;
  if (_refill.IsFailure()) SetOffset(begin);
  return _refill;
}

KOVAResult KOVADefaultTxtBuffer::WriteInt(int value) {
  char text[16];
  char* const end = std::to_chars(text, text + sizeof text - 1, value).ptr;
  *end = ' ';
  return WriteBytes(text, static_cast<int>(end + 1 - text));
}

KOVAResult KOVADefaultTxtBuffer::WriteULngInt(unsigned long value) {
  const long number = static_cast<long>(value);
  if (number < INT_MIN || number > INT_MAX) return kInvalidArgument;
  return WriteInt(static_cast<int>(number));
}

KOVAResult KOVADefaultTxtBuffer::WriteFloat(float value) {
  if (!std::isfinite(value)) return kInvalidArgument;
  char text[64];
  char* const end = std::to_chars(text, text + sizeof text - 1, value).ptr;
  *end = ' ';
  return WriteBytes(text, static_cast<int>(end + 1 - text));
}

KOVAResult KOVADefaultTxtBuffer::WriteDouble(double value) {
  if (!std::isfinite(value)) return kInvalidArgument;
  char text[64];
  char* const end = std::to_chars(text, text + sizeof text - 1, value).ptr;
  *end = ' ';
  return WriteBytes(text, static_cast<int>(end + 1 - text));
}

KOVAResult KOVADefaultTxtBuffer::WriteAsciiString(const KOVAString& text) {
  const KOVAStringAsciiCharUtil ascii(text, true, '_');
  if (ascii.GetBuffer() == nullptr) return kUnexpectedError;
  return WriteBytes(ascii.GetBuffer(), static_cast<int>(std::strlen(ascii.GetBuffer())));
}

KOVAResult KOVADefaultTxtBuffer::WriteLine(const KOVAString& line) {
  const KOVAResult result = WriteAsciiString(line);
  return result.IsSuccess() ? WriteBytes("\n", 1) : result;
}
