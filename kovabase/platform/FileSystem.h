#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

struct stat64;

/// Files and directories by path: zero-terminated in the system's own form, never null. What is
/// opened here is not inherited by programs that are started.
namespace kova::platform {

struct FileStatus {
  bool isDirectory;
  /// Neither a directory nor a pipe, socket or device.
  bool isRegular;
  std::uint64_t bytes;
  /// Seconds since 1970-01-01 UTC. Where the file system does not know when a file was created,
  /// this is the time of its last change of status.
  std::int64_t created;
  std::int64_t accessed;
  std::int64_t modified;
};

/// Follows links. @return false, with `status` untouched, when there is no such file.
bool queryFile(const char* path, FileStatus& status) noexcept;

/// Clears the record and, unless `status` is null, enters the low 32 bits of the size and the
/// times, that of creation as the time of change.
void enterStatus(const FileStatus* status, struct stat64& record) noexcept;

/// Whether the path names a file, not a directory, that this process may read. Regular files are
/// opened and closed; pipes and devices are only asked for the permission, so that nobody waits and
/// no reader appears at the other end.
bool canOpenFile(const char* path) noexcept;

/// Whether anything is there, when links are followed.
bool doesExist(const char* path) noexcept;

/// `fopen` that refuses directories. @return null on failure, with `errno` set.
std::FILE* openStream(const char* path, const char* mode) noexcept;

/// Opens a stream for which only the owner has permission, and through no link.
/// @param create  whether the modes "w" and "a" create the file, which must not exist then; else
///   they need an existing one, as "r" always does.
std::FILE* openPrivateStream(const char* path, const char* mode, bool create) noexcept;

/// Removes a file or a link; never a directory.
bool removeFile(const char* path) noexcept;

/// Fails when `to` exists; on file systems that can promise this, also when it appears meanwhile.
bool renameWithoutReplacing(const char* from, const char* to) noexcept;

bool makeDirectory(const char* path) noexcept;
bool removeEmptyDirectory(const char* path) noexcept;

/// Removes a directory with all its content, as far as the permissions go. Works along open
/// directories, in constant stack and with two descriptors at any depth; links are removed and
/// never followed. When the path itself is a link to a directory, the link alone is removed.
void removeTree(const char* path);

/// @return false when the directory is gone, cannot be asked for or is too long.
bool currentDirectory(std::string& path);

enum class Access { kRead, kWrite, kReadAndWrite };

/// Opens a file as a descriptor, waiting for no other end of a pipe and refusing directories.
/// Writing creates a missing file and keeps the content of an existing one.
/// @return -1 on failure.
int openDescriptor(const char* path, Access access) noexcept;

/// Both carry on after interruptions and partial transfers, and leave no file position behind.
/// @return the bytes transferred: fewer than asked for at the end of the file (reading) or when the
///   system reports an error after some (writing); -1 for an error before the first.
std::int64_t readAt(int descriptor, std::uint64_t offset, void* to, std::size_t count) noexcept;
std::int64_t writeAt(int descriptor, std::uint64_t offset, const void* from,
                     std::size_t count) noexcept;

/// @return false when the descriptor is not open.
bool queryDescriptor(int descriptor, FileStatus& status) noexcept;

/// The entries of one directory, in the order of the file system. Not copyable; one thread.
class DirectoryEntries {
 public:
  DirectoryEntries() noexcept = default;
  DirectoryEntries(const DirectoryEntries&) = delete;
  DirectoryEntries& operator=(const DirectoryEntries&) = delete;
  ~DirectoryEntries();

  bool open(const char* path) noexcept;
  void close() noexcept;

  struct Entry {
    std::string name;
    /// True for a link to a directory too.
    bool isDirectory;
    bool isLink;
  };

  /// Skips "." and "..". @return false at the end, or when reading fails or none is open.
  bool next(Entry& entry);

 private:
  void* _directory = nullptr;
};

}  // namespace kova::platform
