#include "apps/kova-translate/system/StandardStreams.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kova::translate {

void fillStandardStreams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest free number is this one. Opened the wrong way round, it fails when it is used.
    open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

bool readStandardInput(Block& block, std::string& reason) {
  std::size_t capacity = std::size_t{1} << 16;
  block.bytes.reset(static_cast<unsigned char*>(std::malloc(capacity)));
  block.count = 0;
  while (block.bytes != nullptr) {
    const ssize_t count =
        read(STDIN_FILENO, block.bytes.get() + block.count, capacity - block.count);
    if (count == 0) return true;
    if (count > 0) {
      block.count += static_cast<std::size_t>(count);
      if (block.count < capacity) continue;
      capacity += capacity / 2;
      void* const larger = std::realloc(block.bytes.get(), capacity);
      if (larger == nullptr) break;
      static_cast<void>(block.bytes.release());
      block.bytes.reset(static_cast<unsigned char*>(larger));
    } else if (errno == EAGAIN) {
      pollfd waiting{STDIN_FILENO, POLLIN, 0};
      poll(&waiting, 1, -1);
    } else if (errno != EINTR) {
      reason = strerrordesc_np(errno);
      return false;
    }
  }
  reason = "there is not enough memory for it";
  return false;
}

int getTerminalColumns() {
  winsize size = {};
  if (isatty(STDERR_FILENO) == 0) return 0;
  constexpr int kUsualColumns = 80;
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return size.ws_col;
}

}  // namespace kova::translate
