#include "kovabase/events/KOVATaskEvents.h"

#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/platform/Clock.h"

namespace {

constexpr KOVAEventLevel kLevel = KOVAEventLevels::kMessage;

const char* preprocessingTask(bool isSource) {
  return isSource ? "Source Document Preprocessing" : "Target Document Preprocessing";
}

const char* preprocessingStart(bool isSource) {
  return isSource ? "Start Source Document Preprocessing" : "Start Target Document Preprocessing";
}

template <typename Event, typename... Arguments>
void fire(const Arguments&... arguments) {
  Event event(arguments...);
  KOVCEventBus::Fire(event);
}

}  // namespace

KOVCConversionTaskEvent::KOVCConversionTaskEvent()
    : KOVCStartTaskEvent("KOVCConversionTaskEvent", "Conversion", kLevel) {}
KOVCConversionTaskEvent::KOVCConversionTaskEvent(const KOVCConversionTaskEvent& other) = default;
void KOVCConversionTaskEvent::Fire() { fire<KOVCConversionTaskEvent>(); }
KOVCEvent* KOVCConversionTaskEvent::Clone() const { return new KOVCConversionTaskEvent(*this); }

KOVAStartReadEntitiesTaskEvent::KOVAStartReadEntitiesTaskEvent()
    : KOVCStartTaskEvent("KOVAStarReadEntitiesTaskEvent", "Read Entities", kLevel) {}
KOVAStartReadEntitiesTaskEvent::KOVAStartReadEntitiesTaskEvent(
    const KOVAStartReadEntitiesTaskEvent& other) = default;
void KOVAStartReadEntitiesTaskEvent::Fire() { fire<KOVAStartReadEntitiesTaskEvent>(); }
KOVCEvent* KOVAStartReadEntitiesTaskEvent::Clone() const {
  return new KOVAStartReadEntitiesTaskEvent(*this);
}

KOVAEndReadEntitiesTaskEvent::KOVAEndReadEntitiesTaskEvent(KOVAResult result)
    : KOVAEndTaskEvent(result, "Entity Reading", "Read Entities", kLevel) {}
KOVAEndReadEntitiesTaskEvent::KOVAEndReadEntitiesTaskEvent(
    const KOVAEndReadEntitiesTaskEvent& other) = default;
void KOVAEndReadEntitiesTaskEvent::Fire(const KOVAResult& result) {
  fire<KOVAEndReadEntitiesTaskEvent>(result);
}
KOVCEvent* KOVAEndReadEntitiesTaskEvent::Clone() const {
  return new KOVAEndReadEntitiesTaskEvent(*this);
}

KOVAStartPreprocessDocumentEvent::KOVAStartPreprocessDocumentEvent(bool isSource)
    : KOVCStartTaskEvent(preprocessingStart(isSource), preprocessingTask(isSource), kLevel) {}
KOVAStartPreprocessDocumentEvent::KOVAStartPreprocessDocumentEvent(
    const KOVAStartPreprocessDocumentEvent& other) = default;
void KOVAStartPreprocessDocumentEvent::Fire(bool isSource) {
  fire<KOVAStartPreprocessDocumentEvent>(isSource);
}
KOVCEvent* KOVAStartPreprocessDocumentEvent::Clone() const {
  return new KOVAStartPreprocessDocumentEvent(*this);
}

KOVAEndPreprocessDocumentEvent::KOVAEndPreprocessDocumentEvent(KOVAResult result, bool isSource)
    : KOVAEndTaskEvent(result, preprocessingTask(isSource), preprocessingTask(isSource), kLevel) {}
KOVAEndPreprocessDocumentEvent::KOVAEndPreprocessDocumentEvent(
    const KOVAEndPreprocessDocumentEvent& other) = default;
void KOVAEndPreprocessDocumentEvent::Fire(const KOVAResult& result, bool isSource) {
  fire<KOVAEndPreprocessDocumentEvent>(result, isSource);
}
KOVCEvent* KOVAEndPreprocessDocumentEvent::Clone() const {
  return new KOVAEndPreprocessDocumentEvent(*this);
}

KOVAStartPostprocessDocumentEvent::KOVAStartPostprocessDocumentEvent()
    : KOVCStartTaskEvent("Start Target Document Postprocessing", "Target Document Postprocessing",
                         kLevel) {}
KOVAStartPostprocessDocumentEvent::KOVAStartPostprocessDocumentEvent(
    const KOVAStartPostprocessDocumentEvent& other) = default;
void KOVAStartPostprocessDocumentEvent::Fire() { fire<KOVAStartPostprocessDocumentEvent>(); }
KOVCEvent* KOVAStartPostprocessDocumentEvent::Clone() const {
  return new KOVAStartPostprocessDocumentEvent(*this);
}

KOVAEndPostprocessDocumentEvent::KOVAEndPostprocessDocumentEvent(KOVAResult result)
    : KOVAEndTaskEvent(result, "Target Document Postprocessing", "Target Document Postprocessing",
                       kLevel) {}
KOVAEndPostprocessDocumentEvent::KOVAEndPostprocessDocumentEvent(
    const KOVAEndPostprocessDocumentEvent& other) = default;
void KOVAEndPostprocessDocumentEvent::Fire(const KOVAResult& result) {
  fire<KOVAEndPostprocessDocumentEvent>(result);
}
KOVCEvent* KOVAEndPostprocessDocumentEvent::Clone() const {
  return new KOVAEndPostprocessDocumentEvent(*this);
}

KOVAEndOptionsTaskEvent::KOVAEndOptionsTaskEvent(KOVAResult result)
    : KOVAEndTaskEvent(result, "Options logging", "Options", kLevel) {}
KOVAEndOptionsTaskEvent::KOVAEndOptionsTaskEvent(const KOVAEndOptionsTaskEvent& other) = default;
void KOVAEndOptionsTaskEvent::Fire(const KOVAResult& result) {
  fire<KOVAEndOptionsTaskEvent>(result);
}
KOVCEvent* KOVAEndOptionsTaskEvent::Clone() const { return new KOVAEndOptionsTaskEvent(*this); }

KOVAEndTranslationTaskEvent::KOVAEndTranslationTaskEvent(KOVAResult result,
                                                         bool isPartDefinitionInAssembly,
                                                         unsigned failedEntities)
    : KOVAEndTaskEvent(result, "Translation", "Translation", kLevel),
      _failedEntities(failedEntities),
      _isPartDefinitionInAssembly(isPartDefinitionInAssembly) {
  kova::platform::localTime(kova::platform::currentTime(), _finishTime);
}

KOVAEndTranslationTaskEvent::KOVAEndTranslationTaskEvent(const KOVAEndTranslationTaskEvent& other) =
    default;

void KOVAEndTranslationTaskEvent::Fire(const KOVAResult& result, bool isPartDefinitionInAssembly,
                                       unsigned failedEntities) {
  fire<KOVAEndTranslationTaskEvent>(result, isPartDefinitionInAssembly, failedEntities);
}

void KOVAEndTranslationTaskEvent::Fire(long resultCode, bool isPartDefinitionInAssembly,
                                       unsigned failedEntities) {
  Fire(KOVAResult(resultCode), isPartDefinitionInAssembly, failedEntities);
}

void KOVAEndTranslationTaskEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  char finishTime[kova::platform::kCalendarTextSize];
  kova::platform::calendarText(_finishTime, finishTime);
  KOVAStreamFormatter formatter(stream);
  // The text of the time ends with a line end of its own; kept.
  formatter << "Finish Time : " << finishTime << KOVAEndLine;
  WriteResult(formatter);
  if (!getTaskResult().IsCompleteSuccess() && _failedEntities != kUnknownCount) {
    formatter << "Failed Entities : " << _failedEntities << KOVAEndLine;
  }
  WriteSeparator(formatter);
  if (_isPartDefinitionInAssembly) {
    formatter << "End Translation of Part Definition Document In Assembly" << KOVAEndLine;
    WriteSeparator(formatter);
  }
}

KOVCEvent* KOVAEndTranslationTaskEvent::Clone() const {
  return new KOVAEndTranslationTaskEvent(*this);
}
