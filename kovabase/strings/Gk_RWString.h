#pragma once

#include "kovabase/strings/Gk_ROString.h"

/// A narrow text that is edited in place. Growing is by half, so that appending is cheap.
/// Members that edit return the string itself.
class KOVABASE_API Gk_RWString : public Gk_ROString {
 public:
  using Gk_ROString::Gk_ROString;
  Gk_RWString() noexcept = default;
  Gk_RWString(const Gk_ROString& other) : Gk_ROString(other) {}
  Gk_RWString(Gk_ROString&& other) noexcept : Gk_ROString(static_cast<Gk_ROString&&>(other)) {}

  /// Null appends nothing.
  Gk_RWString& append(const char* text);
  /// The first `length` bytes of `text`.
  Gk_RWString& append(const char* text, int length);
  Gk_RWString& append(const Gk_ROString& other) { return append(other.getText(), other.length()); }
  Gk_RWString& append(char c) { return append(&c, 1); }
  Gk_RWString& operator+=(const char* text) { return append(text); }
  Gk_RWString& operator+=(const Gk_ROString& other) { return append(other); }
  Gk_RWString& operator+=(char c) { return append(c); }

  /// Inserts before `index`, which is pinned to the string.
  Gk_RWString& insert(int index, const char* text);
  /// Removes the bytes from `start` up to, not including, `end`; both are pinned to the string.
  Gk_RWString& remove(int start, int end);
  /// Replaces every `oldChar`.
  Gk_RWString& replace(char oldChar, char newChar) noexcept;
  /// Replaces every occurrence, from left to right; an empty `oldText` replaces nothing.
  Gk_RWString& replace(const char* oldText, const char* newText);

  /// @return false, nothing changed, when `index` is out of range.
  bool setCharAt(int index, char c) noexcept;

  /// A-Z and a-z only.
  Gk_RWString& toLowerCase() noexcept;
  Gk_RWString& toUpperCase() noexcept;
  /// Strips blanks, tabs, carriage returns and line feeds from both ends.
  Gk_RWString& trim();
  /// Empties the string and keeps its memory.
  Gk_RWString& clear() noexcept;
  /// Makes room for `length` bytes in all.
  Gk_RWString& reserve(int length);
};
