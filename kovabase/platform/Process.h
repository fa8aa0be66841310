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

/// Takes the place of a standard stream that the process was started without, so that the next file
/// that is opened does not become standard output by accident. Using such a stream still fails.
void fillStandardStreams();

}  // namespace kova::platform
