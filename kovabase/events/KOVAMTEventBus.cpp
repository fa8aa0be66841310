#include "kovabase/events/KOVAMTEventBus.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/concurrency/KOVASingletonThreadPool.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVCEvent.h"
#include "kovabase/events/internal/ChunkMemory.h"
#include "kovabase/foundation/internal/ChunkedQueue.h"
#include "kovabase/foundation/internal/StaticThreadLocal.h"
#include "kovabase/platform/Clock.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstddef>
#include <exception>
#include <thread>
#include <utility>

namespace {

struct QueuedEvent {
  KOVCEvent* event;  // owned by the queue that holds the record
  int sequence;
};

// The records lie between the events that they stand for.
struct EventMemory {
  static void* allocate(std::size_t bytes) { return kova::internal::allocateBlock(bytes); }
  static void release(void* block, std::size_t bytes) noexcept {
    kova::internal::freeBlock(block, bytes);
  }
};

// Of a guest's event while the parallel mode ends.
constexpr std::chrono::milliseconds kLongestPause{100};

// The address tells the threads apart.
KOVABASE_STATIC_THREAD_LOCAL char t_threadMark = 0;

// The copy that goes into a queue, with the time of now.
std::unique_ptr<KOVCEvent> cloneToQueue(const KOVCEvent& event) {
  std::unique_ptr<KOVCEvent> clone(event.Clone());
  if (clone != nullptr && clone->IsTimed()) {
    clone->SetClock(kova::platform::processorClock());
    clone->SetTime(kova::platform::currentTime());
  }
  return clone;
}

}  // namespace

// The events of one thread, oldest first. Neighbours belong to other threads: a cache line of its
// own.
class alignas(64) KOVAMTEventBus::EventQueue {
 public:
  EventQueue() = default;
  EventQueue(const EventQueue&) = delete;
  EventQueue& operator=(const EventQueue&) = delete;
  ~EventQueue() { clear(); }

  bool isEmpty() const noexcept { return _records.isEmpty(); }
  /// INT_MAX when the queue is empty: sequence numbers stay below it.
  int frontSequence() noexcept { return isEmpty() ? INT_MAX : _records.front().sequence; }

  void push(std::unique_ptr<KOVCEvent> event, int sequence) {
    _records.push({event.get(), sequence});
    static_cast<void>(event.release());
  }
  std::unique_ptr<KOVCEvent> pop() noexcept {
    return std::unique_ptr<KOVCEvent>(_records.pop().event);
  }
  void clear() noexcept {
    while (!isEmpty()) pop();
    _records.clear();
  }

 private:
  kova::internal::ChunkedQueue<QueuedEvent, EventMemory> _records;
};

// Merges the queues by sequence number. A queue that holds the oldest event often holds the next
// ones too, so they are taken without looking at the others.
class KOVAMTEventBus::Merge {
 public:
  explicit Merge(KOVAMTEventBus& bus) noexcept : _bus(bus) {}

  /// Null when all queues are empty.
  std::unique_ptr<KOVCEvent> takeOldest() {
    if (_queue != nullptr && _queue->frontSequence() < _limit) return _queue->pop();

    // What is queued from now on comes behind all that is there.
    _limit = static_cast<int>(_bus._sequence.GetCount()) + 1;
    _queue = nullptr;
    int oldest = INT_MAX;
    for (int i = 0; i < _bus._queueCount; ++i) {
      EventQueue& queue = _bus._queues[static_cast<std::size_t>(i)];
      const int sequence = queue.frontSequence();
      if (sequence < oldest) {
        _limit = std::min(_limit, oldest);
        oldest = sequence;
        _queue = &queue;
      } else {
        _limit = std::min(_limit, sequence);
      }
    }
    const std::lock_guard guard(_bus._guestMutex);
    const int guestSequence = _bus._guestQueue->frontSequence();
    if (guestSequence < oldest) {
      _queue = nullptr;
      return _bus._guestQueue->pop();
    }
    _limit = std::min(_limit, guestSequence);
    return _queue != nullptr ? _queue->pop() : nullptr;
  }

 private:
  KOVAMTEventBus& _bus;
  EventQueue* _queue = nullptr;
  int _limit = 0;
};

// Holds the bus without ever destroying it: workers may still send when the process ends.
union KOVAMTEventBus::Instance {
  KOVAMTEventBus bus;
  constexpr Instance() noexcept : bus() {}
  ~Instance() {}
};

constexpr KOVAMTEventBus::KOVAMTEventBus() noexcept = default;

constinit KOVAMTEventBus::Instance KOVAMTEventBus::_instance;
constinit KOVAMTEventBus& KOVAMTEventBus::_eventBus = KOVAMTEventBus::_instance.bus;

KOVAMTEventBus::~KOVAMTEventBus() = default;

KOVAMutex& KOVAMTEventBus::GetMutex() {
  static KOVAMutex* const mutex = new KOVAMutex;
  return *mutex;
}

KOVCEventBus& KOVCEventBus::RegisterDefaultBus() {
  // Through the bus's own registration, so that it does not register a second time, later, in the
  // place of a host's bus.
  KOVAMTEventBus::_eventBus.Initialize();
  return RegisterUnlessPresent(KOVAMTEventBus::_eventBus);
}

KOVCEventBus& KOVAMTEventBus::GetEventBus() {
  _eventBus.Initialize();
  return KOVCEventBus::GetEventBus();
}

void KOVAMTEventBus::SetParallelMode() { _eventBus.PrivateSetParallelMode(); }

void KOVAMTEventBus::SetSingleThreadedMode() { _eventBus.PrivateSetSingleThreadedMode(); }

void KOVAMTEventBus::Initialize() {
  if (_registered.load(std::memory_order_acquire)) return;
  const KOVAMutex::LockGuard_t guard(GetMutex());
  if (_registered.load(std::memory_order_relaxed)) return;
  RegisterEventBus(this);
  _registered.store(true, std::memory_order_release);
}

void KOVAMTEventBus::Send(KOVCEvent& event) {
  Initialize();
  if (_parallel.load(std::memory_order_acquire)) {
    EnqueueEvent(event);
  } else {
    Deliver(event);
  }
}

void KOVAMTEventBus::AddListener(KOVCEventListener* listener) {
  const KOVAMutex::LockGuard_t guard(GetMutex());
  if (_parallel) {
    EnqueueEvent(KOVAErrorEvent(
        "LOGIC ERROR: AddListener called during multi-threaded processing. All listener "
        "registration should occur during single-threaded execution."));
  } else {
    KOVCEventBus::AddListener(listener);
  }
}

void KOVAMTEventBus::RemoveListener(KOVCEventListener* listener) {
  const KOVAMutex::LockGuard_t guard(GetMutex());
  if (_parallel) {
    EnqueueEvent(KOVAErrorEvent(
        "LOGIC ERROR: RemoveListener called during multi-threaded processing. All listener "
        "registration should occur during single-threaded execution."));
  } else {
    KOVCEventBus::RemoveListener(listener);
  }
}

void KOVAMTEventBus::EnqueueEvent(const KOVCEvent& event) {
  const int index = KOVASingletonThreadPool::GetCurrentThreadID();
  if (index == 0 && _mainThread.load(std::memory_order_relaxed) != &t_threadMark) {
    EnqueueGuestEvent(event);
    return;
  }
  // Only the workers that there were at the start of this mode have queues: kept.
  if (index < 0 || index >= _queueCount) return;
  // The number first: an interlocked operation waits for every write before it.
  const int sequence = static_cast<int>(_sequence.AtomicIncrement());
  if (std::unique_ptr<KOVCEvent> clone = cloneToQueue(event)) {
    _queues[static_cast<std::size_t>(index)].push(std::move(clone), sequence);
  }
}

void KOVAMTEventBus::EnqueueGuestEvent(const KOVCEvent& event) {
  std::unique_ptr<KOVCEvent> clone = cloneToQueue(event);
  if (clone == nullptr) return;
  {
    std::unique_lock lock(_guestMutex);
    if (_parallel) {
      _guestQueue->push(std::move(clone), static_cast<int>(_sequence.AtomicIncrement()));
      lock.unlock();
      LetFlushCatchUp();
      return;
    }
  }
  // The mode has ended meanwhile, and with it the queues.
  Deliver(*clone);
}

// Guests that send faster than listeners listen would keep a flush from ever ending. The longer it
// lasts, the longer each of their events takes, so that a guest sends but a handful in each
// doubling of the time. They never wait for the flush itself: a listener may wait for them.
void KOVAMTEventBus::LetFlushCatchUp() const {
  const auto start = _flushStart.load(std::memory_order_relaxed);
  if (start == 0) return;
  const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
  const auto pause = (now - std::chrono::nanoseconds(start)) / 8;
  std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(pause, kLongestPause));
}

void KOVAMTEventBus::FireEventFromQueue(const Delivery& delivery, KOVCEvent& event) {
  delivery.Hand(event);
}

void KOVAMTEventBus::PrivateSetParallelMode() {
  Initialize();
  const KOVAMutex::LockGuard_t guard(GetMutex());
  if (_flushing) return;

  const int queueCount = std::max(KOVASingletonThreadPool::GetThreadCount(), 0) + 1;
  auto queues = std::make_unique<EventQueue[]>(static_cast<std::size_t>(queueCount));
  auto guestQueue = std::make_unique<EventQueue>();
  const std::lock_guard guestGuard(_guestMutex);
  // What was queued before is destroyed behind the guest mutex.
  _queues.swap(queues);
  _guestQueue.swap(guestQueue);
  _queueCount = queueCount;
  _mainThread.store(&t_threadMark, std::memory_order_relaxed);
  _sequence = 0;
  _parallel.store(true, std::memory_order_release);
}

void KOVAMTEventBus::PrivateSetSingleThreadedMode() {
  Initialize();
  const KOVAMutex::LockGuard_t guard(GetMutex());
  if (_flushing || !_parallel) return;

  std::exception_ptr failure;
  _flushing = true;
  const auto start = std::chrono::steady_clock::now().time_since_epoch();
  _flushStart.store(std::chrono::nanoseconds(start).count(), std::memory_order_relaxed);
  Merge merge(*this);
  // Nobody changes the listeners in this mode.
  const Delivery delivery(*this);
  for (bool isDone = false; !isDone;) {
    while (const std::unique_ptr<KOVCEvent> event = merge.takeOldest()) {
      try {
        FireEventFromQueue(delivery, *event);
      } catch (...) {
        if (failure == nullptr) failure = std::current_exception();
      }
    }
    const std::lock_guard guestGuard(_guestMutex);
    if (!_guestQueue->isEmpty()) continue;
    isDone = true;
    _parallel.store(false, std::memory_order_release);
    _queueCount = 0;
    _queues.reset();
    _guestQueue.reset();
  }
  _flushStart.store(0, std::memory_order_relaxed);
  _flushing = false;
  kova::internal::settleFrees();
  kova::internal::offerIdleMemory();
  if (failure != nullptr) std::rethrow_exception(failure);
}
