#include "kovabase/platform/Process.h"

#include <climits>
#include <sys/resource.h>
#include <unistd.h>

namespace kova::platform {

std::string programFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) return {};
  const std::string program(path, static_cast<std::size_t>(length));
  return program.substr(0, program.rfind('/'));
}

std::int64_t peakMemory() {
  rusage usage = {};
  // Linux counts in KiB.
  return getrusage(RUSAGE_SELF, &usage) == 0 ? std::int64_t{usage.ru_maxrss} * 1024 : 0;
}

}  // namespace kova::platform
