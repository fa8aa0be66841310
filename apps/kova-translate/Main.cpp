#include "apps/kova-translate/Batch.h"
#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Console.h"
#include "apps/kova-translate/Listings.h"
#include "apps/kova-translate/Loggers.h"
#include "apps/kova-translate/MessageBus.h"
#include "apps/kova-translate/Options.h"
#include "apps/kova-translate/Plan.h"
#include "apps/kova-translate/Progress.h"
#include "apps/kova-translate/Translation.h"
#include "apps/kova-translate/TranslatorSet.h"
#include "apps/kova-translate/system/OutputFile.h"
#include "apps/kova-translate/system/StandardStreams.h"
#include "kovabase/events/KOVATaskEvents.h"
#include "kovabase/files/KOVALibraryManager.h"
#include "kovabase/foundation/KOVAUnrecoverableError.h"

#include <exception>

namespace {

using namespace kova::translate;

ExitStatus refuse(const std::string& problem, Console& console) {
  console.PrintError(describeUsageProblem(problem));
  return kUsage;
}

ExitStatus printLists(const Settings& settings, KOVAOptions& options, Console& console) {
  std::string problem;
  if (!applyEnvironment(options, problem)) return refuse(problem, console);
  if (settings.isList) {
    TranslatorSet translators;
    console.Print(listTranslators(translators));
  }
  if (settings.isOptionList) console.Print(listOptions(options));
  if (settings.isEnvironmentList) console.Print(listEnvironment());
  return kAllTranslated;
}

// Loads the translators that the files need. One that is missing becomes the problem of its files.
void loadTranslators(std::vector<Task>& tasks, TranslatorSet& translators) {
  for (Task& task : tasks) {
    for (const Format* format : {task.source, task.target}) {
      if (!task.problem.empty() || format == nullptr) continue;
      const TranslatorSet::Entry& entry = translators.Load(*format);
      if (entry.isUsable) continue;
      const std::string last = entry.places.empty() ? std::string() : entry.places.back() + ": ";
      task.problem = std::string("there is no translator for '") + format->name +
                     "': " + (entry.reason.starts_with(last) ? std::string() : last) +
                     entry.reason + "; --list tells every place that was tried";
    }
  }
}

ExitStatus translate(const Settings& settings, KOVAOptions& options, Console& console) {
  MessageBus bus;
  ProgressDisplay progress(settings.progress, console);
  bus.AddListener(&progress);
  std::string problem;
  const Loggers loggers(settings, problem);
  if (!problem.empty() || !applyEnvironment(options, problem)) return refuse(problem, console);
  setUnits(options);
  options.Dump("Options:", nullptr, nullptr);
  KOVAEndOptionsTaskEvent::Fire(KOVAResultCode::kSuccess);

  std::vector<Task> tasks = makePlan(settings);
  TranslatorSet translators;
  loadTranslators(tasks, translators);
  const Translation translation(settings, options, translators);
  const ExitStatus status = Batch(settings, translation, bus, progress, console).Run(tasks);
  KOVALibraryManager::FreeLibraries();
  return status;
}

ExitStatus run(int count, char** arguments, Console& console) {
  const Parsed parsed = parseCommandLine(count, arguments);
  if (!parsed.isComplete) {
    if (parsed.status == kAllTranslated) {
      console.Print(parsed.text);
    } else {
      console.PrintError(parsed.text);
    }
    return parsed.status;
  }
  KOVAOptions options;
  std::string problem;
  if (!gatherOptions(parsed.settings, options, problem)) return refuse(problem, console);
  return parsed.settings.IsListing() ? printLists(parsed.settings, options, console)
                                     : translate(parsed.settings, options, console);
}

}  // namespace

int main(int count, char** arguments) {
  fillStandardStreams();
  removeOutputsOnSignals();
  Console console;
  ExitStatus status = kInternal;
  try {
    status = run(count, arguments, console);
  } catch (const std::exception& error) {
    console.PrintError(std::string("kova-translate: internal error: ") + error.what() + "\n");
  } catch (const KOVAUnrecoverableError&) {
    console.PrintError("kova-translate: internal error: there is not enough memory\n");
  }
  const std::string reason = console.Finish();
  if (!reason.empty()) {
    console.PrintError("kova-translate: standard output cannot be written: " + reason + "\n");
    if (status == kAllTranslated) status = kFileFailed;
  }
  return status;
}
