#pragma once

#include <cstddef>

namespace kova::internal {

/// Appends bytes to a block that `std::free` releases, doubling it as needed. Throws
/// KOVAAllocException, with everything as it was, when memory cannot be had.
/// @param begin  the block, null at first; it may move.
/// @param used  bytes in use.
/// @param capacity  bytes in the block, 0 at first.
/// @param bytes  may lie in the block itself.
void appendBytes(char*& begin, std::size_t used, std::size_t& capacity, const char* bytes,
                 std::size_t count);

}  // namespace kova::internal
