#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Walks the arguments of a command line: options begin with a dash, letters may be grouped ("-abc"
/// is a, b and c), and words may be abbreviated ("-verb" is the first option that begins with it).
/// A dash alone is an argument. The arguments belong to the caller and outlive this object.
///
///     KOVAArgs args(argc, argv);
///     char* names[] = {verbose, o};  // "verbose", and "o:" for a letter with an argument
///     for (int which = 0; args.GetNextOption(2, names, &which);) ...
class KOVABASE_API KOVAArgs {
 public:
  /// @param argv  `argc` arguments, the program's name first. Null, and null among them, is no
  ///   option.
  KOVAArgs(int argc, char** argv);

  /// Advances. @return the argument, or null behind the last one.
  char* GetNextArg();
  /// Advances, at most to one behind the last argument.
  /// @return whether the current argument was not the last one before.
  bool Shift();
  /// Advances to the argument of the current option.
  /// @return false, with nothing moved, when there is none: at the end, or before another option.
  bool GetOptionArgument(char** argument);
  /// Advances to the next option and passes over what is none, also unknown options.
  /// @param count  entries of `names`.
  /// @param names  without dashes; a letter with ':' behind it takes an argument.
  /// @param which  receives the index of the name that matches, -1 without one.
  /// @return false when no option is left, with nothing moved; also for a letter in a group that
  ///   is no option, and the next call goes on behind it.
  bool GetNextOption(int count, char** names, int* which);

 private:
  bool AreThereOneMoreOptions() const { return _current < _lastOption; }
  bool IsAnOption(const char* argument, int count, char** names, int& which);
  bool IsLetterAnOption(char letter, int count, char** names, int& which) const;

  int _last;
  char** _arguments;
  int _current = 0;
  int _lastOption = 0;
  bool _inCluster = false;
  char _currentLetter = '?';
  int _letterPosition = 0;
};
