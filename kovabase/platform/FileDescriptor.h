#pragma once

#include <cstddef>

/// Files as descriptors. Errors are the system's numbers, 0 when there is none.
namespace kova::platform {

/// Opens a file for writing, created or emptied. Programs that are started do not inherit it.
/// @param path  zero-terminated UTF-8.
/// @return the descriptor, or -1 with `error` set.
int openForWriting(const char* path, int& error) noexcept;

/// Writes all bytes, however often the system takes only a part or is interrupted.
/// @return 0, or the error that left bytes unwritten.
int writeAll(int descriptor, const char* bytes, std::size_t count) noexcept;

/// Closes the descriptor; it is gone whatever the outcome.
/// @return 0, or the error that the system had kept until now (a full disk on some systems).
int closeDescriptor(int descriptor) noexcept;

/// Writes the system's words for the error, zero-terminated and cut to `size` bytes.
void describeError(int error, char* text, std::size_t size) noexcept;

}  // namespace kova::platform
