#include "kovabase/events/KOVAConsoleLogger.h"

#include "kovabase/events/KOVCEvent.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/strings/Gk_String.h"

namespace {

constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;
constexpr KOVAEventLevel kErrorLevel = 70;

}  // namespace

KOVAConsoleLogger::KOVAConsoleLogger() = default;

KOVAConsoleLogger::~KOVAConsoleLogger() {
  if (IsInitialized()) KOVCEventBus::GetEventBus().RemoveListener(this);
}

void KOVAConsoleLogger::HandleEvent(KOVCEvent& event) {
  if (!IsInitialized() || event.GetLevel() < _level) return;
  KOVAStringOutputStream text;
  event.GetFormattedDescription(&text);
  KOVAFileOutputStream& stream = event.GetLevel() >= kErrorLevel ? *_error : *_output;
  stream.Write(text.GetBytes(), text.GetByteCount());
  // A text without a line end appears at once too.
  stream.Flush();
}

void KOVAConsoleLogger::Initialize(KOVAEventLevel level) {
  if (IsInitialized()) return;
  _output = std::make_unique<KOVAFileOutputStream>(kStandardOutput);
  _error = std::make_unique<KOVAFileOutputStream>(kStandardError);
  KOVAString fromEnvironment;
  if (KOVAEnvironment::GetVariable("KOVAConsoleTracesLevel", fromEnvironment).IsSuccess()) {
    level = KOVCEvent::GetLevel(Gk_String(fromEnvironment).getText(), level);
  }
  _level = level;
  KOVCEventBus::GetEventBus().AddListener(this);
}

void KOVAConsoleLogger::SetUp(KOVAEventLevel level) {
  static KOVAConsoleLogger* const logger = new KOVAConsoleLogger;
  logger->Initialize(level);
}
