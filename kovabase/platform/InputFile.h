#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Files that are read from front to back, in blocks: regular files and standard input.
namespace kova::platform {

/// One open input. Reading in blocks rather than mapping keeps memory small and turns a file that
/// is cut short meanwhile into a short read instead of a fault. Not copyable; one thread.
class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// Opens a regular file. Directories, pipes, sockets and devices are refused, without waiting
  /// for anybody at their other end.
  /// @param path  UTF-8.
  /// @param reason  receives the cause in words on failure.
  bool open(const std::string& path, std::string& reason);

  /// Takes standard input, whatever it is; it stays open when this object is destroyed.
  bool openStandardInput(std::string& reason);

  /// Bytes from the first to the last, or -1 when only reading can tell.
  std::int64_t size() const { return _size; }

  /// Reads up to `capacity` bytes into `to`; less than that only at the end of the file.
  /// @return the bytes read, 0 at the end, or -1 with `reason` set.
  std::int64_t read(char* to, std::size_t capacity, std::string& reason);

 private:
  int _descriptor = -1;
  bool _isOwned = false;
  std::int64_t _size = -1;
};

}  // namespace kova::platform
