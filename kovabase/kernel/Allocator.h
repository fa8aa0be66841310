#pragma once

#include <cstddef>
#include <cstdlib>

/// Our own stand-in for the memory service of the solid-modeling kernel.
namespace kova::kernel {

/// Whether the kernel's memory service may be used. There is no kernel library behind this one, so
/// it never becomes ready, and whoever asks falls back to the runtime's heap.
inline bool isMemoryReady() noexcept { return false; }

/// A block of the kernel's own, aligned to 16 bytes; null when memory cannot be had. `release`
/// takes it back.
inline void* allocate(std::size_t bytes) noexcept { return std::malloc(bytes); }
inline void release(void* block) noexcept { std::free(block); }

}  // namespace kova::kernel
