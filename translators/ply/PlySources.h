#pragma once

#include "translators/interface/ByteWindow.h"
#include "translators/interface/Report.h"
#include "translators/interface/Text.h"
#include "translators/ply/PlyHeader.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

/// The values behind the header of a PLY file. Both sources have the same functions, which readers
/// call value by value; false is the end of the reading, and `GetFailure` says why.
namespace kova::translators::ply {

/// Why a value could not be had.
struct Failure {
  Place place;
  enum class Kind { kEnd, kUnreadable, kNoNumber, kRange } kind = Kind::kEnd;
  /// As it may stand in a message; for what is there and is wrong.
  std::string value;
};

class AsciiSource {
 public:
  AsciiSource(ByteWindow& window, std::uint64_t line) : _words(window, line) {}

  /// A whole number, whatever the range of the type.
  bool ReadInteger(Type, std::int64_t& value) {
    const std::string_view word = _words.NextWord();
    const char* const first = word.data() + (word.starts_with('+') ? 1 : 0);
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(first, end, value);
    if (stop == end && error == std::errc()) return true;
    return Fail(error == std::errc::result_out_of_range ? Failure::Kind::kRange
                                                        : Failure::Kind::kNoNumber);
  }

  /// A coordinate: within the range of `float`, and a value of that type when it is the type.
  bool ReadReal(Type type, double& value) {
    if (!parseNumber(_words.NextWord(), value)) return Fail(Failure::Kind::kNoNumber);
    if (!(std::fabs(value) <= double{FLT_MAX})) return Fail(Failure::Kind::kRange);
    if (type == Type::kFloat32) value = double{static_cast<float>(value)};
    return true;
  }

  bool Skip(Type, std::uint64_t count) {
    for (; count != 0; --count) {
      if (_words.NextWord().empty()) return Fail(Failure::Kind::kEnd);
    }
    return true;
  }

  Place GetPlace() const { return Place::Line(_words.GetLine()); }
  const Failure& GetFailure() const { return _failure; }

 private:
  bool Fail(Failure::Kind kind) {
    const std::string_view word = _words.GetWord();
    if (word.empty()) kind = Failure::Kind::kEnd;
    if (_words.GetWindow().HasFailed()) kind = Failure::Kind::kUnreadable;
    _failure = {GetPlace(), kind, quote(word.data(), word.size())};
    return false;
  }

  WordScanner _words;
  Failure _failure;
};

class BinarySource {
 public:
  BinarySource(ByteWindow& window, bool isBig)
      : _window(window), _isForeign(isBig != (std::endian::native == std::endian::big)) {}

  bool ReadInteger(Type type, std::int64_t& value) {
    const char* bytes;
    if (!Take(type, bytes)) return false;
    switch (type) {
      case Type::kInt8:
        value = (std::int64_t{Load<std::uint8_t, std::uint8_t>(bytes)} ^ 128) - 128;
        break;
      case Type::kUint8: value = Load<std::uint8_t, std::uint8_t>(bytes); break;
      case Type::kInt16: value = Load<std::int16_t, std::uint16_t>(bytes); break;
      case Type::kUint16: value = Load<std::uint16_t, std::uint16_t>(bytes); break;
      case Type::kInt32: value = Load<std::int32_t, std::uint32_t>(bytes); break;
      default: value = Load<std::uint32_t, std::uint32_t>(bytes); break;
    }
    return true;
  }

  bool ReadReal(Type type, double& value) {
    if (isInteger(type)) {
      std::int64_t whole = 0;
      if (!ReadInteger(type, whole)) return false;
      value = static_cast<double>(whole);
      return true;
    }
    const char* bytes;
    if (!Take(type, bytes)) return false;
    value = type == Type::kFloat32 ? double{Load<float, std::uint32_t>(bytes)}
                                   : Load<double, std::uint64_t>(bytes);
    if (std::fabs(value) <= double{FLT_MAX}) return true;
    char text[32];
    const int count = std::snprintf(text, sizeof text, "%g", value);
    _failure = {GetPlace(), Failure::Kind::kRange, quote(text, static_cast<std::size_t>(count))};
    return false;
  }

  bool Skip(Type type, std::uint64_t count) {
    std::uint64_t bytes = count * getBytes(type);
    _place = _window.GetOffset();
    while (bytes != 0) {
      if (!_window.Require(1)) return FailAtEnd();
      const std::size_t piece =
          static_cast<std::size_t>(std::min<std::uint64_t>(bytes, _window.size()));
      _window.Skip(piece);
      bytes -= piece;
    }
    return true;
  }

  /// Where the last value begins.
  Place GetPlace() const { return Place::Byte(_place); }
  const Failure& GetFailure() const { return _failure; }

 private:
  template <class Value, class Word>
  Value Load(const char* bytes) const {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (sizeof word == 2) word = _isForeign ? __builtin_bswap16(word) : word;
    if constexpr (sizeof word == 4) word = _isForeign ? __builtin_bswap32(word) : word;
    if constexpr (sizeof word == 8) word = _isForeign ? __builtin_bswap64(word) : word;
    return std::bit_cast<Value>(word);
  }

  bool Take(Type type, const char*& bytes) {
    const std::size_t count = getBytes(type);
    _place = _window.GetOffset();
    if (!_window.Require(count)) return FailAtEnd();
    bytes = _window.begin();
    _window.Skip(count);
    return true;
  }

  bool FailAtEnd() {
    _failure = {Place::Byte(_window.GetOffset() + _window.size()),
                _window.HasFailed() ? Failure::Kind::kUnreadable : Failure::Kind::kEnd,
                {}};
    return false;
  }

  ByteWindow& _window;
  bool _isForeign;
  std::uint64_t _place = 0;
  Failure _failure;
};

}  // namespace kova::translators::ply
