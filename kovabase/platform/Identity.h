#pragma once

#include <cstdint>

/// Numbers that tell this process and thread from others.
namespace kova::platform {

int processId() noexcept;

/// Unique among the live threads of the system.
int threadId() noexcept;

/// 64 bits that nobody can foretell, as far as the system has such.
std::uint64_t randomBits() noexcept;

}  // namespace kova::platform
