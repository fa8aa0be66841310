#pragma once

#include <cstddef>
#include <cstring>

/// Blocks that carry one 32-bit word before the address that their user sees. The word is in the
/// last 4 bytes before it, and room of 16 bytes keeps that address aligned to 16.
namespace kova::internal {

inline constexpr std::size_t kHeaderBytes = 16;

/// @param block  the start of a heap block of at least `kHeaderBytes`.
/// @return the address for the user.
inline void* setHeaderWord(void* block, unsigned word) noexcept {
  std::byte* const user = static_cast<std::byte*>(block) + kHeaderBytes;
  std::memcpy(user - sizeof word, &word, sizeof word);
  return user;
}

inline unsigned headerWord(const void* user) noexcept {
  unsigned word = 0;
  std::memcpy(&word, static_cast<const std::byte*>(user) - sizeof word, sizeof word);
  return word;
}

/// The start of the heap block behind the user's address.
inline void* blockStart(void* user) noexcept {
  return static_cast<std::byte*>(user) - kHeaderBytes;
}

}  // namespace kova::internal
