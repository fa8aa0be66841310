#include "kovabase/events/KOVCEventBus.h"

#include "kovabase/events/KOVCEventListener.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

struct KOVCEventBus::Listeners {
  std::vector<KOVCEventListener*> entries;
  // The list that was replaced before this one and is still to be freed.
  mutable const Listeners* nextRetired = nullptr;
};

namespace {

constinit std::atomic<KOVCEventBus*> g_eventBus{nullptr};

}  // namespace

// While one lives, no list of listeners is freed. The sequentially consistent order of "count up,
// then read the list" here and "replace the list, then read the count" in FreeRetired makes sure
// that a delivery that was not counted reads the new list.
class KOVCEventBus::Delivery {
 public:
  explicit Delivery(KOVCEventBus& bus) noexcept : _bus(bus) { _bus._deliveries.fetch_add(1); }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;
  ~Delivery() {
    const bool wasLast = _bus._deliveries.fetch_sub(1) == 1;
    if (wasLast && _bus._retired.load(std::memory_order_relaxed) != nullptr) {
      const std::lock_guard guard(_bus._change);
      _bus.FreeRetired();
    }
  }

 private:
  KOVCEventBus& _bus;
};

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
  changed->entries.push_back(listener);
  Publish(changed.release());
}

void KOVCEventBus::RemoveListener(KOVCEventListener* listener) {
  const std::lock_guard guard(_change);
  if (!IsRegistered(listener)) return;
  auto changed = std::make_unique<Listeners>();
  changed->entries = _listeners.load(std::memory_order_relaxed)->entries;
  changed->entries.erase(std::find(changed->entries.begin(), changed->entries.end(), listener));
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

void KOVCEventBus::Deliver(KOVCEvent& event) {
  const Delivery delivery(*this);
  const Listeners* const listeners = _listeners.load();
  if (listeners == nullptr) return;
  for (KOVCEventListener* listener : listeners->entries) {
    // A listener may have removed, and destroyed, one that stands behind it.
    const bool isChanged = _listeners.load(std::memory_order_acquire) != listeners;
    if (isChanged && !IsRegistered(listener)) continue;
    listener->HandleEvent(event);
  }
}

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

// Needs the change lock or a delivery.
bool KOVCEventBus::IsRegistered(KOVCEventListener* listener) const noexcept {
  const Listeners* const current = _listeners.load(std::memory_order_acquire);
  if (current == nullptr) return false;
  return std::find(current->entries.begin(), current->entries.end(), listener) !=
         current->entries.end();
}
