#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// A read-only narrow text: names of units, sections and files, and whatever else stays in bytes.
///
/// Every string owns its bytes, a copy is a deep one. Bytes have no code page here: order and
/// search go by unsigned byte, and only the letters A-Z have a case. Texts handed in may be null,
/// which means empty, and may be parts of the string itself. Distinct strings may be used on
/// distinct threads. Holds no pointer into itself, so arrays may move it as raw bytes.
class KOVABASE_API Gk_ROString {
 public:
  Gk_ROString() noexcept = default;
  Gk_ROString(const char* text);
  /// The first `length` bytes of `text`, whatever they are; a length below 1 is an empty string.
  Gk_ROString(const char* text, int length);
  Gk_ROString(const Gk_ROString& other);
  /// Leaves `other` empty.
  Gk_ROString(Gk_ROString&& other) noexcept;
  Gk_ROString& operator=(const Gk_ROString& other);
  Gk_ROString& operator=(Gk_ROString&& other) noexcept;
  ~Gk_ROString();

  /// In bytes, without the terminator.
  int length() const noexcept { return _length; }
  bool isEmpty() const noexcept { return _length == 0; }

  /// Zero-terminated and never null; the string's own, valid until the string changes.
  const char* getText() const noexcept { return _text != nullptr ? _text : ""; }

  /// 0 when `index` is out of range.
  char charAt(int index) const noexcept;

  /// Equal for equal texts, the same in every process.
  unsigned hashCode() const noexcept;

  /// Below, equal to or above 0.
  int compareTo(const char* text) const noexcept;
  int compareTo(const Gk_ROString& other) const noexcept;
  int compareToIgnoreCase(const char* text) const noexcept;
  bool equalsIgnoreCase(const char* text) const noexcept { return compareToIgnoreCase(text) == 0; }

  bool operator==(const char* text) const noexcept { return compareTo(text) == 0; }
  bool operator==(const Gk_ROString& other) const noexcept { return compareTo(other) == 0; }
  bool operator<(const Gk_ROString& other) const noexcept { return compareTo(other) < 0; }

  /// The first position at or after `from`, or -1. An empty text is found at `from`, when that is
  /// inside the string or at its end; a negative `from` is 0.
  int indexOf(char c, int from = 0) const noexcept;
  int indexOf(const char* text, int from = 0) const noexcept;
  /// The last position, or -1.
  int lastIndexOf(char c) const noexcept;

  /// True for an empty text.
  bool startsWith(const char* text) const noexcept;
  bool endsWith(const char* text) const noexcept;

  /// The bytes from `start` up to, not including, `end`; both are pinned to the string.
  Gk_ROString substring(int start, int end) const;

  /// Whether this path matches a pattern, segment by segment and as a whole. In a segment of the
  /// pattern '*' stands for any characters, also none, and '?' for exactly one (a UTF-8 sequence
  /// is one character). Neither crosses a separator. '/' and '\' are the same separator on
  /// both sides; empty segments count, so "a//b" does not match "a/b".
  bool matchesPath(const char* pattern, bool ignoreCase = false) const noexcept;

 protected:
  /// Makes room for `length` bytes and a terminator. The text stays.
  void reserveBytes(int length);
  /// Replaces the bytes from `start` up to `end`, a valid range, by `length` bytes from `text`.
  void replaceRange(int start, int end, const char* text, int length);

  char* _text = nullptr;
  int _length = 0;
  /// Bytes that fit without the terminator.
  int _capacity = 0;
};
