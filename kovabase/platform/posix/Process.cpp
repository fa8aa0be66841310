#include "kovabase/platform/Process.h"

#include <climits>
#include <fcntl.h>
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

void fillStandardStreams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest free number is this one. Opened the wrong way round, it fails when it is used.
    open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace kova::platform
