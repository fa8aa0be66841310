#pragma once

#include "kovabase/events/KOVCEvent.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/KOVCEventListener.h"
#include "kovabase/io/KOVAStringOutputStream.h"

#include <string>
#include <utility>
#include <vector>

namespace kova::test {

/// Listens as long as it lives and keeps the level and the text of every event.
class RecordedEvents : public KOVCEventListener {
 public:
  RecordedEvents() { KOVCEventBus::GetEventBus().AddListener(this); }
  RecordedEvents(const RecordedEvents&) = delete;
  RecordedEvents& operator=(const RecordedEvents&) = delete;
  ~RecordedEvents() override { KOVCEventBus::GetEventBus().RemoveListener(this); }

  void HandleEvent(KOVCEvent& event) override {
    KOVAStringOutputStream stream;
    event.GetFormattedDescription(&stream);
    _lines.push_back(std::to_string(event.GetLevel()) + " " + stream.GetBytes());
  }

  /// "level text" of each event so far, which are forgotten.
  std::vector<std::string> take() { return std::exchange(_lines, {}); }

 private:
  std::vector<std::string> _lines;
};

}  // namespace kova::test
