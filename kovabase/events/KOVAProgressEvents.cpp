#include "kovabase/events/KOVAProgressEvents.h"

#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/io/KOVAStreamFormatter.h"

KOVAStartTranslateRepairEvent::KOVAStartTranslateRepairEvent(const char* firstText,
                                                             const char* secondText,
                                                             int entityNumber, KOVAEventLevel level)
    : KOVCStartTaskEvent("KOVAStartTranslateRepairEvent", "Repair", level),
      _firstText(firstText),
      _secondText(secondText),
      _entityNumber(entityNumber),
      _threadId(KOVASingletonThreadPool::GetCurrentThreadID()) {}

KOVAStartTranslateRepairEvent::KOVAStartTranslateRepairEvent(
    const KOVAStartTranslateRepairEvent& other) = default;

void KOVAStartTranslateRepairEvent::Fire(const char* firstText, const char* secondText,
                                         int entityNumber) {
  KOVAStartTranslateRepairEvent event(firstText, secondText, entityNumber,
                                      KOVAEventLevels::kMessage);
  KOVCEventBus::Fire(event);
}

void KOVAStartTranslateRepairEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  if (_firstText.IsNull() || _secondText.IsNull()) return;
  KOVAStreamFormatter formatter(stream);
  formatter << GetSecondText() << " " << GetFirstText() << "[" << _entityNumber << "] {"
            << _threadId << "}" << KOVAEndLine;
}

KOVCEvent* KOVAStartTranslateRepairEvent::Clone() const {
  return new KOVAStartTranslateRepairEvent(*this);
}

KOVAConversionStageEvent::KOVAConversionStageEvent(const char* stage, int number, double fraction,
                                                   bool flag)
    : KOVCConversionStageEvent(stage, number, fraction, flag),
      _threadId(KOVASingletonThreadPool::GetCurrentThreadID()) {}

KOVAConversionStageEvent::KOVAConversionStageEvent(const KOVAConversionStageEvent& other) = default;

void KOVAConversionStageEvent::Fire(const char* stage, int number, double fraction, bool flag) {
  KOVAConversionStageEvent event(stage, number, fraction, flag);
  KOVCEventBus::Fire(event);
}

KOVCEvent* KOVAConversionStageEvent::Clone() const { return new KOVAConversionStageEvent(*this); }

KOVAThirdPartyProgressEvent::KOVAThirdPartyProgressEvent(double progress)
    : KOVCEvent(KOVAEventText::Static("KOVAThirdPartyProgressEvent"), KOVAEventLevels::kMessage),
      _progress(progress) {}

KOVAThirdPartyProgressEvent::KOVAThirdPartyProgressEvent(const KOVAThirdPartyProgressEvent& other) =
    default;

void KOVAThirdPartyProgressEvent::Fire(double progress) {
  KOVAThirdPartyProgressEvent event(progress);
  KOVCEventBus::Fire(event);
}

KOVCEvent* KOVAThirdPartyProgressEvent::Clone() const {
  return new KOVAThirdPartyProgressEvent(*this);
}
