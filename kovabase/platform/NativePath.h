#pragma once

#include <cstddef>
#include <vector>

/// The border between stored paths and the system's own.
///
/// A stored path is UTF-16 with backslashes, perhaps behind "\\?\" or "\\?\UNC\". The system's is
/// UTF-8 with slashes. Bytes of a system's name that a stored path cannot spell (what is no UTF-8,
/// and the backslash) are units U+DC00 + byte there, and become that byte again.
namespace kova::platform {

/// A stored path as the system's calls take it, on the stack and zero-terminated.
class NativePath {
 public:
  /// The longest stored path, without terminator.
  static constexpr int kMostUnits = 4999;

  /// @param units  a stored path; need not be terminated.
  NativePath(const unsigned short* units, int count) noexcept;
  NativePath(const NativePath&) = delete;
  NativePath& operator=(const NativePath&) = delete;

  /// False for the empty path, one that is too long, and one that holds U+0000 or a surrogate that
  /// is neither part of a pair nor stands for a byte.
  bool isValid() const noexcept { return _isValid; }
  const char* text() const noexcept { return _text; }

 private:
  bool encode(const unsigned short* units, const unsigned short* end) noexcept;

  bool _isValid;
  char _text[kMostUnits * 3 + 1];
};

/// The stored form of a name or path of the system; its slashes stay slashes.
std::vector<unsigned short> storedForm(const char* bytes, std::size_t count);

}  // namespace kova::platform
