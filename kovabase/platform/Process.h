#pragma once

#include <cstdint>
#include <string>

/// What the running process knows about itself.
namespace kova::platform {

/// The folder of the running program's file, without a separator at its end; empty when the system
/// does not tell. UTF-8.
std::string programFolder();

/// The most bytes of memory that the process has had in use at one time, shared libraries
/// included (resident set size); 0 when the system does not tell.
std::int64_t peakMemory();

}  // namespace kova::platform
