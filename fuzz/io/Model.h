#pragma once

#include "kovabase/io/KOVADefaultBuffer.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

/// Bytes that steer a run, one after the other; 0 when there are no more.
class Steps {
 public:
  Steps(const std::uint8_t* data, std::size_t size) : _data(data), _size(size) {}
  bool isEmpty() const { return _size == 0; }
  std::uint8_t next() {
    if (_size == 0) return 0;
    --_size;
    return *_data++;
  }

 private:
  const std::uint8_t* _data;
  std::size_t _size;
};

inline void require(bool holds) {
  if (!holds) std::abort();
}

/// `seed` again and again up to `bytes` bytes, a little different each time, so that places that
/// are a window apart do not look alike.
inline std::string spread(const std::string& seed, std::size_t bytes, bool isText) {
  if (seed.empty()) return seed;
  std::string data;
  for (unsigned round = 0; data.size() < bytes; ++round) {
    data += seed;
    data += isText ? std::to_string(round) : std::string(1, static_cast<char>(round));
  }
  data.resize(bytes);
  return data;
}

/// One file for all runs of this process, removed at its end.
inline const std::string& filePath() {
  static const struct Name {
    Name() {
      path = (std::filesystem::temp_directory_path() / "kova-fuzz-XXXXXX").string();
      const int descriptor = mkstemp(path.data());
      require(descriptor >= 0);
      close(descriptor);
    }
    ~Name() { std::remove(path.c_str()); }
    std::string path;
  } name;
  return name.path;
}

inline KOVAFileHandle fuzzFile() {
  return KOVAFileHandle(new KOVAFile(KOVAFilePath(filePath().c_str(), false)));
}
