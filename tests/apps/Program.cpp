#include "tests/apps/Program.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace kova::test {

namespace {

std::string readAll(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void redirect(const std::string& path, int flags, int descriptor) {
  const int opened = open(path.c_str(), flags, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
  close(opened);
}

}  // namespace

Workshop::Workshop() {
  std::string pattern = std::filesystem::temp_directory_path().string() + "/kova-apps-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  _folder = pattern + "/folder";
  std::filesystem::create_directory(_folder);
  Set("TRANSLATE", KOVA_TRANSLATE);
  Set("GENERATE", KOVA_GENERATE);
  Set("PATH", std::getenv("PATH"));
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) Set(name, value);
  }
}

Workshop::~Workshop() {
  std::error_code ignored;
  std::filesystem::remove_all(std::filesystem::path(_folder).parent_path(), ignored);
}

Outcome Workshop::Start(const std::vector<std::string>& command, const std::string& input) const {
  const std::string beside = std::filesystem::path(_folder).parent_path().string();
  std::ofstream(beside + "/in", std::ios::binary) << input;
  std::vector<char*> arguments;
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  std::vector<char*> environment;
  for (const std::string& entry : _environment)
    environment.push_back(const_cast<char*>(entry.c_str()));
  environment.push_back(nullptr);

  const pid_t child = fork();
  if (child == 0) {
    if (chdir(_folder.c_str()) != 0) _exit(126);
    redirect(beside + "/in", O_RDONLY, 0);
    redirect(beside + "/out", O_WRONLY | O_CREAT | O_TRUNC, 1);
    redirect(beside + "/err", O_WRONLY | O_CREAT | O_TRUNC, 2);
    execvpe(arguments[0], arguments.data(), environment.data());
    _exit(127);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) throw std::runtime_error("no process");
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status),
          readAll(beside + "/out"), readAll(beside + "/err")};
}

Outcome Workshop::Shell(const std::string& commandLine) const {
  return Start({"/bin/sh", "-c", commandLine});
}

void Workshop::Set(const std::string& name, const std::string& value) {
  std::erase_if(_environment,
                [&](const std::string& entry) { return entry.starts_with(name + "="); });
  _environment.push_back(name + "=" + value);
}

void Workshop::WriteFile(const std::string& name, const std::string& bytes) const {
  std::ofstream(Path(name), std::ios::binary) << bytes;
}

std::string Workshop::ReadFile(const std::string& name) const { return readAll(Path(name)); }

bool Workshop::Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }

std::vector<std::string> Workshop::List() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(_folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace kova::test
