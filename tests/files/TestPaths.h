#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kova::test {

inline KOVAString text(const std::string& utf8) {
  return KOVAString::fromBytes(utf8.data(), static_cast<int>(utf8.size()), "UTF-8");
}

inline std::string utf8(const KOVAString& text) {
  std::string bytes(static_cast<std::size_t>(text.getConvertToUTF8Size()), '\0');
  EXPECT_TRUE(text.convertToUTF8(bytes.data(), static_cast<int>(bytes.size())).IsSuccess());
  bytes.pop_back();
  return bytes;
}

inline std::string utf8(const KOVAFilePath& path) { return utf8(path.GetPath()); }

/// An empty directory of its own, gone with this object.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "kova-files-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    _path = std::filesystem::canonical(name);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }

  std::filesystem::path operator/(const std::string& name) const { return _path / name; }
  const std::filesystem::path& native() const { return _path; }
  KOVAFilePath path() const { return KOVAFilePath(text(_path.string())); }
  KOVAFilePath path(const std::string& name) const {
    return KOVAFilePath(text((_path / name).string()));
  }

  /// Creates a file, and the directories that it is in.
  void write(const std::string& name, const std::string& content = "content") const {
    std::filesystem::create_directories((_path / name).parent_path());
    std::ofstream(_path / name, std::ios::binary) << content;
  }

 private:
  std::filesystem::path _path;
};

/// Works in another directory for a while.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::filesystem::path& path)
      : _previous(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory() { std::filesystem::current_path(_previous); }

 private:
  std::filesystem::path _previous;
};

}  // namespace kova::test
