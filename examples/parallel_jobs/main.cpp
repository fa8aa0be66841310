// Runs jobs on the pool while the bus is in the parallel mode: the messages of all threads come out
// on this thread, each job's in their order.

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

constexpr int kJobs = 8;
constexpr int kMessages = 100;

// [job]
class Job : public KOVAThreadJob {
 public:
  void Work(void* data) override {
    const int number = *static_cast<int*>(data);
    for (int i = 0; i < kMessages; ++i) KOVAInfo::Printf("%d %d", number, i);
  }
};
// [job]

// No lock: the bus delivers on one thread.
class Order : public KOVCEventListener {
 public:
  void HandleEvent(KOVCEvent& event) override {
    const auto* message = dynamic_cast<KOVAMessageEvent*>(&event);
    int job = 0;
    int number = 0;
    if (message == nullptr || std::sscanf(message->GetMessage(), "%d %d", &job, &number) != 2) {
      return;
    }
    _isInOrder = _isInOrder && _next[job]++ == number;
    ++_count;
  }
  int GetCount() const { return _count; }
  bool IsInOrder() const { return _isInOrder; }

 private:
  int _next[kJobs] = {};
  int _count = 0;
  bool _isInOrder = true;
};

}  // namespace

int main() {
  Order order;
  KOVCEventBus::GetEventBus().AddListener(&order);
  KOVASingletonThreadPool::Initialize(true);
  std::printf("%d workers\n", KOVASingletonThreadPool::GetThreadCount());

  int numbers[kJobs];
  Job job;
  // [run]
  KOVAMTEventBus::SetParallelMode();
  for (int i = 0; i < kJobs; ++i) {
    numbers[i] = i;
    KOVASingletonThreadPool::Enqueue(&job, &numbers[i]);
  }
  KOVASingletonThreadPool::WaitForAllCurrentJobs();
  std::printf("%d messages while the jobs ran\n", order.GetCount());
  KOVAMTEventBus::SetSingleThreadedMode();
  // [run]
  std::printf("%d messages after that, %s\n", order.GetCount(),
              order.IsInOrder() ? "in order" : "out of order");

  KOVASingletonThreadPool::Shutdown();
  KOVCEventBus::GetEventBus().RemoveListener(&order);
  return 0;
}
