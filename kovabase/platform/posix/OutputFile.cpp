#include "kovabase/platform/OutputFile.h"

#include "kovabase/platform/FileDescriptor.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kova::platform {

namespace {

// The names that the signal handler removes. It may run at any instruction and on any thread, so
// there are fixed places, and a name is complete before its place is marked as taken.
constexpr int kSlots = 64;
enum SlotState : int { kFree, kBeingFilled, kTaken };
std::atomic<int> slotStates[kSlots];
char slotPaths[kSlots][PATH_MAX];
static_assert(std::atomic<int>::is_always_lock_free, "the signal handler takes no lock");

int takeSlot(const std::string& path) {
  if (path.size() >= PATH_MAX) return -1;
  for (int slot = 0; slot < kSlots; ++slot) {
    int expected = kFree;
    if (slotStates[slot].compare_exchange_strong(expected, kBeingFilled)) {
      std::memcpy(slotPaths[slot], path.c_str(), path.size() + 1);
      slotStates[slot] = kTaken;
      return slot;
    }
  }
  return -1;
}

void releaseSlot(int& slot) {
  if (slot >= 0) slotStates[slot] = kFree;
  slot = -1;
}

void removeOutputsAndExit(int signal) {
  for (int slot = 0; slot < kSlots; ++slot) {
    if (slotStates[slot] == kTaken) unlink(slotPaths[slot]);
  }
  _exit(128 + signal);
}

std::string wordsOf(int error) {
  char text[128];
  describeError(error, text, sizeof text);
  return text;
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
    if (access(folder.c_str(), F_OK) != 0) {
      reason = "there is no folder '" + folder + "'";
      return false;
    }
    return true;
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

}  // namespace

OutputFile::~OutputFile() { discard(); }

bool OutputFile::create(const std::string& target, bool replace, std::string& reason) {
  discard();
  Target found;
  if (!examineTarget(target, replace, found, reason)) return false;
  int error = 0;
  if (found.kind == TargetKind::kDirect) {
    _descriptor = openForWriting(target.c_str(), error);
    if (_descriptor < 0) reason = wordsOf(error);
    return _descriptor >= 0;
  }
  _target = followLinks(target);
  _replace = replace;

  _temporary = folderOf(_target) + makeTemporaryName();
  // The name is registered first: a signal between the two steps must not leave the file.
  _slot = takeSlot(_temporary);
  if (_slot < 0) {
    reason =
        _temporary.size() < PATH_MAX ? "too many outputs are unfinished" : wordsOf(ENAMETOOLONG);
    return false;
  }
  const bool keepsRights = found.kind == TargetKind::kRegular;
  _descriptor =
      open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, keepsRights ? 0600 : 0666);
  if (_descriptor >= 0 && (!keepsRights || fchmod(_descriptor, found.rights) == 0)) return true;
  error = errno;
  reason = wordsOf(error);
  // A file of that name that is not ours stays.
  if (_descriptor < 0) releaseSlot(_slot);
  discard();
  return false;
}

bool OutputFile::commit(std::string& reason) {
  int error = closeDescriptor(_descriptor);
  _descriptor = -1;
  if (error == 0 && _slot >= 0) {
    if (_replace) {
      error = rename(_temporary.c_str(), _target.c_str()) == 0 ? 0 : errno;
    } else {
      error = renameWithoutReplacing(_temporary, _target);
    }
    if (error == 0) releaseSlot(_slot);
  }
  if (error != 0) reason = wordsOf(error);
  discard();
  return error == 0;
}

void OutputFile::discard() {
  if (_descriptor >= 0) closeDescriptor(_descriptor);
  _descriptor = -1;
  if (_slot >= 0) unlink(_temporary.c_str());
  releaseSlot(_slot);
}

bool canCreateOutput(const std::string& target, bool replace, std::string& reason) {
  Target found;
  return examineTarget(target, replace, found, reason);
}

void removeOutputsOnSignals() {
  struct sigaction action = {};
  action.sa_handler = removeOutputsAndExit;
  // One signal at a time: the second waits until the process has ended.
  sigfillset(&action.sa_mask);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before = {};
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
      sigaction(signal, &action, nullptr);
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace kova::platform
