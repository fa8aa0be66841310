#pragma once

#include "kovabase/events/KOVAEventLevel.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova::translate {

/// The exit statuses of the program; a signal adds its number to 128.
enum ExitStatus : int { kAllTranslated = 0, kFileFailed = 1, kUsage = 2, kInternal = 3 };

/// What the user has asked for.
struct Settings {
  enum class Statistics { kNone, kText, kJson };
  enum class Progress { kAuto, kNone, kJson };

  std::vector<std::string> inputs;
  /// File or "-"; empty when not given.
  std::string output;
  /// Folder; empty when not given.
  std::string outputFolder;
  /// The format to write.
  std::string format;
  /// Configuration files, and options with their values behind them, in the order in which they
  /// were given. --unit and --tolerance are among the options.
  std::vector<std::string> configurations;
  std::vector<std::pair<std::string, std::string>> assignments;
  /// The most files that are translated at one time; 0 when not given.
  int jobs = 0;
  /// Empty for all layers; 0 is what is on no layer.
  std::vector<int> layers;
  /// Patterns of names; empty for everything.
  std::vector<std::string> selections;
  /// File; empty when not given.
  std::string preview;
  Statistics statistics = Statistics::kNone;
  Progress progress = Progress::kAuto;
  std::optional<KOVAEventLevel> logLevel;
  /// Folder; empty when not given.
  std::string logFolder;
  bool isList = false;
  bool isOptionList = false;
  bool isEnvironmentList = false;
  bool isDryRun = false;
  bool isForced = false;

  bool IsListing() const { return isList || isOptionList || isEnvironmentList; }
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

/// "kova-translate: PROBLEM" and where help is found.
std::string describeUsageProblem(const std::string& problem);

}  // namespace kova::translate
