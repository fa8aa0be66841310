#include "translators/step/Syntax.h"

#include "translators/interface/Report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>
#include <utility>

namespace kova::translators::step {

namespace {

// Where in a list of parameters a character stands. The last ones are no states but what is to be
// done.
enum State : std::uint8_t {
  kValue,
  kFirstValue,
  kAfterValue,
  kReferenceSign,
  kReference,
  kSign,
  kInteger,
  kPoint,
  kFraction,
  kExponentLetter,
  kExponentSign,
  kExponent,
  kString,
  kQuote,
  kEnumeration,
  kBinary,
  kWord,
  kAfterWord,
  kComplex,
  kStates,

  kOpen = kStates,
  kClose,
  kComment,
  kError,
};

constexpr bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }
constexpr bool isLetter(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
constexpr bool isSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr std::uint8_t getBehindValue(unsigned char c) {
  if (isSpace(c)) return kAfterValue;
  if (c == ',') return kValue;
  if (c == ')') return kClose;
  if (c == '/') return kComment;
  return kError;
}

constexpr std::uint8_t getAtValue(unsigned char c) {
  if (isDigit(c)) return kInteger;
  if (isLetter(c) || c == '!') return kWord;
  switch (c) {
    case '#': return kReferenceSign;
    case '+':
    case '-': return kSign;
    case '.': return kPoint;
    case '\'': return kString;
    case '"': return kBinary;
    case '$':
    case '*': return kAfterValue;
    case '(': return kOpen;
    case '/': return kComment;
    default: return kError;
  }
}

// What comes of `c` in `state`. Reals without digits before the point and lower-case letters are
// let through, which some systems write.
constexpr std::uint8_t getNext(std::uint8_t state, unsigned char c) {
  switch (state) {
    case kValue: return isSpace(c) ? std::uint8_t{kValue} : getAtValue(c);
    case kFirstValue:
      if (isSpace(c)) return kFirstValue;
      return c == ')' ? std::uint8_t{kClose} : getAtValue(c);
    case kAfterValue: return getBehindValue(c);
    case kReferenceSign: return isDigit(c) ? kReference : kError;
    case kReference: return isDigit(c) ? std::uint8_t{kReference} : getBehindValue(c);
    case kSign: return isDigit(c) ? kInteger : c == '.' ? kPoint : kError;
    case kInteger:
      if (isDigit(c)) return kInteger;
      if (c == '.') return kFraction;
      return c == 'E' || c == 'e' ? std::uint8_t{kExponentLetter} : getBehindValue(c);
    case kPoint: return isDigit(c) ? kFraction : isLetter(c) ? kEnumeration : kError;
    case kFraction:
      if (isDigit(c)) return kFraction;
      return c == 'E' || c == 'e' ? std::uint8_t{kExponentLetter} : getBehindValue(c);
    case kExponentLetter:
      return isDigit(c) ? kExponent : c == '+' || c == '-' ? kExponentSign : kError;
    case kExponentSign: return isDigit(c) ? kExponent : kError;
    case kExponent: return isDigit(c) ? std::uint8_t{kExponent} : getBehindValue(c);
    case kString: return c == '\'' ? kQuote : kString;
    case kQuote: return c == '\'' ? std::uint8_t{kString} : getBehindValue(c);
    case kEnumeration:
      return isLetter(c) || isDigit(c) ? kEnumeration : c == '.' ? kAfterValue : kError;
    case kBinary:
      if (c == '"') return kAfterValue;
      return isDigit(c) || (c >= 'A' && c <= 'F') || isSpace(c) ? kBinary : kError;
    case kWord:
      if (isLetter(c) || isDigit(c) || c == '-') return kWord;
      [[fallthrough]];
    case kAfterWord:
      if (isSpace(c)) return kAfterWord;
      return c == '(' ? kOpen : c == '/' ? kComment : kError;
    case kComplex:
      if (isSpace(c)) return kComplex;
      if (isLetter(c) || c == '!') return kWord;
      return c == ')' ? kClose : c == '/' ? kComment : kError;
    default: return kError;
  }
}

constexpr auto makeTable() {
  std::array<std::array<std::uint8_t, 256>, kStates> table{};
  for (std::uint8_t state = 0; state < kStates; ++state) {
    for (unsigned c = 0; c < 256; ++c) {
      table[state][c] = getNext(state, static_cast<unsigned char>(c));
    }
  }
  return table;
}

constexpr auto kTable = makeTable();

const char* describeExpected(std::uint8_t state) {
  switch (state) {
    case kValue:
    case kFirstValue: return "a parameter";
    case kReferenceSign: return "the digits of an id";
    case kSign:
    case kExponentLetter:
    case kExponentSign: return "a digit";
    case kPoint:
    case kEnumeration: return "the rest of an enumeration";
    case kBinary: return "a hexadecimal digit";
    case kWord:
    case kAfterWord: return "'('";
    case kComplex: return "a keyword";
    default: return "',' or ')'";
  }
}

// Behind the comment that begins at `at`; null when it has no end.
const char* skipComment(const char* at, const char* end) {
  if (end - at < 2 || at[1] != '*') return nullptr;
  for (at += 2; end - at >= 2;) {
    at = static_cast<const char*>(std::memchr(at, '*', static_cast<std::size_t>(end - at - 1)));
    if (at == nullptr) return nullptr;
    if (at[1] == '/') return at + 2;
    ++at;
  }
  return nullptr;
}

}  // namespace

bool Scanner::Fail(std::string reason) {
  if (_reason.empty()) _reason = std::move(reason);
  return false;
}

bool Scanner::SkipSpace() {
  while (_at != _end) {
    if (isSpace(static_cast<unsigned char>(*_at))) {
      ++_at;
    } else if (*_at == '/') {
      const char* const behind = skipComment(_at, _end);
      if (behind == nullptr) return Fail("a comment that has no end, or a stray '/'");
      _at = behind;
    } else {
      break;
    }
  }
  return true;
}

bool Scanner::Accept(char c) {
  if (_at == _end || *_at != c) return false;
  ++_at;
  return SkipSpace();
}

bool Scanner::Expect(char c) {
  if (Accept(c)) return true;
  const std::string wanted = std::string("'") + c + "'";
  if (_at == _end) return Fail("the file ends where " + wanted + " is expected");
  return Fail(quote(_at, 1) + " stands where " + wanted + " is expected");
}

bool Scanner::TakeWord(std::string_view& word) {
  const char* const begin = _at;
  // A digit or '-' begins none, only goes on with one.
  if (_at != _end && (*_at == '!' || isLetter(static_cast<unsigned char>(*_at)))) {
    do {
      ++_at;
    } while (_at != _end && (isLetter(static_cast<unsigned char>(*_at)) ||
                             isDigit(static_cast<unsigned char>(*_at)) || *_at == '-'));
  }
  word = {begin, static_cast<std::size_t>(_at - begin)};
  return SkipSpace();
}

bool Scanner::TakeId(std::uint64_t& id) {
  ++_at;
  const auto [behind, error] = std::from_chars(_at, _end, id);
  if (error == std::errc::result_out_of_range) {
    return Fail(
        "the id #" +
        std::string(_at, std::min<std::size_t>(static_cast<std::size_t>(behind - _at), 40)) +
        " is too large");
  }
  if (error != std::errc()) return Fail("'#' without the digits of an id");
  _at = behind;
  return SkipSpace();
}

bool Scanner::SkipParameters(bool isComplex) {
  const char* at = _at + 1;
  std::uint64_t depth = 1;
  std::uint8_t state = isComplex ? kComplex : kFirstValue;
  while (at != _end) {
    const std::uint8_t next = kTable[state][static_cast<unsigned char>(*at)];
    if (next < kStates) [[likely]] {
      state = next;
      ++at;
      continue;
    }
    switch (next) {
      case kOpen:
        ++depth;
        state = kFirstValue;
        ++at;
        break;
      case kClose:
        ++at;
        if (--depth == 0) {
          _at = at;
          return SkipSpace();
        }
        state = isComplex && depth == 1 ? kComplex : kAfterValue;
        break;
      case kComment: {
        const char* const behind = skipComment(at, _end);
        if (behind == nullptr) {
          _at = at;
          return Fail("a comment that has no end, or a stray '/'");
        }
        // As a blank would.
        state = kTable[state][static_cast<unsigned char>(' ')];
        at = behind;
        break;
      }
      default:
        _at = at;
        return Fail(quote(at, 1) + " stands where " + describeExpected(state) + " is expected");
    }
  }
  // The place where the record begins tells more than the end of the file.
  return Fail(state == kString ? "the file ends within a string of the record that begins here"
                               : "the file ends within the record that begins here");
}

bool Scanner::SkipSection() {
  while (SkipSpace()) {
    std::string_view word;
    if (!TakeWord(word)) return false;
    if (word == "ENDSEC") return Expect(';');
    bool isQuoted = false;
    while (_at != _end && (isQuoted || *_at != ';')) {
      isQuoted ^= *_at == '\'';
      ++_at;
    }
    if (_at == _end) return Fail("the file ends where 'ENDSEC;' is expected");
    ++_at;
  }
  return false;
}

Parameters::Kind Parameters::GetKind() const {
  switch (*_at) {
    case ')': return Kind::kEnd;
    case '#': return Kind::kReference;
    case '\'': return Kind::kString;
    case '"': return Kind::kBinary;
    case '$': return Kind::kUnset;
    case '*': return Kind::kDerived;
    case '(': return Kind::kList;
    case '.':
      return isDigit(static_cast<unsigned char>(_at[1])) ? Kind::kNumber : Kind::kEnumeration;
    case '+':
    case '-': return Kind::kNumber;
    default: return isDigit(static_cast<unsigned char>(*_at)) ? Kind::kNumber : Kind::kTyped;
  }
}

void Parameters::SkipSpace() {
  for (;;) {
    if (isSpace(static_cast<unsigned char>(*_at))) {
      ++_at;
    } else if (*_at == '/') {
      for (_at += 2; _at[0] != '*' || _at[1] != '/';) ++_at;
      _at += 2;
    } else {
      return;
    }
  }
}

void Parameters::SkipToNext() {
  SkipSpace();
  if (*_at != ',') return;
  ++_at;
  SkipSpace();
}

bool Parameters::TakeReference(std::uint64_t& id) {
  if (*_at != '#') return false;
  std::uint64_t value = 0;
  bool isTooLarge = false;
  for (++_at; isDigit(static_cast<unsigned char>(*_at)); ++_at) {
    const std::uint64_t digit = static_cast<std::uint64_t>(*_at - '0');
    isTooLarge |= __builtin_mul_overflow(value, std::uint64_t{10}, &value) ||
                  __builtin_add_overflow(value, digit, &value);
  }
  id = isTooLarge ? std::numeric_limits<std::uint64_t>::max() : value;
  SkipToNext();
  return true;
}

bool Parameters::TakeNumber(double& number) {
  if (GetKind() == Kind::kTyped) {
    Parameters inside = *this;
    std::string_view word;
    inside.OpenTyped(word);
    if (inside.GetKind() != Kind::kNumber || !inside.TakeNumber(number)) return false;
    inside.CloseList();
    *this = inside;
    return true;
  }
  if (GetKind() != Kind::kNumber) return false;
  const char* const begin = *_at == '+' ? _at + 1 : _at;
  const char* end = begin;
  // The syntax is right, so that these are all of its characters.
  while (isDigit(static_cast<unsigned char>(*end)) || *end == '.' || *end == '-' || *end == '+' ||
         *end == 'E' || *end == 'e') {
    ++end;
  }
  const auto [behind, error] = std::from_chars(begin, end, number);
  if (error == std::errc::result_out_of_range) {
    // Too large or too small: the exponent's sign says which, and without one it is the length.
    const std::string_view text(begin, static_cast<std::size_t>(end - begin));
    const std::size_t exponent = text.find_first_of("eE");
    const bool isSmall = exponent != std::string_view::npos && text[exponent + 1] == '-';
    number = isSmall ? 0.0 : std::numeric_limits<double>::infinity();
  } else if (error != std::errc()) {
    return false;
  }
  static_cast<void>(behind);
  _at = end;
  SkipToNext();
  return true;
}

bool Parameters::TakeInteger(std::int64_t& number) {
  if (GetKind() != Kind::kNumber) return false;
  const char* const begin = *_at == '+' ? _at + 1 : _at;
  const char* end = begin + (*begin == '-' ? 1 : 0);
  while (isDigit(static_cast<unsigned char>(*end))) ++end;
  if (*end == '.' || *end == 'E' || *end == 'e') return false;
  if (std::from_chars(begin, end, number).ec != std::errc()) return false;
  _at = end;
  SkipToNext();
  return true;
}

bool Parameters::TakeEnumeration(std::string_view& word) {
  if (GetKind() != Kind::kEnumeration) return false;
  const char* const begin = ++_at;
  while (*_at != '.') ++_at;
  word = {begin, static_cast<std::size_t>(_at - begin)};
  ++_at;
  SkipToNext();
  return true;
}

bool Parameters::TakeString(std::string_view& raw) {
  if (*_at != '\'') return false;
  const char* const begin = ++_at;
  while (*_at != '\'' || _at[1] == '\'') _at += *_at == '\'' ? 2 : 1;
  raw = {begin, static_cast<std::size_t>(_at - begin)};
  ++_at;
  SkipToNext();
  return true;
}

bool Parameters::OpenList() {
  if (*_at != '(') return false;
  ++_at;
  SkipSpace();
  return true;
}

bool Parameters::OpenTyped(std::string_view& word) { return TakeTypeName(word) && OpenList(); }

bool Parameters::TakeTypeName(std::string_view& word) {
  if (GetKind() != Kind::kTyped) return false;
  const char* const begin = _at;
  while (isLetter(static_cast<unsigned char>(*_at)) || isDigit(static_cast<unsigned char>(*_at)) ||
         *_at == '-' || *_at == '!') {
    ++_at;
  }
  word = {begin, static_cast<std::size_t>(_at - begin)};
  SkipSpace();
  return true;
}

void Parameters::CloseList() {
  while (*_at != ')') Skip();
  ++_at;
  SkipToNext();
}

void Parameters::Skip() {
  std::uint64_t depth = 0;
  while (*_at != ')' || depth > 0) {
    switch (*_at) {
      case '\'':
        for (++_at; *_at != '\'' || _at[1] == '\'';) _at += *_at == '\'' ? 2 : 1;
        break;
      case '/':
        for (_at += 2; _at[0] != '*' || _at[1] != '/';) ++_at;
        ++_at;
        break;
      case '(': ++depth; break;
      case ')': --depth; break;
      case ',':
        if (depth == 0) {
          ++_at;
          SkipSpace();
          return;
        }
        break;
      default: break;
    }
    ++_at;
  }
}

bool ComplexParts::Next(std::string_view& word, const char*& list) {
  if (_parameters.IsAtEnd()) return false;
  if (!_parameters.TakeTypeName(word)) return false;
  list = _parameters.GetPosition();
  _parameters.OpenList();
  _parameters.CloseList();
  return true;
}

}  // namespace kova::translators::step
