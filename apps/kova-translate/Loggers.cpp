#include "apps/kova-translate/Loggers.h"

#include "apps/kova-translate/Text.h"
#include "kovabase/events/KOVCEvent.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/options/KOVAEnvironment.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace kova::translate {

namespace {

constexpr const char* kLogName = "vexil_read.log";
constexpr int kStandardError = 2;

bool isStandardOutputTaken(const Settings& settings) {
  const bool isResult = settings.output == "-" ||
                        (settings.output.empty() && std::ranges::count(settings.inputs, "-") != 0);
  return isResult || settings.statistics == Settings::Statistics::kJson;
}

}  // namespace

Loggers::Loggers(const Settings& settings, std::string& problem) {
  if (isStandardOutputTaken(settings)) {
    KOVAEventLevel level = KOVAEventLevels::kWarning;
    KOVAString text;
    if (KOVAEnvironment::GetVariable("KOVAConsoleTracesLevel", text).IsSuccess()) {
      level = KOVCEvent::GetLevel(toUtf8(text).c_str(), level);
    }
    _errors.Initialize(new KOVAFileOutputStream(kStandardError), level);
  } else {
    _console.Initialize(KOVAEventLevels::kWarning);
  }

  KOVAString fromEnvironment;
  if (settings.logLevel || !settings.logFolder.empty() ||
      KOVAEnvironment::GetVariable("KOVALogLevel", fromEnvironment).IsSuccess()) {
    // Without a level KOVALogLevel decides; without that, too, everything is written.
    constexpr KOVAEventLevel kByEnvironment = -1;
    const std::string path = (std::filesystem::path(settings.logFolder) / kLogName).string();
    errno = 0;
    _log.Initialize(KOVAFilePath(toPathText(path)), settings.logLevel.value_or(kByEnvironment));
    if (!_log.IsInitialized()) {
      problem = "the log " + quoteText(path) +
                " cannot be written: " + std::error_code(errno, std::generic_category()).message();
    }
  }
  // It announces itself, which nobody wants to hear who has not asked for it.
  bool isTimed = false;
  KOVAEnvironment::GetVariable("KOVATaskTiming", isTimed);
  if (isTimed) _timing.SetUp();
}

Loggers::~Loggers() {
  if (_timing.IsEnabled()) _timing.Finalize();
}

}  // namespace kova::translate
