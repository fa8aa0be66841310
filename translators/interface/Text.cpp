#include "translators/interface/Text.h"

#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/strings/KOVAFloatUtil.h"

#include <algorithm>
#include <charconv>
#include <climits>

namespace kova::translators {

namespace {

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

// In ASCII, UTF-8 and Latin-1 alike.
bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

}  // namespace

KOVAString decodeText(std::string_view bytes) {
  std::string name(bytes.substr(0, INT_MAX));
  std::replace_if(name.begin(), name.end(), isControl, ' ');
  const std::size_t first = name.find_first_not_of(' ');
  if (first == std::string::npos) return KOVAString();
  const int count = static_cast<int>(name.find_last_not_of(' ') + 1 - first);
  KOVAString text = KOVAString::fromBytes(name.data() + first, count, "UTF-8");
  constexpr unsigned short kReplacementCharacter = 0xFFFD;
  if (text.indexOf(kReplacementCharacter) < 0) return text;
  return KOVAString::fromBytes(name.data() + first, count, "ISO-8859-1");
}

std::string encodeText(const KOVAString& text) {
  KOVAStringOutputStream bytes;
  bytes.Write(text);
  return {bytes.GetBytes(), bytes.GetByteCount()};
}

std::string encodeLine(const KOVAString& text) {
  std::string line = encodeText(text);
  std::replace_if(line.begin(), line.end(), isControl, ' ');
  return line;
}

bool parseNumber(std::string_view word, double& number) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument) return false;
  if (error == std::errc::result_out_of_range) {
    // Too large or too small; both are known by the nearest double.
    const std::string copy(word);
    const char* ignored = nullptr;
    number = KOVAFloatUtil::FromText(copy.c_str(), ignored);
  }
  return true;
}

std::string_view WordScanner::NextWord() {
  _word = {};
  if (!SkipSpace()) return _word;
  _isAfterReturn = false;
  _window.Require(kMostWordBytes + 1);
  const char* const first = _window.begin();
  const char* last = first;
  const std::size_t most = std::min(_window.size(), kMostWordBytes);
  while (last != first + most && !isSpace(*last)) ++last;
  _word = {first, static_cast<std::size_t>(last - first)};
  _window.Skip(_word.size());
  return _word;
}

std::string WordScanner::RestOfLine(std::size_t mostBytes) {
  std::string rest;
  while (_window.Require(1)) {
    const char* at = _window.begin();
    while (at != _window.end() && !isLineEnd(*at)) ++at;
    const std::size_t count = static_cast<std::size_t>(at - _window.begin());
    rest.append(_window.begin(), std::min(count, mostBytes - rest.size()));
    const bool isComplete = at != _window.end();
    _window.Skip(count);
    if (isComplete) break;
  }
  return rest;
}

bool WordScanner::SkipSpace() {
  while (_window.Require(1)) {
    const char* at = _window.begin();
    while (at != _window.end() && isSpace(*at)) StepOverLineEnd(*at++);
    const bool isWord = at != _window.end();
    _window.Skip(static_cast<std::size_t>(at - _window.begin()));
    if (isWord) return true;
  }
  return false;
}

void WordScanner::StepOverLineEnd(char c) {
  if (c == '\n') {
    if (!_isAfterReturn) ++_line;
  } else if (c == '\r') {
    ++_line;
  }
  _isAfterReturn = c == '\r';
}

}  // namespace kova::translators
