#include "kovabase/platform/FileSystem.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kova::platform {

namespace {

// No controlling terminal, no child that inherits it, no waiting for the other end of a pipe.
constexpr int kQuietly = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
constexpr int kDirectoryItself = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | kQuietly;

class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : _number(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { reset(-1); }

  void reset(int number) noexcept {
    if (_number >= 0) close(_number);
    _number = number;
  }
  int release() noexcept { return std::exchange(_number, -1); }
  int number() const noexcept { return _number; }
  bool isOpen() const noexcept { return _number >= 0; }

 private:
  int _number;
};

int openRetrying(const char* path, int flags, mode_t permissions = 0) noexcept {
  int descriptor = -1;
  do {
    descriptor = open(path, flags, permissions);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

bool isDirectory(int descriptor) noexcept {
  struct stat status = {};
  return fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

std::FILE* closeKeepingError(std::FILE* stream, int error) noexcept {
  std::fclose(stream);
  errno = error;
  return nullptr;
}

bool query(int directory, const char* path, int flags, FileStatus& status) noexcept {
  struct statx answer = {};
  if (statx(directory, path, flags, STATX_BASIC_STATS | STATX_BTIME, &answer) != 0) return false;
  const bool knowsBirth = (answer.stx_mask & STATX_BTIME) != 0;
  status.isDirectory = S_ISDIR(answer.stx_mode);
  status.isRegular = S_ISREG(answer.stx_mode);
  status.bytes = answer.stx_size;
  status.created = knowsBirth ? answer.stx_btime.tv_sec : answer.stx_ctime.tv_sec;
  status.accessed = answer.stx_atime.tv_sec;
  status.modified = answer.stx_mtime.tv_sec;
  return true;
}

bool isSelfOrParent(const char* name) noexcept {
  return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

/// One directory on the way from the root of a tree to where its removal is.
struct Level {
  std::string name;
  dev_t device = 0;
  ino_t inode = 0;
  std::vector<std::string> subdirectories;
};

// Removes what is no directory and collects the names of what is.
Level emptyOfFiles(int directory, std::string name) {
  Level level;
  level.name = std::move(name);
  struct stat status = {};
  if (fstat(directory, &status) == 0) {
    level.device = status.st_dev;
    level.inode = status.st_ino;
  }
  // A handle of its own: the stream takes it over, and reads from the start.
  const int copy = openat(directory, ".", kDirectoryItself);
  if (copy < 0) return level;
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(fdopendir(copy), &closedir);
  if (entries == nullptr) {
    close(copy);
    return level;
  }
  while (const dirent* entry = readdir(entries.get())) {
    if (isSelfOrParent(entry->d_name)) continue;
    if (entry->d_type != DT_DIR && unlinkat(directory, entry->d_name, 0) == 0) continue;
    // What is no directory after all will refuse to be opened as one.
    if (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN) {
      level.subdirectories.emplace_back(entry->d_name);
    }
  }
  return level;
}

bool isSameDirectory(int directory, const Level& level) noexcept {
  struct stat status = {};
  return fstat(directory, &status) == 0 && status.st_dev == level.device &&
         status.st_ino == level.inode;
}

void emptyTree(Descriptor& current) {
  std::vector<Level> levels;
  levels.push_back(emptyOfFiles(current.number(), {}));
  for (;;) {
    std::vector<std::string>& names = levels.back().subdirectories;
    if (!names.empty()) {
      std::string name = std::move(names.back());
      names.pop_back();
      const int child = openat(current.number(), name.c_str(), kDirectoryItself);
      if (child < 0) {
        unlinkat(current.number(), name.c_str(), AT_REMOVEDIR);
        continue;
      }
      current.reset(child);
      levels.push_back(emptyOfFiles(child, std::move(name)));
      continue;
    }
    if (levels.size() == 1) return;
    const std::string name = std::move(levels.back().name);
    levels.pop_back();
    current.reset(openat(current.number(), "..", kDirectoryItself));
    // Somebody has moved the directory elsewhere: what is around it now is not ours to remove.
    if (!current.isOpen() || !isSameDirectory(current.number(), levels.back())) return;
    unlinkat(current.number(), name.c_str(), AT_REMOVEDIR);
  }
}

template <class Call>
std::int64_t transfer(std::uint64_t offset, std::size_t count, const Call& call) noexcept {
  constexpr std::uint64_t kLargest = std::numeric_limits<off_t>::max();
  if (offset > kLargest || count > kLargest - offset) {
    errno = EINVAL;
    return -1;
  }
  std::size_t done = 0;
  while (done < count) {
    const ssize_t step = call(done, static_cast<off_t>(offset + done));
    if (step < 0 && errno == EINTR) continue;
    if (step < 0 && done == 0) return -1;
    if (step <= 0) break;
    done += static_cast<std::size_t>(step);
  }
  return static_cast<std::int64_t>(done);
}

}  // namespace

bool queryFile(const char* path, FileStatus& status) noexcept {
  return query(AT_FDCWD, path, 0, status);
}

bool queryDescriptor(int descriptor, FileStatus& status) noexcept {
  return query(descriptor, "", AT_EMPTY_PATH, status);
}

void enterStatus(const FileStatus* status, struct stat64& record) noexcept {
  record = {};
  if (status == nullptr) return;
  record.st_size = static_cast<off64_t>(status->bytes & 0xFFFFFFFFU);
  record.st_atim.tv_sec = status->accessed;
  record.st_mtim.tv_sec = status->modified;
  record.st_ctim.tv_sec = status->created;
}

bool canOpenFile(const char* path) noexcept {
  struct stat status = {};
  if (stat(path, &status) != 0 || S_ISDIR(status.st_mode)) return false;
  if (!S_ISREG(status.st_mode)) return faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0;
  const Descriptor file(openRetrying(path, O_RDONLY | kQuietly));
  return file.isOpen();
}

bool doesExist(const char* path) noexcept { return access(path, F_OK) == 0; }

std::FILE* openStream(const char* path, const char* mode) noexcept {
  // "e" keeps the stream from programs that are started. It comes second, since the C library looks
  // only at the first few letters.
  char privateMode[32];
  const int length = std::snprintf(privateMode, sizeof privateMode, "%.1se%s", mode,
                                   mode[0] != '\0' ? mode + 1 : "");
  if (mode[0] == '\0' || length >= static_cast<int>(sizeof privateMode)) {
    errno = EINVAL;
    return nullptr;
  }
  std::FILE* const stream = std::fopen(path, privateMode);
  if (stream != nullptr && isDirectory(fileno(stream))) return closeKeepingError(stream, EISDIR);
  return stream;
}

std::FILE* openPrivateStream(const char* path, const char* mode, bool create) noexcept {
  const bool both = std::strchr(mode, '+') != nullptr;
  int flags = O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
  switch (mode[0]) {
    case 'r': flags |= both ? O_RDWR : O_RDONLY; break;
    case 'w': flags |= (both ? O_RDWR : O_WRONLY) | (create ? O_CREAT | O_EXCL : O_TRUNC); break;
    case 'a':
      flags |= (both ? O_RDWR : O_WRONLY) | O_APPEND | (create ? O_CREAT | O_EXCL : 0);
      break;
    default: errno = EINVAL; return nullptr;
  }
  Descriptor file(openRetrying(path, flags, S_IRUSR | S_IWUSR));
  if (!file.isOpen()) return nullptr;
  std::FILE* const stream = fdopen(file.number(), mode);
  if (stream == nullptr) return nullptr;
  file.release();
  if (isDirectory(fileno(stream))) return closeKeepingError(stream, EISDIR);
  return stream;
}

bool removeFile(const char* path) noexcept { return unlink(path) == 0; }

bool renameWithoutReplacing(const char* from, const char* to) noexcept {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // The file system cannot promise it. A hard link can, but not for directories, nor everywhere.
  if (link(from, to) == 0) return unlink(from) == 0;
  if (errno == EEXIST) return false;
  struct stat status = {};
  if (lstat(to, &status) == 0 || errno != ENOENT) return false;
  return rename(from, to) == 0;
}

bool makeDirectory(const char* path) noexcept { return mkdir(path, 0777) == 0; }

bool removeEmptyDirectory(const char* path) noexcept { return rmdir(path) == 0; }

void removeTree(const char* path) {
  // With a slash at its end a link would be followed.
  std::string root = path;
  while (root.size() > 1 && root.back() == '/') root.pop_back();

  struct stat status = {};
  if (lstat(root.c_str(), &status) != 0) return;
  if (S_ISLNK(status.st_mode)) {
    if (stat(root.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) unlink(root.c_str());
    return;
  }
  {
    Descriptor current(openRetrying(root.c_str(), kDirectoryItself));
    if (current.isOpen()) emptyTree(current);
  }
  rmdir(root.c_str());
}

bool currentDirectory(std::string& path) {
  // The system itself knows no longer one.
  char text[PATH_MAX];
  if (getcwd(text, sizeof text) == nullptr) return false;
  path = text;
  return true;
}

int openDescriptor(const char* path, Access access) noexcept {
  const int flags = access == Access::kRead    ? O_RDONLY
                    : access == Access::kWrite ? O_WRONLY | O_CREAT
                                               : O_RDWR | O_CREAT;
  Descriptor file(openRetrying(path, flags | kQuietly, 0666));
  if (file.isOpen() && isDirectory(file.number())) {
    errno = EISDIR;
    return -1;
  }
  return file.release();
}

std::int64_t readAt(int descriptor, std::uint64_t offset, void* to, std::size_t count) noexcept {
  return transfer(offset, count, [&](std::size_t done, off_t position) {
    return pread(descriptor, static_cast<char*>(to) + done, count - done, position);
  });
}

std::int64_t writeAt(int descriptor, std::uint64_t offset, const void* from,
                     std::size_t count) noexcept {
  return transfer(offset, count, [&](std::size_t done, off_t position) {
    return pwrite(descriptor, static_cast<const char*>(from) + done, count - done, position);
  });
}

DirectoryEntries::~DirectoryEntries() { close(); }

bool DirectoryEntries::open(const char* path) noexcept {
  close();
  _directory = opendir(path);
  return _directory != nullptr;
}

void DirectoryEntries::close() noexcept {
  if (_directory != nullptr) closedir(static_cast<DIR*>(_directory));
  _directory = nullptr;
}

bool DirectoryEntries::next(Entry& entry) {
  if (_directory == nullptr) return false;
  DIR* const directory = static_cast<DIR*>(_directory);
  const dirent* found = readdir(directory);
  while (found != nullptr && isSelfOrParent(found->d_name)) found = readdir(directory);
  if (found == nullptr) return false;

  entry.name = found->d_name;
  entry.isLink = found->d_type == DT_LNK;
  entry.isDirectory = found->d_type == DT_DIR;
  struct stat status = {};
  if (found->d_type == DT_UNKNOWN &&
      fstatat(dirfd(directory), found->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
    entry.isLink = S_ISLNK(status.st_mode);
    entry.isDirectory = S_ISDIR(status.st_mode);
  }
  if (entry.isLink) {
    entry.isDirectory =
        fstatat(dirfd(directory), found->d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
  }
  return true;
}

}  // namespace kova::platform
