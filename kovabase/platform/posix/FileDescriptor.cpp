#include "kovabase/platform/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace kova::platform {

int openForWriting(const char* path, int& error) noexcept {
  int descriptor = -1;
  do {
    descriptor = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  } while (descriptor < 0 && errno == EINTR);
  error = descriptor < 0 ? errno : 0;
  return descriptor;
}

int writeAll(int descriptor, const char* bytes, std::size_t count) noexcept {
  // One call takes at most SSIZE_MAX bytes, and on Linux a little less than 2 GiB.
  constexpr std::size_t kMostBytes = std::size_t{1} << 30;
  while (count > 0) {
    const ssize_t written = write(descriptor, bytes, std::min(count, kMostBytes));
    if (written < 0) {
      if (errno == EINTR) continue;
      if (errno != EAGAIN) return errno;
      // Somebody has made the terminal or pipe non-blocking: wait until it takes more.
      pollfd waiting{descriptor, POLLOUT, 0};
      if (poll(&waiting, 1, -1) < 0 && errno != EINTR) return errno;
      continue;
    }
    if (written == 0) return EIO;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return 0;
}

int closeDescriptor(int descriptor) noexcept {
  // On EINTR the descriptor is closed all the same; a second call could close another's file.
  return close(descriptor) == 0 || errno == EINTR ? 0 : errno;
}

void describeError(int error, char* text, std::size_t size) noexcept {
  if (size == 0) return;
  const char* words = strerrordesc_np(error);
  std::strncpy(text, words != nullptr ? words : "unknown error", size - 1);
  text[size - 1] = 0;
}

}  // namespace kova::platform
