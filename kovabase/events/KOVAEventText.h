#pragma once

#include "kovabase/foundation/KOVAExport.h"

#include <cstddef>
#include <cstring>
#include <utility>

/// A narrow text that an event holds: a name, an identifier, a message. A text is null or
/// zero-terminated bytes. Copies are deep, so that a copied event outlives the one it was made
/// from; only texts that live as long as the process are shared.
///
/// One thread at a time, but a copy may be destroyed on another thread than it was made on.
class KOVABASE_API KOVAEventText {
 public:
  /// Null.
  constexpr KOVAEventText() noexcept = default;

  /// A copy of the text; null for null.
  explicit KOVAEventText(const char* text);
  /// A copy of the first `length` bytes, none of them zero.
  KOVAEventText(const char* text, std::size_t length);

  /// Refers to a string literal or another text that is never freed.
  static KOVAEventText Static(const char* text) noexcept {
    return {text, text != nullptr ? std::strlen(text) : 0, Kind::kStatic};
  }
  /// Refers to a text that outlives this object. Copies of this object own their text.
  static KOVAEventText Borrowed(const char* text, std::size_t length) noexcept {
    return {text, length, Kind::kBorrowed};
  }

  KOVAEventText(const KOVAEventText& other)
      : _text(other._text), _lengthAndKind(other._lengthAndKind) {
    if (GetKind() != Kind::kStatic) Own();
  }
  KOVAEventText(KOVAEventText&& other) noexcept
      : _text(std::exchange(other._text, nullptr)),
        _lengthAndKind(std::exchange(other._lengthAndKind, 0)) {}
  KOVAEventText& operator=(KOVAEventText other) noexcept;
  ~KOVAEventText() {
    if (GetKind() == Kind::kOwned) Release();
  }

  /// Valid as long as this object is, and until it is assigned to.
  const char* Get() const noexcept { return _text; }
  /// Bytes without the terminator; 0 for null.
  std::size_t GetLength() const noexcept { return _lengthAndKind >> kKindBits; }
  bool IsNull() const noexcept { return _text == nullptr; }

 private:
  enum class Kind : std::size_t { kStatic, kBorrowed, kOwned };
  static constexpr int kKindBits = 2;

  KOVAEventText(const char* text, std::size_t length, Kind kind) noexcept
      : _text(text), _lengthAndKind(Pack(length, kind)) {}
  static std::size_t Pack(std::size_t length, Kind kind) noexcept {
    return length << kKindBits | static_cast<std::size_t>(kind);
  }
  Kind GetKind() const noexcept {
    return static_cast<Kind>(_lengthAndKind & ((std::size_t{1} << kKindBits) - 1));
  }
  // Replaces the text that this object refers to by a copy of its own.
  void Own();
  void Release() noexcept;

  const char* _text = nullptr;
  // One word for both: a million events may be queued.
  std::size_t _lengthAndKind = 0;
};
