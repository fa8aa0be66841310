#pragma once

#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/foundation/KOVAAtomicCounter.h"
#include "kovabase/foundation/KOVAExport.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

class KOVAMutex;
class KOVCEvent;

/// The process's event bus. In the single-threaded mode, the initial one, it delivers at once, on
/// the sender's thread. In the parallel mode it queues a clone of each event in a queue of the
/// sender's thread; the end of that mode delivers all of them on the thread that ends it, in the
/// one order in which they were sent. Listeners therefore need no locks as long as only one thread
/// sends in the single-threaded mode.
///
/// The pool's workers queue without a lock, so the mode must not change while they run jobs. Other
/// threads may send at any time; while that delivery lasts they are slowed down, so that it ends.
/// The first use of this class makes its bus the process's; a host registers a bus of its own after
/// that.
class KOVABASE_API KOVAMTEventBus : public KOVCEventBus {
 public:
  /// The one instance: usable from load-time code on and never destroyed.
  static KOVAMTEventBus& _eventBus;

  /// The process's bus, after the first call has registered `_eventBus` as such.
  static KOVCEventBus& GetEventBus();

  /// Starts queueing, with a queue for each worker of the pool and one for all other threads. In
  /// the parallel mode it discards what is queued and takes over the pool's new thread count.
  /// Ignored inside the delivery that ends the parallel mode.
  static void SetParallelMode();

  /// Delivers what was queued, what listeners fire meanwhile included, and goes back to delivering
  /// at once. When listeners throw, the rest is delivered all the same and the first exception is
  /// passed on at the end. Ignored inside its own delivery.
  static void SetSingleThreadedMode();

  /// In the parallel mode the event of a worker that the pool has started since is dropped.
  void Send(KOVCEvent& event) override;

  /// In the parallel mode the listeners stay as they are and an error event says so.
  void AddListener(KOVCEventListener* listener) override;
  void RemoveListener(KOVCEventListener* listener) override;

  /// Discards what is queued.
  ~KOVAMTEventBus() override;

 private:
  friend class KOVCEventBus;  // for the default bus, which is defined with this class
  class EventQueue;
  class Merge;
  union Instance;

  constexpr KOVAMTEventBus() noexcept;

  static Instance _instance;
  static KOVAMutex& GetMutex();

  void Initialize();
  void EnqueueEvent(const KOVCEvent& event);
  void EnqueueGuestEvent(const KOVCEvent& event);
  void LetFlushCatchUp() const;
  void FireEventFromQueue(const Delivery& delivery, KOVCEvent& event);
  void PrivateSetParallelMode();
  void PrivateSetSingleThreadedMode();

  std::atomic<bool> _registered{false};
  std::atomic<bool> _parallel{false};
  // Both change under the bus mutex. Queues by thread index; none in the single-threaded mode.
  bool _flushing = false;
  int _queueCount = 0;
  std::unique_ptr<EventQueue[]> _queues;
  // Marks the thread that has entered the parallel mode: queue 0 is for it alone.
  std::atomic<const void*> _mainThread{nullptr};
  // For all other threads that the pool does not know.
  std::unique_ptr<EventQueue> _guestQueue;
  std::mutex _guestMutex;
  // When the delivery of what was queued has begun, in nanoseconds of the steady clock; 0 outside.
  std::atomic<std::int64_t> _flushStart{0};
  // Every queueing thread counts here: a cache line of its own.
  alignas(64) KOVAAtomicCounter _sequence;
};
