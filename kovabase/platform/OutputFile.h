#pragma once

#include <string>

/// Files that appear under their name only when they are complete.
namespace kova::platform {

/// One output. It is written to a temporary name in the folder of its target and takes the
/// target's name in `commit`; without that it is removed, also when a signal that
/// `removeOutputsOnSignals` handles ends the process. A target that exists and is no regular file
/// (a device, a pipe) is written directly. Not copyable; one thread for each object.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Removes what was not committed.
  ~OutputFile();

  /// Starts the output. A symbolic link is followed: the file that it names is the target.
  /// @param target  UTF-8.
  /// @param replace  whether `commit` may take the place of an existing file.
  /// @param reason  receives the cause in words on failure.
  bool create(const std::string& target, bool replace, std::string& reason);

  /// Where to write, until `commit`; -1 before `create`.
  int descriptor() const { return _descriptor; }

  /// Closes the file and gives it the target's name, in one step: nobody sees a part of it. When a
  /// file of that name has come meanwhile and may not be replaced, this fails.
  bool commit(std::string& reason);

 private:
  void discard();

  std::string _target;
  std::string _temporary;
  int _descriptor = -1;
  int _slot = -1;
  bool _replace = false;
};

/// Whether an output of this name may be started: says why not, as `create` would, without
/// changing anything.
bool canCreateOutput(const std::string& target, bool replace, std::string& reason);

/// From now on SIGINT, SIGTERM and SIGHUP remove all unfinished outputs and end the process at
/// once with status 128 plus the signal's number, except those that the process was started with
/// as ignored. Writing to a closed pipe or beyond the limit on file sizes becomes an error of the
/// write instead of the process's end.
void removeOutputsOnSignals();

}  // namespace kova::platform
