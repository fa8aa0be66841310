#pragma once

#include <string>
#include <vector>

namespace kova::translate {

/// The exit statuses of the program; a signal adds its number to 128.
enum ExitStatus : int { kAllTranslated = 0, kFileFailed = 1, kUsage = 2, kInternal = 3 };

/// What the user has asked for.
struct Settings {
  enum class Statistics { kNone, kText, kJson };

  std::vector<std::string> inputs;
  /// File or "-"; empty when not given.
  std::string output;
  /// Folder; empty when not given.
  std::string outputFolder;
  /// The format to write.
  std::string format;
  Statistics statistics = Statistics::kNone;
  bool isList = false;
  bool isDryRun = false;
  bool isForced = false;
};

/// What became of the command line.
struct Parsed {
  /// Whether there is something to do; otherwise the program prints `text` and ends with `status`:
  /// help and version on standard output, what is wrong on standard error.
  bool isComplete = false;
  ExitStatus status = kAllTranslated;
  std::string text;
  Settings settings;
};

/// Reads the arguments and checks everything that can be checked without touching a file.
Parsed parseCommandLine(int count, char** arguments);

}  // namespace kova::translate
