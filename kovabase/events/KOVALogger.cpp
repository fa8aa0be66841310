#include "kovabase/events/KOVALogger.h"

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/KOVCTaskEvent.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/platform/NativePath.h"
#include "kovabase/strings/Gk_String.h"

#include <atomic>
#include <utility>

namespace {

constexpr KOVAEventLevel kLevelFromEnvironment = -1;
constexpr KOVAEventLevel kUrgentLevel = 70;
constexpr KOVAEventLevel kNothingPasses = 999;

constexpr char kSourceTooEarly[] =
    "The translation system was not initialized before the source document was built.";
constexpr char kTargetTooEarly[] =
    "The translation system was not initialized before the target document was built.";

// The warning that the next logger is to give; null when there is none.
constinit std::atomic<const char*> g_pendingWarning{nullptr};

bool isEndOfTask(KOVCEvent& event) {
  auto* const task = dynamic_cast<KOVCTaskEvent*>(&event);
  return task != nullptr && task->GetKind() == kKOVATaskEnd;
}

}  // namespace

KOVALogger::KOVALogger() : _level(kNothingPasses) {}

KOVALogger::~KOVALogger() { KOVALogger::Finalize(); }

void KOVALogger::HandleEvent(KOVCEvent& event) {
  if (_stream == nullptr || event.GetLevel() < _level) return;
  KOVAStringOutputStream text;
  event.GetFormattedDescription(&text);
  _stream->Write(text.GetBytes(), text.GetByteCount());
  if (event.GetLevel() >= kUrgentLevel || isEndOfTask(event)) _stream->Flush();
}

void KOVALogger::Initialize(const KOVAFilePath& path, KOVAEventLevel level) {
  if (_stream != nullptr || !path.IsValid()) return;
  const KOVAString stored = path.GetPath();
  const kova::platform::NativePath native(stored.getUnits(), stored.length());
  if (!native.isValid()) return;
  auto stream = std::make_unique<KOVAFileOutputStream>(native.text());
  if (stream->GetResult().IsFailure()) return;
  Start(std::move(stream), level);
}

void KOVALogger::Initialize(std::FILE* file, KOVAEventLevel level) {
  if (_stream != nullptr || file == nullptr) return;
  Start(std::make_unique<KOVAFileOutputStream>(file), level);
}

void KOVALogger::Initialize(KOVAOutputStream* stream, KOVAEventLevel level) {
  if (_stream != nullptr || stream == nullptr) return;
  Start(std::unique_ptr<KOVAOutputStream>(stream), level);
}

void KOVALogger::Start(std::unique_ptr<KOVAOutputStream> stream, KOVAEventLevel level) {
  KOVAString fromEnvironment;
  if (level == kLevelFromEnvironment &&
      KOVAEnvironment::GetVariable("KOVALogLevel", fromEnvironment).IsSuccess()) {
    level = KOVCEvent::GetLevel(Gk_String(fromEnvironment).getText(), level);
  }
  _stream = std::move(stream);
  _level = level;
  KOVCEventBus::GetEventBus().AddListener(this);
  if (const char* const warning = g_pendingWarning.exchange(nullptr)) {
    KOVAWarningEvent::Fire("%s", warning);
  }
}

void KOVALogger::Finalize() {
  _level = kNothingPasses;
  if (_stream == nullptr) return;
  KOVCEventBus::GetEventBus().RemoveListener(this);
  _stream->Flush();
  _stream.reset();
}

void KOVALogger::LogInitializerNotCalled(bool isSource) {
  g_pendingWarning = isSource ? kSourceTooEarly : kTargetTooEarly;
}
