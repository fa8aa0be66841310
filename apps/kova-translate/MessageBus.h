#pragma once

#include "kovabase/events/KOVCEventBus.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class KOVCEvent;

namespace kova::translate {

/// What one job has sent: how far it is, how much it has complained, and the events that the
/// listeners have yet to hear.
class Outbox {
 public:
  Outbox();
  ~Outbox();

  /// Of the whole job, from 0 to 1. Any thread may ask.
  double GetFraction() const { return _fraction; }
  bool HasStarted() const { return _hasStarted; }
  bool IsWriting() const { return _isWriting; }

  /// Known to the thread of the job, and to others once it is closed.
  std::uint64_t GetWarningCount() const { return _warnings; }
  std::uint64_t GetErrorCount() const { return _errors; }

 private:
  friend class MessageBus;

  bool TakeProgress(KOVCEvent& event);
  void Count(const KOVCEvent& event);

  std::atomic<double> _fraction{0.0};
  std::atomic<bool> _hasStarted{false};
  std::atomic<bool> _isWriting{false};
  std::uint64_t _warnings = 0;
  std::uint64_t _errors = 0;
  // These two under the lock of the bus.
  std::vector<std::unique_ptr<KOVCEvent>> _events;
  bool _isClosed = false;
};

/// The process's bus while files are translated. In the parallel mode it keeps clones of the events
/// of each job apart, so that the listeners hear one job after the other, each one's events in the
/// order in which it sent them; the first job that is not done yet is heard while it runs. They
/// hear everything on the main thread, the one that has made the bus. Outside that mode it delivers
/// at once.
///
/// Conversion stages never reach the listeners: they become the progress of their job on the thread
/// that sends them.
class MessageBus : public KOVCEventBus {
 public:
  /// Becomes the process's bus, behind which the library's own one stands back.
  MessageBus();
  ~MessageBus() override;

  /// While one lives, what its thread sends belongs to that outbox, which is closed at the end.
  class Sending {
   public:
    Sending(MessageBus& bus, Outbox& outbox);
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;
    ~Sending();

   private:
    MessageBus& _bus;
    Outbox& _outbox;
  };

  void Send(KOVCEvent& event) override;

  /// Called on the main thread while no job runs. Outside the parallel mode `onProgress` is called
  /// whenever a job has reported its progress.
  void SetProgressHandler(std::function<void()> onProgress) { _onProgress = std::move(onProgress); }
  void StartParallelMode() { _isParallel = true; }
  /// Delivers what was sent by threads that work for no job.
  void EndParallelMode();

  /// Called on the main thread in the parallel mode: waits until the outbox has events or is
  /// closed, but not longer than that, and delivers the events.
  /// @return whether it is closed and everything was delivered.
  bool DeliverFrom(Outbox& outbox, std::chrono::milliseconds longest);

 private:
  void Enqueue(const KOVCEvent& event, Outbox& outbox);

  const std::thread::id _mainThread;
  std::function<void()> _onProgress;
  // Changes only while no job runs.
  bool _isParallel = false;
  std::mutex _mutex;
  std::condition_variable _isNews;
  // Of threads that work for no job.
  Outbox _strays;
};

}  // namespace kova::translate
