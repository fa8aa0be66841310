#pragma once

#include "kovabase/events/KOVCEvent.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/KOVCEventListener.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <functional>
#include <string>
#include <vector>

namespace kova::test {

/// What `event` writes.
inline std::string describe(KOVCEvent& event) {
  KOVAStringOutputStream stream;
  event.GetFormattedDescription(&stream);
  return {stream.GetBytes(), stream.GetByteCount()};
}

/// Listens on the process's bus while it lives and keeps the description of each event.
class EventRecorder : public KOVCEventListener {
 public:
  EventRecorder() : _bus(KOVCEventBus::GetEventBus()) { _bus.AddListener(this); }
  EventRecorder(const EventRecorder&) = delete;
  EventRecorder& operator=(const EventRecorder&) = delete;
  ~EventRecorder() override { _bus.RemoveListener(this); }

  void HandleEvent(KOVCEvent& event) override {
    texts.push_back(describe(event));
    levels.push_back(event.GetLevel());
    if (onEvent) onEvent(event);
  }

  std::vector<std::string> texts;
  std::vector<KOVAEventLevel> levels;
  /// Called after the event was recorded.
  std::function<void(KOVCEvent&)> onEvent;

 private:
  KOVCEventBus& _bus;
};

}  // namespace kova::test
