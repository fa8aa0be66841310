#include "kovabase/strings/Gk_ROString.h"

#include "kovabase/foundation/internal/Heap.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

namespace {

std::string_view view(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

std::string_view view(const Gk_ROString& string) {
  return {string.getText(), static_cast<std::size_t>(string.length())};
}

unsigned char lowerCase(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

constexpr int kMaxLength = std::numeric_limits<int>::max() - 1;

bool isSeparator(char c) { return c == '/' || c == '\\'; }

int position(std::size_t found) {
  return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

// The end of the character at `at`: a UTF-8 lead byte takes its trailing bytes along.
std::size_t endOfCharacter(std::string_view text, std::size_t at) {
  const bool isLead = static_cast<unsigned char>(text[at]) >= 0xC0;
  ++at;
  while (isLead && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) ++at;
  return at;
}

bool matchesCharacter(std::string_view pattern, std::string_view character, bool ignoreCase) {
  if (isSeparator(pattern[0])) return isSeparator(character[0]);
  if (pattern == character) return true;
  return ignoreCase && pattern.size() == 1 && lowerCase(pattern[0]) == lowerCase(character[0]);
}

}  // namespace

Gk_ROString::Gk_ROString(const char* text) {
  const std::string_view source = view(text);
  if (source.size() > kMaxLength) kova::internal::throwAllocException();
  replaceRange(0, 0, source.data(), static_cast<int>(source.size()));
}

Gk_ROString::Gk_ROString(const char* text, int length) {
  if (text != nullptr) replaceRange(0, 0, text, std::max(length, 0));
}

Gk_ROString::Gk_ROString(const Gk_ROString& other) {
  replaceRange(0, 0, other._text, other._length);
}

Gk_ROString::Gk_ROString(Gk_ROString&& other) noexcept
    : _text(std::exchange(other._text, nullptr)),
      _length(std::exchange(other._length, 0)),
      _capacity(std::exchange(other._capacity, 0)) {}

Gk_ROString& Gk_ROString::operator=(const Gk_ROString& other) {
  if (this != &other) replaceRange(0, _length, other._text, other._length);
  return *this;
}

Gk_ROString& Gk_ROString::operator=(Gk_ROString&& other) noexcept {
  Gk_ROString taken(std::move(other));
  std::swap(_text, taken._text);
  std::swap(_length, taken._length);
  std::swap(_capacity, taken._capacity);
  return *this;
}

Gk_ROString::~Gk_ROString() { kova::internal::release(_text); }

char Gk_ROString::charAt(int index) const noexcept {
  return index >= 0 && index < _length ? _text[index] : '\0';
}

unsigned Gk_ROString::hashCode() const noexcept {
  // FNV-1a, 32 bits.
  unsigned hash = 2166136261U;
  for (const char c : view(*this)) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}

int Gk_ROString::compareTo(const char* text) const noexcept {
  return view(*this).compare(view(text));
}

int Gk_ROString::compareTo(const Gk_ROString& other) const noexcept {
  return view(*this).compare(view(other));
}

int Gk_ROString::compareToIgnoreCase(const char* text) const noexcept {
  const std::string_view left = view(*this);
  const std::string_view right = view(text);
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = lowerCase(left[i]) - lowerCase(right[i]);
    if (difference != 0) return difference;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

int Gk_ROString::indexOf(char c, int from) const noexcept {
  return position(view(*this).find(c, static_cast<std::size_t>(std::max(from, 0))));
}

int Gk_ROString::indexOf(const char* text, int from) const noexcept {
  return position(view(*this).find(view(text), static_cast<std::size_t>(std::max(from, 0))));
}

int Gk_ROString::lastIndexOf(char c) const noexcept { return position(view(*this).rfind(c)); }

bool Gk_ROString::startsWith(const char* text) const noexcept {
  return view(*this).starts_with(view(text));
}

bool Gk_ROString::endsWith(const char* text) const noexcept {
  return view(*this).ends_with(view(text));
}

Gk_ROString Gk_ROString::substring(int start, int end) const {
  start = std::clamp(start, 0, _length);
  end = std::clamp(end, start, _length);
  return Gk_ROString(getText() + start, end - start);
}

bool Gk_ROString::matchesPath(const char* pattern, bool ignoreCase) const noexcept {
  const std::string_view text = view(*this);
  const std::string_view wanted = view(pattern);
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t at = 0;
  std::size_t wantedAt = 0;
  // Behind the last '*' of the segment, and the first character that it does not yet stand for.
  std::size_t behindStar = kNone;
  std::size_t starEnd = 0;
  while (at < text.size()) {
    if (wantedAt < wanted.size()) {
      if (wanted[wantedAt] == '*') {
        behindStar = ++wantedAt;
        starEnd = at;
        continue;
      }
      const std::size_t next = endOfCharacter(text, at);
      const std::size_t wantedNext = endOfCharacter(wanted, wantedAt);
      const bool isAny = wanted[wantedAt] == '?' && !isSeparator(text[at]);
      if (isAny || matchesCharacter(wanted.substr(wantedAt, wantedNext - wantedAt),
                                    text.substr(at, next - at), ignoreCase)) {
        // A separator settles the segments before it for good.
        if (isSeparator(text[at])) behindStar = kNone;
        at = next;
        wantedAt = wantedNext;
        continue;
      }
    }
    if (behindStar == kNone || isSeparator(text[starEnd])) return false;
    starEnd = endOfCharacter(text, starEnd);
    at = starEnd;
    wantedAt = behindStar;
  }
  while (wantedAt < wanted.size() && wanted[wantedAt] == '*') ++wantedAt;
  return wantedAt == wanted.size();
}

void Gk_ROString::reserveBytes(int length) {
  if (length <= _capacity) return;
  const std::size_t bytes = static_cast<std::size_t>(length) + 1;
  _text = static_cast<char*>(kova::internal::reallocate(_text, bytes));
  _text[_length] = 0;
  _capacity = length;
}

void Gk_ROString::replaceRange(int start, int end, const char* text, int length) {
  const int tail = _length - end;
  if (length > kMaxLength - start - tail) kova::internal::throwAllocException();
  const int newLength = start + length + tail;
  if (newLength == 0 && _text == nullptr) return;
  const bool isOwnText = text != nullptr && std::less_equal<>()(getText(), text) &&
                         std::less_equal<>()(text, getText() + _length);
  if (_text != nullptr && newLength <= _capacity && !isOwnText) {
    std::memmove(_text + start + length, _text + end, static_cast<std::size_t>(tail));
    if (text != nullptr) std::memcpy(_text + start, text, static_cast<std::size_t>(length));
    _text[newLength] = 0;
    _length = newLength;
    return;
  }
  Gk_ROString result;
  const int half = std::min(_capacity / 2, kMaxLength - _capacity);
  result.reserveBytes(newLength <= _capacity ? _capacity : std::max(newLength, _capacity + half));
  std::memcpy(result._text, getText(), static_cast<std::size_t>(start));
  if (text != nullptr) std::memcpy(result._text + start, text, static_cast<std::size_t>(length));
  std::memcpy(result._text + start + length, getText() + end, static_cast<std::size_t>(tail));
  result._text[newLength] = 0;
  result._length = newLength;
  *this = std::move(result);
}
