#pragma once

#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/MessageBus.h"
#include "apps/kova-translate/Plan.h"
#include "apps/kova-translate/Statistics.h"
#include "apps/kova-translate/TranslatorSet.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVAFileHeader.h"
#include "kovabase/options/KOVAOptions.h"

namespace kova::translate {

/// One file on its way through the program. Its job alone changes it until its outbox is closed;
/// it must live until its events were heard, one of which refers to the header.
struct FileRun {
  explicit FileRun(const Task& theTask) : task(theTask) {}

  const Task& task;
  Outbox outbox;
  KOVAFileHeader header;
  Statistics statistics;
  ExitStatus status = kInternal;
};

/// Translates one file after the other, or several at a time on several threads.
class Translation {
 public:
  /// All must live as long as the object and stay as they are; the translators that are needed are
  /// loaded.
  Translation(const Settings& settings, const KOVAOptions& options,
              const TranslatorSet& translators)
      : _settings(settings), _options(options), _translators(translators) {}

  /// Reads, converts and writes the file of the run, and fills its statistics and its status. What
  /// happens and what goes wrong is told by events. Throws nothing.
  void Run(FileRun& run) const;

 private:
  KOVAResult Translate(FileRun& run, const translators::Report& report) const;
  KOVAResult Read(FileRun& run, const translators::Report& report, translators::Model& model) const;
  KOVAResult Convert(const translators::Report& report, translators::Model& model) const;
  KOVAResult Filter(const translators::Report& report, translators::Model& model) const;
  KOVAResult Write(const FileRun& run, const translators::Report& report,
                   const translators::Model& model) const;

  const Settings& _settings;
  const KOVAOptions& _options;
  const TranslatorSet& _translators;
};

}  // namespace kova::translate
