#include "apps/kova-translate/MessageBus.h"

#include "kovabase/events/KOVAEventLevel.h"
#include "kovabase/events/KOVAMTEventBus.h"
#include "kovabase/events/KOVCConversionStageEvent.h"
#include "kovabase/events/KOVCEvent.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <utility>

namespace kova::translate {

namespace {

// The outbox of the job that this thread works for; null when it works for none.
thread_local Outbox* t_outbox = nullptr;

// Reading and writing count the same.
constexpr double kReadingShare = 0.5;

}  // namespace

Outbox::Outbox() = default;

Outbox::~Outbox() = default;

bool Outbox::TakeProgress(KOVCEvent& event) {
  const auto* const stage = dynamic_cast<KOVCConversionStageEvent*>(&event);
  if (stage == nullptr) return false;
  const bool isWriting = std::strcmp(stage->GetStageName(), "write") == 0;
  const double fraction = std::clamp(stage->GetFraction(), 0.0, 1.0);
  _isWriting = isWriting;
  _fraction =
      isWriting ? kReadingShare + (1.0 - kReadingShare) * fraction : kReadingShare * fraction;
  return true;
}

void Outbox::Count(const KOVCEvent& event) {
  if (event.GetLevel() >= KOVAEventLevels::kError) {
    ++_errors;
  } else if (event.GetLevel() >= KOVAEventLevels::kWarning) {
    ++_warnings;
  }
}

MessageBus::MessageBus() : _mainThread(std::this_thread::get_id()) {
  // The library's bus makes itself the process's when it is first used: it has been that then.
  KOVAMTEventBus::GetEventBus();
  RegisterEventBus(this);
}

MessageBus::~MessageBus() { RegisterEventBus(&KOVAMTEventBus::_eventBus); }

MessageBus::Sending::Sending(MessageBus& bus, Outbox& outbox) : _bus(bus), _outbox(outbox) {
  t_outbox = &_outbox;
  _outbox._hasStarted = true;
}

MessageBus::Sending::~Sending() {
  t_outbox = nullptr;
  const std::lock_guard guard(_bus._mutex);
  _outbox._isClosed = true;
  _bus._isNews.notify_one();
}

void MessageBus::Send(KOVCEvent& event) {
  Outbox* const outbox = t_outbox;
  if (outbox != nullptr) {
    if (outbox->TakeProgress(event)) {
      if (!_isParallel && _onProgress) _onProgress();
      return;
    }
    outbox->Count(event);
  }
  if (!_isParallel || (outbox == nullptr && std::this_thread::get_id() == _mainThread)) {
    Deliver(event);
  } else {
    Enqueue(event, outbox != nullptr ? *outbox : _strays);
  }
}

void MessageBus::Enqueue(const KOVCEvent& event, Outbox& outbox) {
  std::unique_ptr<KOVCEvent> clone(event.Clone());
  if (clone == nullptr) return;
  if (clone->IsTimed()) {
    clone->SetClock(std::clock());
    clone->SetTime(std::time(nullptr));
  }
  const std::lock_guard guard(_mutex);
  outbox._events.push_back(std::move(clone));
  _isNews.notify_one();
}

bool MessageBus::DeliverFrom(Outbox& outbox, std::chrono::milliseconds longest) {
  std::vector<std::unique_ptr<KOVCEvent>> events;
  bool isClosed = false;
  {
    std::unique_lock lock(_mutex);
    _isNews.wait_for(lock, longest, [&] { return outbox._isClosed || !outbox._events.empty(); });
    events.swap(outbox._events);
    isClosed = outbox._isClosed;
  }
  for (const std::unique_ptr<KOVCEvent>& event : events) Deliver(*event);
  return isClosed;
}

void MessageBus::EndParallelMode() {
  DeliverFrom(_strays, std::chrono::milliseconds(0));
  _isParallel = false;
}

}  // namespace kova::translate
