#include "apps/kova-translate/system/OutputFile.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kova::translate {

namespace {

// Threads that are about to create a file, and whether a signal has come that ends the process:
// whoever counts himself after that waits for the end.
std::atomic<int> creatingThreads{0};
std::atomic<bool> isEnding{false};

constexpr int kHandledSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr timespec kMillisecond{0, 1000000};
constexpr long kLongestWait = 60;  // milliseconds

long getMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000 + now.tv_nsec / 1000000;
}

// What fails from now on fails because the outputs go.
void stopWhenEnding() {
  while (isEnding) pause();
}

std::string wordsOf(int error) {
  const char* const words = strerrordesc_np(error);
  return words != nullptr ? words : "unknown error";
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// The file that a symbolic link names in the end; other paths as they are.
std::string followLinks(const std::string& path) {
  struct stat information = {};
  if (lstat(path.c_str(), &information) != 0 || !S_ISLNK(information.st_mode)) return path;
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return path;
  std::string target = resolved;
  std::free(resolved);
  return target;
}

enum class TargetKind { kAbsent, kRegular, kDirect };

struct Target {
  TargetKind kind = TargetKind::kAbsent;
  // Access rights, when it is a regular file.
  mode_t rights = 0;
};

// What stands at the path; false with a reason when nothing may be written there.
bool examineTarget(const std::string& path, bool replace, Target& target, std::string& reason) {
  const auto isFolderOpen = [&] {
    if (access(folderOf(path).c_str(), W_OK | X_OK) == 0) return true;
    reason = wordsOf(errno);
    return false;
  };
  if (path == "-") {
    target.kind = TargetKind::kDirect;
    return true;
  }
  struct stat information = {};
  if (stat(path.c_str(), &information) != 0) {
    if (errno != ENOENT) {
      reason = wordsOf(errno);
      return false;
    }
    if (lstat(path.c_str(), &information) == 0) {
      reason = "it is a symbolic link to a file that does not exist";
      return false;
    }
    const std::string folder = folderOf(path);
    if (access(folder.c_str(), F_OK) == 0) return isFolderOpen();
    reason = "there is no folder '" + folder + "'";
    return false;
  }
  if (S_ISDIR(information.st_mode)) {
    reason = "it is a directory";
    return false;
  }
  if (!S_ISREG(information.st_mode)) {
    target.kind = TargetKind::kDirect;
    return true;
  }
  target.kind = TargetKind::kRegular;
  target.rights = information.st_mode & 0777;
  if (!replace) reason = "it exists already; --force replaces it";
  return replace;
}

// Renames and refuses to replace, in one step where the file system can. The error, or 0.
int renameWithoutReplacing(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  if (access(to.c_str(), F_OK) == 0) return EEXIST;
  return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// "/.kova-<process>-<time>-<number>.part": no two outputs share one, on whatever machine.
std::string makeTemporaryName() {
  static std::atomic<unsigned> counter{0};
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  char name[96];
  std::snprintf(name, sizeof name, "/.kova-%ld-%lx%lx-%u.part", static_cast<long>(getpid()),
                static_cast<unsigned long>(now.tv_sec), static_cast<unsigned long>(now.tv_nsec),
                counter++);
  return name;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : _number(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int Get() const { return _number; }
  /// The error that the system had kept until now, or 0.
  int Close() {
    const int number = _number;
    _number = -1;
    // On EINTR the descriptor is closed all the same.
    return number <= STDERR_FILENO || close(number) == 0 || errno == EINTR ? 0 : errno;
  }

 private:
  int _number;
};

int writeAll(int descriptor, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(descriptor, bytes, count);
    if (written > 0) {
      bytes += written;
      count -= static_cast<std::size_t>(written);
    } else if (written == 0) {
      return EIO;
    } else if (errno == EAGAIN) {
      pollfd waiting{descriptor, POLLOUT, 0};
      poll(&waiting, 1, -1);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

// Copies a file to standard output or to what is no regular file. The error, or 0.
int copyTo(const std::string& target, const std::string& path) {
  const Descriptor from(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (from.Get() < 0) return errno;
  Descriptor to(target == "-" ? STDOUT_FILENO
                              : open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  if (to.Get() < 0) return errno;
  static constexpr std::size_t kPiece = std::size_t{64} << 10;
  char bytes[kPiece];
  for (;;) {
    const ssize_t count = read(from.Get(), bytes, sizeof bytes);
    if (count == 0) return to.Close();
    if (count < 0) {
      if (errno != EINTR) return errno;
      continue;
    }
    const int error = writeAll(to.Get(), bytes, static_cast<std::size_t>(count));
    if (error != 0) return error;
  }
}

}  // namespace

// A name that the signal handler removes. The handler may run at any instruction and on any thread,
// so slots are never freed, and a name is complete before its slot is marked as taken.
struct OutputFile::Slot {
  enum State : int { kFree, kBeingFilled, kTaken };

  std::atomic<int> state{kBeingFilled};
  char path[PATH_MAX] = "";
  Slot* next = nullptr;

  static std::atomic<Slot*> first;
};

std::atomic<OutputFile::Slot*> OutputFile::Slot::first{nullptr};
static_assert(std::atomic<void*>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
              "the signal handler takes no lock");

OutputFile::Slot* OutputFile::TakeSlot(const std::string& path) {
  Slot* slot = Slot::first;
  for (int expected = Slot::kFree; slot != nullptr; slot = slot->next, expected = Slot::kFree) {
    if (slot->state.compare_exchange_strong(expected, Slot::kBeingFilled)) break;
  }
  const bool isNew = slot == nullptr;
  if (isNew) slot = new Slot;
  std::memcpy(slot->path, path.c_str(), path.size() + 1);
  slot->state = Slot::kTaken;
  if (isNew) {
    slot->next = Slot::first;
    while (!Slot::first.compare_exchange_weak(slot->next, slot)) {
    }
  }
  return slot;
}

void OutputFile::RemoveAllAndExit(int signal) {
  isEnding = true;
  const long latest = getMilliseconds() + kLongestWait;
  while (creatingThreads != 0 && getMilliseconds() < latest) {
    nanosleep(&kMillisecond, nullptr);
  }
  for (const Slot* slot = Slot::first; slot != nullptr; slot = slot->next) {
    if (slot->state == Slot::kTaken) unlink(slot->path);
  }
  _exit(128 + signal);
}

CreationGuard::CreationGuard() {
  // The handler must not run on this thread: it would wait for itself.
  sigset_t handled;
  sigset_t before;
  sigemptyset(&handled);
  for (const int signal : kHandledSignals) sigaddset(&handled, signal);
  pthread_sigmask(SIG_BLOCK, &handled, &before);
  for (const int signal : kHandledSignals) {
    if (sigismember(&before, signal) == 0) _blocked |= 1U << signal;
  }
  ++creatingThreads;
  if (!isEnding) return;
  --creatingThreads;
  stopWhenEnding();
}

CreationGuard::~CreationGuard() {
  --creatingThreads;
  sigset_t blocked;
  sigemptyset(&blocked);
  for (const int signal : kHandledSignals) {
    if ((_blocked & 1U << signal) != 0) sigaddset(&blocked, signal);
  }
  pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
}

OutputFile::~OutputFile() { Discard(); }

bool OutputFile::Create(const std::string& target, bool replace, std::string& reason) {
  Discard();
  Target found;
  if (!examineTarget(target, replace, found, reason)) return false;
  _isDirect = found.kind == TargetKind::kDirect;
  _target = _isDirect ? target : followLinks(target);
  _replace = replace;
  _rights = found.kind == TargetKind::kRegular ? static_cast<int>(found.rights) : -1;
  if (!_isDirect) return Open(folderOf(_target), _rights >= 0 ? 0600 : 0666, reason);
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (!error) return Open(folder.string(), 0600, reason);
  reason = "there is no folder for temporary files: " + error.message();
  return false;
}

bool OutputFile::Open(const std::string& folder, unsigned rights, std::string& reason) {
  _temporary = folder + makeTemporaryName();
  if (_temporary.size() >= PATH_MAX) {
    reason = wordsOf(ENAMETOOLONG);
    return false;
  }
  const CreationGuard guard;
  _slot = TakeSlot(_temporary);
  const int descriptor = open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                              static_cast<mode_t>(rights));
  if (descriptor >= 0) {
    close(descriptor);
    return true;
  }
  reason = wordsOf(errno);
  // A file of that name that is not ours stays.
  _slot->state = Slot::kFree;
  _slot = nullptr;
  return false;
}

bool OutputFile::Commit(std::string& reason) {
  int error = 0;
  if (_isDirect) {
    error = copyTo(_target, _temporary);
  } else {
    if (_rights >= 0 && chmod(_temporary.c_str(), static_cast<mode_t>(_rights)) != 0) error = errno;
    if (error == 0 && _replace) {
      error = rename(_temporary.c_str(), _target.c_str()) == 0 ? 0 : errno;
    } else if (error == 0) {
      error = renameWithoutReplacing(_temporary, _target);
    }
    if (error == 0) {
      _slot->state = Slot::kFree;
      _slot = nullptr;
    }
  }
  if (error != 0) stopWhenEnding();
  if (error == EEXIST) {
    reason = "it exists already; --force replaces it";
  } else if (error != 0) {
    reason = wordsOf(error);
  }
  Discard();
  return error == 0;
}

void OutputFile::Discard() {
  if (_slot == nullptr) return;
  unlink(_temporary.c_str());
  _slot->state = Slot::kFree;
  _slot = nullptr;
}

bool canCreateOutput(const std::string& target, bool replace, std::string& reason) {
  Target found;
  return examineTarget(target, replace, found, reason);
}

void removeOutputsOnSignals() {
  struct sigaction action = {};
  action.sa_handler = OutputFile::RemoveAllAndExit;
  // One signal at a time: the second waits until the process has ended.
  sigfillset(&action.sa_mask);
  for (const int signal : kHandledSignals) {
    struct sigaction before = {};
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
      sigaction(signal, &action, nullptr);
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace kova::translate
