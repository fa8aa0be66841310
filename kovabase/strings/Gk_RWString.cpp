#include "kovabase/strings/Gk_RWString.h"

#include "kovabase/foundation/internal/Heap.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace {

int lengthOf(const char* text) {
  const std::size_t length = text != nullptr ? std::string_view(text).size() : 0;
  if (length >= static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    kova::internal::throwAllocException();
  }
  return static_cast<int>(length);
}

bool isStripped(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

Gk_RWString& Gk_RWString::append(const char* text) { return append(text, lengthOf(text)); }

Gk_RWString& Gk_RWString::append(const char* text, int length) {
  if (text != nullptr) replaceRange(_length, _length, text, std::max(length, 0));
  return *this;
}

Gk_RWString& Gk_RWString::insert(int index, const char* text) {
  index = std::clamp(index, 0, _length);
  replaceRange(index, index, text, lengthOf(text));
  return *this;
}

Gk_RWString& Gk_RWString::remove(int start, int end) {
  start = std::clamp(start, 0, _length);
  end = std::clamp(end, start, _length);
  replaceRange(start, end, nullptr, 0);
  return *this;
}

Gk_RWString& Gk_RWString::replace(char oldChar, char newChar) noexcept {
  std::replace(_text, _text + _length, oldChar, newChar);
  return *this;
}

Gk_RWString& Gk_RWString::replace(const char* oldText, const char* newText) {
  const int oldLength = lengthOf(oldText);
  const int newLength = lengthOf(newText);
  if (oldLength == 0) return *this;
  int start = 0;
  int found = indexOf(oldText, start);
  if (found < 0) return *this;
  // Built beside the old text, which either argument may be a part of.
  Gk_RWString result;
  for (; found >= 0; found = indexOf(oldText, start)) {
    result.append(getText() + start, found - start);
    result.append(newText, newLength);
    start = found + oldLength;
  }
  result.append(getText() + start, _length - start);
  return *this = static_cast<Gk_RWString&&>(result);
}

bool Gk_RWString::setCharAt(int index, char c) noexcept {
  if (index < 0 || index >= _length) return false;
  _text[index] = c;
  return true;
}

Gk_RWString& Gk_RWString::toLowerCase() noexcept {
  std::for_each(_text, _text + _length, [](char& c) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  });
  return *this;
}

Gk_RWString& Gk_RWString::toUpperCase() noexcept {
  std::for_each(_text, _text + _length, [](char& c) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
  });
  return *this;
}

Gk_RWString& Gk_RWString::trim() {
  int start = 0;
  int end = _length;
  while (end > start && isStripped(_text[end - 1])) --end;
  while (start < end && isStripped(_text[start])) ++start;
  return remove(end, _length).remove(0, start);
}

Gk_RWString& Gk_RWString::clear() noexcept { return remove(0, _length); }

Gk_RWString& Gk_RWString::reserve(int length) {
  reserveBytes(length);
  return *this;
}
