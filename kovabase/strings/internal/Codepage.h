#pragma once

#include "kovabase/strings/internal/UnicodeServices.h"

#include <cstddef>
#include <utility>

namespace kova::internal {

template <std::size_t... Index>
bool isNamed(const char* name, const char* canonical, std::index_sequence<Index...>) noexcept {
  return ((name[Index] == canonical[Index]) && ...);
}

/// Whether the names are the same to the letter, without a loop and without a call.
template <std::size_t Size>
bool isNamed(const char* name, const char (&canonical)[Size]) noexcept {
  return isNamed(name, canonical, std::make_index_sequence<Size>());
}

/// The kind of a code page whose name tells it without a look-up; kOther for all other names.
inline CodepageKind kindOfCanonicalName(const char* name) noexcept {
  if (isNamed(name, "UTF-8")) return CodepageKind::kUTF8;
  if (isNamed(name, "US-ASCII")) return CodepageKind::kUSASCII;
  if (isNamed(name, "ISO-8859-1")) return CodepageKind::kLatin1;
  return CodepageKind::kOther;
}

/// A code page as the calling thread sees it, for one conversion on that thread: with a clone of
/// the registry's converter that is the thread's own. A thread keeps the clones of the few code
/// pages that it used last, so the next look-up may end this one.
class Codepage {
 public:
  /// What `name` stands for; null or empty is the default code page. An unknown name gives the
  /// default one with isKnown false.
  static Codepage find(const char* name) noexcept;
  /// The same for reading; `converter` is null where the kind says how to read without one.
  static Codepage findForReading(const char* name) noexcept;
  /// As find(), with a converter that writes `substitute` for what the code page lacks; 0 is the
  /// code page's own substitute.
  static Codepage findForWriting(const char* name, char substitute) noexcept;

  CodepageKind kind = CodepageKind::kOther;
  /// Null when memory is exhausted.
  UConverter* converter = nullptr;
  bool isKnown = true;

 private:
  struct Slot;
  class Cache;

  static CodepageKind defaultKind() noexcept;
};

}  // namespace kova::internal
