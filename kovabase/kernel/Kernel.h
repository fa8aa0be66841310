#pragma once

#include <cstddef>
#include <cstdlib>

/// Our own stand-in for the solid-modeling kernel: whether it is there, and its memory service.
namespace kova::kernel {

/// Whether the kernel may be used. There is no kernel library behind this stand-in, so it never
/// becomes ready, and whoever asks takes the way that needs none.
inline bool isReadyForUse() noexcept { return false; }

/// A block of the kernel's own, aligned to 16 bytes; null when memory cannot be had. `release`
/// takes it back.
inline void* allocate(std::size_t bytes) noexcept { return std::malloc(bytes); }
inline void release(void* block) noexcept { std::free(block); }

}  // namespace kova::kernel
