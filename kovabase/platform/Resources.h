#pragma once

#include <cstdint>

/// What the running process has used.
namespace kova::platform {

/// The processor time of all threads so far, in seconds, inside the system and outside it.
/// @return false, with both 0, when the system does not tell.
bool processTimes(double& kernelSeconds, double& userSeconds) noexcept;

/// The bytes of memory in use now (resident set size); 0 when the system does not tell.
std::int64_t currentMemory() noexcept;

}  // namespace kova::platform
