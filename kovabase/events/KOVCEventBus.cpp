#include "kovabase/events/KOVCEventBus.h"

#include "kovabase/events/KOVCEventListener.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

struct KOVCEventBus::Registration {
  KOVCEventListener* listener;
  // Tells a listener from a later one at the same address.
  std::uint64_t id;
};

struct KOVCEventBus::Listeners {
  std::vector<Registration> entries;
  // The list that was replaced before this one and is still to be freed.
  mutable const Listeners* nextRetired = nullptr;
};

namespace {

constinit std::atomic<KOVCEventBus*> g_eventBus{nullptr};

}  // namespace

// The sequentially consistent order of "count up, then read the list" here and "replace the list,
// then read the count" in FreeRetired makes sure that a delivery that was not counted reads the new
// list.
KOVCEventBus::Delivery::Delivery(KOVCEventBus& bus) noexcept : _bus(bus) {
  _bus._deliveries.fetch_add(1);
  _listeners = _bus._listeners.load();
}

KOVCEventBus::Delivery::~Delivery() {
  const bool wasLast = _bus._deliveries.fetch_sub(1) == 1;
  if (wasLast && _bus._retired.load(std::memory_order_relaxed) != nullptr) {
    const std::lock_guard guard(_bus._change);
    _bus.FreeRetired();
  }
}

void KOVCEventBus::Delivery::Hand(KOVCEvent& event) const {
  if (_listeners == nullptr) return;
  for (const Registration& entry : _listeners->entries) {
    // A listener may have removed, and destroyed, one that stands behind it.
    const bool isChanged = _bus._listeners.load(std::memory_order_acquire) != _listeners;
    if (isChanged && !_bus.IsRegistered(entry)) continue;
    entry.listener->HandleEvent(event);
  }
}

KOVCEventBus::~KOVCEventBus() {
  KOVCEventBus* self = this;
  g_eventBus.compare_exchange_strong(self, nullptr);
  Publish(nullptr);
}

void KOVCEventBus::Send(KOVCEvent& event) { Deliver(event); }

void KOVCEventBus::AddListener(KOVCEventListener* listener) {
  if (listener == nullptr) return;
  const std::lock_guard guard(_change);
  const Listeners* const current = _listeners.load(std::memory_order_relaxed);
  auto changed = std::make_unique<Listeners>();
  if (current != nullptr) changed->entries = current->entries;
  changed->entries.push_back({listener, ++_lastRegistration});
  Publish(changed.release());
}

void KOVCEventBus::RemoveListener(KOVCEventListener* listener) {
  const std::lock_guard guard(_change);
  const Listeners* const current = _listeners.load(std::memory_order_relaxed);
  if (current == nullptr) return;
  auto changed = std::make_unique<Listeners>();
  changed->entries = current->entries;
  const auto found =
      std::find_if(changed->entries.begin(), changed->entries.end(),
                   [listener](const Registration& entry) { return entry.listener == listener; });
  if (found == changed->entries.end()) return;
  changed->entries.erase(found);
  Publish(changed.release());
}

void KOVCEventBus::RegisterEventBus(KOVCEventBus* bus) noexcept { g_eventBus.store(bus); }

KOVCEventBus& KOVCEventBus::RegisterUnlessPresent(KOVCEventBus& bus) noexcept {
  KOVCEventBus* present = nullptr;
  return g_eventBus.compare_exchange_strong(present, &bus) ? bus : *present;
}

KOVCEventBus& KOVCEventBus::GetEventBus() {
  KOVCEventBus* const bus = g_eventBus.load(std::memory_order_acquire);
  return bus != nullptr ? *bus : RegisterDefaultBus();
}

void KOVCEventBus::Fire(KOVCEvent& event) { GetEventBus().Send(event); }

void KOVCEventBus::Deliver(KOVCEvent& event) { Delivery(*this).Hand(event); }

// Needs the change lock, except at the end of the bus.
void KOVCEventBus::Publish(const Listeners* listeners) noexcept {
  const Listeners* const replaced = _listeners.exchange(listeners);
  if (replaced != nullptr) {
    replaced->nextRetired = _retired.load(std::memory_order_relaxed);
    _retired.store(replaced, std::memory_order_relaxed);
  }
  FreeRetired();
}

// Needs the change lock, except at the end of the bus.
void KOVCEventBus::FreeRetired() noexcept {
  if (_deliveries.load() != 0) return;
  const Listeners* retired = _retired.exchange(nullptr, std::memory_order_relaxed);
  while (retired != nullptr) delete std::exchange(retired, retired->nextRetired);
}

// Needs a delivery under way.
bool KOVCEventBus::IsRegistered(const Registration& entry) const noexcept {
  const Listeners* const current = _listeners.load(std::memory_order_acquire);
  return current != nullptr &&
         std::any_of(current->entries.begin(), current->entries.end(),
                     [&entry](const Registration& other) { return other.id == entry.id; });
}
