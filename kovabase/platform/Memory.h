#pragma once

#include <cstddef>

/// Memory straight from the system, in whole pages.
namespace kova::platform {

/// @param bytes  a multiple of `alignment`.
/// @param alignment  a power of two, at least the size of a page.
/// @return zeroed memory, or null when the system has none.
void* mapPages(std::size_t bytes, std::size_t alignment) noexcept;

/// @param bytes  as given to `mapPages`.
void unmapPages(void* pages, std::size_t bytes) noexcept;

/// Lets the system take the memory behind the pages whenever it is short of memory. What they hold
/// is lost, or not, until they are written to again.
void offerPages(void* pages, std::size_t bytes) noexcept;

}  // namespace kova::platform
