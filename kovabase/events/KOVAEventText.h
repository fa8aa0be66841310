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

  KOVAEventText(const KOVAEventText& other);
  KOVAEventText(KOVAEventText&& other) noexcept
      : KOVAEventText(std::exchange(other._text, nullptr), std::exchange(other._length, 0),
                      std::exchange(other._kind, Kind::kStatic)) {}
  KOVAEventText& operator=(KOVAEventText other) noexcept;
  ~KOVAEventText() {
    if (_kind == Kind::kOwned) Release();
  }

  /// Valid as long as this object is, and until it is assigned to.
  const char* Get() const noexcept { return _text; }
  /// Bytes without the terminator; 0 for null.
  std::size_t GetLength() const noexcept { return _length; }
  bool IsNull() const noexcept { return _text == nullptr; }

 private:
  enum class Kind { kStatic, kBorrowed, kOwned };

  KOVAEventText(const char* text, std::size_t length, Kind kind) noexcept
      : _text(text), _length(length), _kind(kind) {}
  void Release() noexcept;

  const char* _text = nullptr;
  std::size_t _length = 0;
  Kind _kind = Kind::kStatic;
};
