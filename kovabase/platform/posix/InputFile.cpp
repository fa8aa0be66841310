#include "kovabase/platform/InputFile.h"

#include "kovabase/platform/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kova::platform {

namespace {

std::string wordsOf(int error) {
  char text[128];
  describeError(error, text, sizeof text);
  return text;
}

const char* kindOf(mode_t mode) {
  if (S_ISDIR(mode)) return "it is a directory";
  if (S_ISFIFO(mode)) return "it is a pipe; give '-' to read standard input";
  if (S_ISSOCK(mode)) return "it is a socket";
  return "it is a device; give '-' to read standard input";
}

}  // namespace

InputFile::~InputFile() {
  if (_isOwned) closeDescriptor(_descriptor);
}

bool InputFile::open(const std::string& path, std::string& reason) {
  // Opening a pipe without O_NONBLOCK would wait for its writer.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    reason = wordsOf(errno);
    return false;
  }
  struct stat information = {};
  const bool isKnown = fstat(descriptor, &information) == 0;
  if (!isKnown || !S_ISREG(information.st_mode)) {
    reason = isKnown ? kindOf(information.st_mode) : wordsOf(errno);
    closeDescriptor(descriptor);
    return false;
  }
  posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
  _descriptor = descriptor;
  _isOwned = true;
  _size = information.st_size;
  return true;
}

bool InputFile::openStandardInput(std::string& reason) {
  struct stat information = {};
  if (fstat(STDIN_FILENO, &information) != 0) {
    reason = wordsOf(errno);
    return false;
  }
  if (S_ISDIR(information.st_mode)) {
    reason = kindOf(information.st_mode);
    return false;
  }
  _descriptor = STDIN_FILENO;
  if (S_ISREG(information.st_mode)) {
    // Standard input may have been read from before.
    const off_t position = lseek(STDIN_FILENO, 0, SEEK_CUR);
    if (position >= 0) _size = std::max<std::int64_t>(0, information.st_size - position);
  }
  return true;
}

std::int64_t InputFile::read(char* to, std::size_t capacity, std::string& reason) {
  std::size_t filled = 0;
  while (filled < capacity) {
    const ssize_t count = ::read(_descriptor, to + filled, capacity - filled);
    if (count > 0) {
      filled += static_cast<std::size_t>(count);
    } else if (count == 0) {
      break;
    } else if (errno == EAGAIN) {
      pollfd waiting{_descriptor, POLLIN, 0};
      poll(&waiting, 1, -1);
    } else if (errno != EINTR) {
      reason = wordsOf(errno);
      return -1;
    }
  }
  return static_cast<std::int64_t>(filled);
}

}  // namespace kova::platform
