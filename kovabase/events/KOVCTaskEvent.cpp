#include "kovabase/events/KOVCTaskEvent.h"

#include <algorithm>
#include <climits>

namespace {

const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

KOVCTaskEvent::KOVCTaskEvent(const char* name, const char* identifier, KOVAEventLevel level)
    : KOVCEvent(name, level), _taskName(orEmpty(name)), _taskIdentifier(orEmpty(identifier)) {}

KOVCTaskEvent::KOVCTaskEvent(const KOVCTaskEvent& other) = default;

bool KOVCTaskEvent::IsTimed() { return true; }

int KOVCTaskEvent::GetTaskIdentifier(char*& identifier) {
  identifier = const_cast<char*>(_taskIdentifier.Get());
  return static_cast<int>(std::min<std::size_t>(_taskIdentifier.GetLength(), INT_MAX));
}

void KOVCTaskEvent::SetTaskName(const char* name) { _taskName = KOVAEventText(orEmpty(name)); }

void KOVCTaskEvent::SetTaskIdentifier(const char* identifier) {
  _taskIdentifier = KOVAEventText(orEmpty(identifier));
}

KOVCStartTaskEvent::KOVCStartTaskEvent(const char* name, const char* identifier,
                                       KOVAEventLevel level)
    : KOVCTaskEvent(name, identifier, level) {}

KOVCStartTaskEvent::KOVCStartTaskEvent(const KOVCStartTaskEvent& other) = default;

KOVCEvent* KOVCStartTaskEvent::Clone() const { return new KOVCStartTaskEvent(*this); }

KOVATaskEventKind KOVCStartTaskEvent::GetKind() { return kKOVATaskStart; }
