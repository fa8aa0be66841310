#include "kovabase/platform/Resources.h"

#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace kova::platform {

namespace {

double inSeconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

}  // namespace

bool processTimes(double& kernelSeconds, double& userSeconds) noexcept {
  rusage usage = {};
  const bool isKnown = getrusage(RUSAGE_SELF, &usage) == 0;
  kernelSeconds = inSeconds(usage.ru_stime);
  userSeconds = inSeconds(usage.ru_utime);
  return isKnown;
}

std::int64_t currentMemory() noexcept {
  // The second number of the line is the resident pages.
  std::FILE* const file = std::fopen("/proc/self/statm", "re");
  if (file == nullptr) return 0;
  long long total = 0;
  long long resident = 0;
  const bool isRead = std::fscanf(file, "%lld %lld", &total, &resident) == 2;
  std::fclose(file);
  return isRead ? resident * sysconf(_SC_PAGESIZE) : 0;
}

}  // namespace kova::platform
