#pragma once

#include "kovabase/foundation/KOVAAllocException.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>

/// The heap of the library's own objects: the runtime's, whatever KOVAMemoryManager is set to. What
/// cannot be had throws KOVAAllocException. Blocks are aligned to 16 bytes and interchangeable with
/// those of malloc.
namespace kova::internal {

[[noreturn, gnu::cold]] inline void throwAllocException() { throw KOVAAllocException(); }

[[nodiscard]] inline void* allocate(std::size_t bytes) {
  void* const block = std::malloc(bytes != 0 ? bytes : 1);
  if (block == nullptr) throwAllocException();
  return block;
}

/// `count` times `bytes` bytes, all 0; the product may not overflow unnoticed.
[[nodiscard]] inline void* allocateZeroed(std::size_t count, std::size_t bytes) {
  void* const block = count != 0 && bytes != 0 ? std::calloc(count, bytes) : std::calloc(1, 1);
  if (block == nullptr) throwAllocException();
  return block;
}

/// Takes `block`, null included, over into one of `bytes` bytes; on failure it stays as it is.
[[nodiscard]] inline void* reallocate(void* block, std::size_t bytes) {
  void* const grown = std::realloc(block, bytes != 0 ? bytes : 1);
  if (grown == nullptr) throwAllocException();
  return grown;
}

/// Ignores null.
inline void release(void* block) noexcept { std::free(block); }

/// A `T` on this heap; `destroy` ends it.
template <class T, class... Arguments>
[[nodiscard]] T* create(Arguments&&... arguments) {
  static_assert(alignof(T) <= alignof(std::max_align_t));
  void* const block = allocate(sizeof(T));
  if constexpr (std::is_nothrow_constructible_v<T, Arguments&&...>) {
    return ::new (block) T(std::forward<Arguments>(arguments)...);
  } else {
    try {
      return ::new (block) T(std::forward<Arguments>(arguments)...);
    } catch (...) {
      release(block);
      throw;
    }
  }
}

/// Like `create`, but null when memory cannot be had; for `T`s whose constructor does not throw.
template <class T, class... Arguments>
[[nodiscard]] T* tryCreate(Arguments&&... arguments) noexcept {
  static_assert(alignof(T) <= alignof(std::max_align_t));
  static_assert(std::is_nothrow_constructible_v<T, Arguments&&...>);
  void* const block = std::malloc(sizeof(T));
  return block != nullptr ? ::new (block) T(std::forward<Arguments>(arguments)...) : nullptr;
}

/// Ignores null.
template <class T>
void destroy(T* object) noexcept {
  if (object == nullptr) return;
  object->~T();
  release(object);
}

}  // namespace kova::internal
