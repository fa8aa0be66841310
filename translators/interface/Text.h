#pragma once

#include "kovabase/strings/KOVAString.h"
#include "translators/interface/ByteWindow.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the text forms of mesh formats share: words divided by white space, numbers, and names of
/// unknown encoding.
namespace kova::translators {

/// Blank, tab, line feed, vertical tab, form feed, carriage return.
inline bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// A name without the white space around it: in UTF-8 when it is that, else in Latin-1, which has a
/// character for every byte. Control characters become blanks.
KOVAString decodeText(std::string_view bytes);

/// In UTF-8.
std::string encodeText(const KOVAString& text);

/// The text on one line, for formats that end a name there: control characters become blanks.
std::string encodeLine(const KOVAString& text);

/// Reads a decimal number in plain or exponent form, "inf" or "nan", with a sign or without; the
/// whole word.
/// @param number  receives the nearest double, infinity when it is too large.
/// @return false for what is no number.
bool parseNumber(std::string_view word, double& number);

/// Takes a window apart into words, and counts the lines: line feed, carriage return, or both as
/// that pair, end one.
class WordScanner {
 public:
  /// Of a longer word this many bytes are shown; it is no keyword and no number.
  static constexpr std::size_t kMostWordBytes = 255;

  /// @param line  the line in which the window stands.
  explicit WordScanner(ByteWindow& window, std::uint64_t line = 1) : _window(window), _line(line) {}

  ByteWindow& GetWindow() { return _window; }
  /// The line of the current word, from 1 on.
  std::uint64_t GetLine() const { return _line; }

  /// Makes the next word the current one; it is good until the next call of any function here.
  /// @return the word; empty at the end of the data.
  std::string_view NextWord();
  std::string_view GetWord() const { return _word; }

  /// What is left of the line behind the current word, of at most `mostBytes`; the rest is skipped.
  /// The line end stays.
  std::string RestOfLine(std::size_t mostBytes = static_cast<std::size_t>(-1));

 private:
  bool SkipSpace();
  void StepOverLineEnd(char c);

  ByteWindow& _window;
  std::string_view _word;
  std::uint64_t _line;
  bool _isAfterReturn = false;
};

}  // namespace kova::translators
