#pragma once

#include <string>

/// Files that appear under their name only when they are complete.
namespace kova::translate {

/// One output, written to a file of another name that takes the place of its target in `Commit`.
/// Without that it is removed, also when a signal that `removeOutputsOnSignals` handles ends the
/// process. That file stands in the folder of its target or, when the target is standard output or
/// no regular file (a device, a pipe), in the folder for temporary files; its bytes are handed on
/// in `Commit` then. Not copyable; one thread for each object.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Removes what was not committed.
  ~OutputFile();

  /// Creates the file to write to, empty. A symbolic link is followed: the file that it names is
  /// the target.
  /// @param target  as the system spells it; "-" is standard output.
  /// @param replace  whether `Commit` may take the place of an existing file.
  /// @param reason  receives the cause in words on failure.
  bool Create(const std::string& target, bool replace, std::string& reason);

  /// The file to write to, until `Commit`.
  const std::string& GetPath() const { return _temporary; }

  /// Gives the file the target's name and, when it replaces one, its access rights; nobody sees a
  /// part of it. When a file of that name has come meanwhile and may not be replaced, this fails.
  bool Commit(std::string& reason);

 private:
  struct Slot;
  friend void removeOutputsOnSignals();

  static Slot* TakeSlot(const std::string& path);
  static void RemoveAllAndExit(int signal);
  bool Open(const std::string& folder, unsigned rights, std::string& reason);
  void Discard();

  std::string _target;
  std::string _temporary;
  Slot* _slot = nullptr;
  bool _isDirect = false;
  bool _replace = false;
  // Of the file that is replaced; -1 when there is none.
  int _rights = -1;
};

/// Needed on the stack of whoever opens the file of an output for writing. While one lives, signals
/// wait, for less than a tenth of a second; once a signal ends the process none is made any more,
/// so that no file appears behind the removal.
class CreationGuard {
 public:
  CreationGuard();
  CreationGuard(const CreationGuard&) = delete;
  CreationGuard& operator=(const CreationGuard&) = delete;
  ~CreationGuard();

 private:
  // The bits of the signals that this object holds back.
  unsigned _blocked = 0;
};

/// Whether an output of this name may be started: says why not, as `OutputFile::Create` would,
/// without changing anything.
bool canCreateOutput(const std::string& target, bool replace, std::string& reason);

/// From now on SIGINT, SIGTERM and SIGHUP remove all unfinished outputs and end the process with
/// status 128 plus the signal's number, whatever its threads do, except those signals that the
/// process was started with as ignored. Writing to a closed pipe or beyond the limit on file sizes
/// becomes an error of the write instead of the process's end.
void removeOutputsOnSignals();

}  // namespace kova::translate
