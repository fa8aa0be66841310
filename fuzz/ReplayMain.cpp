// Runs a fuzz target over files, for machines without libFuzzer and for the test suite.
// Arguments are files and folders; a folder stands for every file below it.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool runFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    std::fprintf(stderr, "cannot read '%s'\n", path.c_str());
    return false;
  }
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  // An exact heap block lets the sanitizer see a read past the end.
  std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  input.shrink_to_fit();
  LLVMFuzzerTestOneInput(input.data(), input.size());
  return true;
}

int run(int count, char** arguments) {
  std::size_t files = 0;
  for (int i = 1; i < count; ++i) {
    const std::filesystem::path path(arguments[i]);
    if (std::filesystem::is_directory(path)) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (!entry.is_regular_file()) continue;
        if (!runFile(entry.path())) return 1;
        ++files;
      }
    } else {
      if (!runFile(path)) return 1;
      ++files;
    }
  }
  std::printf("%zu inputs replayed\n", files);
  return files == 0 ? 1 : 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return run(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
