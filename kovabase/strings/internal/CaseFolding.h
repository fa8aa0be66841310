#pragma once

#include <cstddef>

namespace kova::internal {

/// Three-way comparison after full default case folding, in the order of the folded code points:
/// -1, 0 or 1.
int compareIgnoringCase(const unsigned short* a, std::size_t countA, const unsigned short* b,
                        std::size_t countB) noexcept;

}  // namespace kova::internal
