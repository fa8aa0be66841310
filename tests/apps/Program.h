#pragma once

#include <string>
#include <vector>

namespace kova::test {

/// What a program did: its exit status, or 1000 plus the signal that ended it, and what it wrote.
struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

/// Runs a program in a folder of its own, removed with this object. The process and its program
/// are real; nothing is taken from the environment but what `Set` adds.
class Workshop {
 public:
  Workshop();
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;
  ~Workshop();

  /// In the folder, with its paths relative to it.
  Outcome Start(const std::vector<std::string>& command, const std::string& input = {}) const;

  /// Runs a command line of the shell in the folder; `$TRANSLATE` and `$GENERATE` are the programs.
  Outcome Shell(const std::string& commandLine) const;

  void Set(const std::string& name, const std::string& value);

  std::string Path(const std::string& name) const { return _folder + "/" + name; }
  void WriteFile(const std::string& name, const std::string& bytes) const;
  std::string ReadFile(const std::string& name) const;
  bool Exists(const std::string& name) const;
  /// All names in the folder, sorted.
  std::vector<std::string> List() const;

 private:
  std::string _folder;
  std::vector<std::string> _environment;
};

}  // namespace kova::test
