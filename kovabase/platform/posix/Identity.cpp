#include "kovabase/platform/Identity.h"

#include <sys/random.h>
#include <time.h>
#include <unistd.h>

namespace kova::platform {

int processId() noexcept { return getpid(); }

int threadId() noexcept { return gettid(); }

std::uint64_t randomBits() noexcept {
  std::uint64_t bits = 0;
  if (getrandom(&bits, sizeof bits, GRND_NONBLOCK) == static_cast<ssize_t>(sizeof bits)) {
    return bits;
  }
  // The source is not ready in the first moments of a system: names differ all the same.
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  bits = static_cast<std::uint64_t>(now.tv_nsec) ^ static_cast<std::uint64_t>(now.tv_sec) << 30;
  return bits * 0x9E3779B97F4A7C15U;
}

}  // namespace kova::platform
