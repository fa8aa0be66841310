#pragma once

#include "kovabase/foundation/KOVAExport.h"

#include <atomic>
#include <cstdint>
#include <mutex>

class KOVCEvent;
class KOVCEventListener;

/// The base of event buses: hands each event to the registered listeners, in the order of their
/// registration, on the thread that sends it. One bus is the process's.
///
/// Listeners may be added and removed by any thread, also inside `HandleEvent`: a listener that was
/// removed there receives nothing more, one that was added there starts with the next event. While
/// one thread sends, another must not destroy a listener that it has just removed.
class KOVABASE_API KOVCEventBus {
 public:
  constexpr KOVCEventBus() noexcept = default;
  KOVCEventBus(const KOVCEventBus&) = delete;
  KOVCEventBus& operator=(const KOVCEventBus&) = delete;

  /// Delivers the event before it returns. What a listener throws passes through; the listeners
  /// behind it do not receive this event.
  virtual void Send(KOVCEvent& event);

  /// The bus does not own the listener. Null is ignored; a listener that is added twice receives
  /// each event twice.
  virtual void AddListener(KOVCEventListener* listener);
  /// Takes back the first registration of the listener; null and unknown ones are ignored.
  virtual void RemoveListener(KOVCEventListener* listener);

  /// A bus that is destroyed while it is the process's leaves the process without one.
  virtual ~KOVCEventBus();

  /// Makes `bus`, which must outlive its use, the process's bus. Null leaves the process without
  /// one.
  static void RegisterEventBus(KOVCEventBus* bus) noexcept;

  /// The process's bus. When there is none, `KOVAMTEventBus` becomes it.
  static KOVCEventBus& GetEventBus();

  /// Sends the event to the process's bus.
  static void Fire(KOVCEvent& event);

 private:
  // Never changed once it is published.
  struct Listeners;

 protected:
  /// Hands the event to every listener, as `Send` of this class does.
  void Deliver(KOVCEvent& event);

  /// While one lives, the list of listeners that it reads is not freed.
  class Delivery {
   public:
    explicit Delivery(KOVCEventBus& bus) noexcept;
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;
    ~Delivery();

    /// Hands the event to the listeners that there were when this object was made and still are.
    void Hand(KOVCEvent& event) const;

   private:
    KOVCEventBus& _bus;
    const Listeners* _listeners;
  };

  /// Makes `bus` the process's bus unless there is one. @return the process's bus.
  static KOVCEventBus& RegisterUnlessPresent(KOVCEventBus& bus) noexcept;

 private:
  struct Registration;

  // Defined with KOVAMTEventBus, which stands above this class.
  static KOVCEventBus& RegisterDefaultBus();

  void Publish(const Listeners* listeners) noexcept;
  void FreeRetired() noexcept;
  bool IsRegistered(const Registration& entry) const noexcept;

  std::atomic<const Listeners*> _listeners{nullptr};
  // Deliveries under way, each of which may read a list that has been replaced meanwhile.
  std::atomic<int> _deliveries{0};
  std::atomic<const Listeners*> _retired{nullptr};
  std::mutex _change;
  std::uint64_t _lastRegistration = 0;
};
