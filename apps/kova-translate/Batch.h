#pragma once

#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Console.h"
#include "apps/kova-translate/MessageBus.h"
#include "apps/kova-translate/Plan.h"
#include "apps/kova-translate/Progress.h"
#include "apps/kova-translate/Translation.h"

#include <memory>
#include <vector>

namespace kova::translate {

/// Runs all files of one call of the program: with one worker one after the other on the main
/// thread, with more as jobs on the process's pool. What is told and printed is the same.
class Batch {
 public:
  /// All must live as long as the object.
  Batch(const Settings& settings, const Translation& translation, MessageBus& bus,
        ProgressDisplay& progress, Console& console)
      : _settings(settings),
        _translation(translation),
        _bus(bus),
        _progress(progress),
        _console(console) {}

  ExitStatus Run(const std::vector<Task>& tasks);

 private:
  class Job;

  void RunInParallel(int workers);
  void RunOne(FileRun& run);
  void Finish(FileRun& run);

  const Settings& _settings;
  const Translation& _translation;
  MessageBus& _bus;
  ProgressDisplay& _progress;
  Console& _console;
  std::vector<std::unique_ptr<FileRun>> _runs;
  ExitStatus _status = kAllTranslated;
};

}  // namespace kova::translate
