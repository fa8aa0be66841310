#include "kovabase/events/KOVAEndTaskEvent.h"

#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/io/KOVAStreamFormatter.h"

KOVAEndTaskEvent::KOVAEndTaskEvent(KOVAResult result, const char* name, const char* identifier,
                                   KOVAEventLevel level, bool isQuiet)
    : KOVCTaskEvent(name, identifier, level), _result(result), _isQuiet(isQuiet) {}

KOVAEndTaskEvent::KOVAEndTaskEvent(long resultCode, const char* name, const char* identifier,
                                   KOVAEventLevel level, bool isQuiet)
    : KOVAEndTaskEvent(KOVAResult(resultCode), name, identifier, level, isQuiet) {}

KOVAEndTaskEvent::KOVAEndTaskEvent(const KOVAEndTaskEvent& other) = default;

void KOVAEndTaskEvent::Fire(const KOVAResult& result, const char* name, const char* identifier,
                            KOVAEventLevel level, bool isQuiet) {
  KOVAEndTaskEvent event(result, name, identifier, level, isQuiet);
  KOVCEventBus::Fire(event);
}

void KOVAEndTaskEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  KOVAStreamFormatter formatter(stream);
  WriteResult(formatter);
}

KOVCEvent* KOVAEndTaskEvent::Clone() const { return new KOVAEndTaskEvent(*this); }

KOVATaskEventKind KOVAEndTaskEvent::GetKind() { return kKOVATaskEnd; }

void KOVAEndTaskEvent::WriteResult(KOVAStreamFormatter& formatter) const {
  if (_isQuiet) return;
  WriteSeparator(formatter);
  formatter << GetEventName() << " Result : " << _result.GetMessage() << KOVAEndLine;
  WriteSeparator(formatter);
}

void KOVAEndTaskEvent::WriteSeparator(KOVAStreamFormatter& formatter) {
  formatter << "----------------------------------------"
               "----------------------------------------"
            << KOVAEndLine;
}
