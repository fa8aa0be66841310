#include "kovabase/io/internal/GrowableBytes.h"

#include "kovabase/foundation/KOVAAllocException.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace kova::internal {

void appendBytes(char*& begin, std::size_t used, std::size_t& capacity, const char* bytes,
                 std::size_t count) {
  if (count > capacity - used) {
    constexpr std::size_t kSmallest = 256;
    constexpr std::size_t kLargest = PTRDIFF_MAX;
    if (count > kLargest - used) throw KOVAAllocException();
    const std::size_t doubled = capacity > kLargest / 2 ? kLargest : capacity * 2;
    const std::size_t wanted = std::max({used + count, doubled, kSmallest});
    const std::less_equal<> isUpTo;
    const bool isInside = begin != nullptr && isUpTo(begin, bytes) && isUpTo(bytes, begin + used);
    const std::size_t offset = isInside ? static_cast<std::size_t>(bytes - begin) : 0;
    char* grown = static_cast<char*>(std::realloc(begin, wanted));
    if (grown == nullptr) throw KOVAAllocException();
    begin = grown;
    capacity = wanted;
    if (isInside) bytes = begin + offset;
  }
  std::memcpy(begin + used, bytes, count);
}

}  // namespace kova::internal
