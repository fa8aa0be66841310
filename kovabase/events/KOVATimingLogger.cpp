#include "kovabase/events/KOVATimingLogger.h"

#include "kovabase/events/KOVABasePerformanceMonitor.h"
#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/KOVCTaskEvent.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/platform/Clock.h"
#include "kovabase/platform/Resources.h"

#include <chrono>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace {

// When an event happened, by every clock that there is.
struct Moment {
  std::chrono::steady_clock::time_point steady;
  std::int64_t time = 0;
  long clock = 0;
  double kernel = 0.0;
  double user = 0.0;
  bool isStamped = false;
};

struct Seconds {
  double elapsed = 0.0;
  double kernel = 0.0;
  double user = 0.0;
};

struct Task {
  std::string identifier;
  std::string name;
  Seconds total;
  int calls = 0;
  std::vector<Moment> starts;
};

Moment momentOf(KOVCEvent& event) {
  Moment moment;
  moment.steady = std::chrono::steady_clock::now();
  kova::platform::processTimes(moment.kernel, moment.user);
  event.GetTime(moment.time);
  event.GetClock(moment.clock);
  moment.isStamped = moment.time != 0;
  if (!moment.isStamped) {
    moment.time = kova::platform::currentTime();
    moment.clock = kova::platform::processorClock();
  }
  return moment;
}

Seconds between(const Moment& start, const Moment& end) {
  Seconds seconds;
  if (start.isStamped || end.isStamped) {
    seconds.elapsed = static_cast<double>(end.time - start.time);
    seconds.user = static_cast<double>(end.clock - start.clock) / CLOCKS_PER_SEC;
  } else {
    seconds.elapsed = std::chrono::duration<double>(end.steady - start.steady).count();
    seconds.kernel = end.kernel - start.kernel;
    seconds.user = end.user - start.user;
  }
  return seconds;
}

bool isMainTask(const std::string& identifier) {
  return identifier == "Translation" || identifier == "Conversion" || identifier == "Repair";
}

void printSeconds(const std::string& label, double seconds) {
  KOVAInfo::Printf("%50s = %10.4f seconds", label.c_str(), seconds);
}

void printTask(const Task& task, const Seconds& seconds, bool asBlock) {
  if (asBlock) {
    KOVAInfo::Printf("================ Start Task Performance Info ================");
  }
  printSeconds(task.name + " Elapsed Time", seconds.elapsed);
  printSeconds(task.name + " Kernel Time", seconds.kernel);
  printSeconds(task.name + " User Time", seconds.user);
  printSeconds(task.name + " CPU Time", seconds.kernel + seconds.user);
  if (asBlock) KOVAInfo::Printf("================= End Task Performance Info =================");
}

}  // namespace

struct KOVATimingLogger::Tasks {
  std::vector<Task> all;  // in the order of their first start

  Task* find(const char* identifier) {
    for (Task& task : all) {
      if (task.identifier == identifier) return &task;
    }
    return nullptr;
  }
};

KOVABasePerformanceMonitor* KOVATimingLogger::_pMonitor = nullptr;

KOVATimingLogger::KOVATimingLogger() : _tasks(std::make_unique<Tasks>()) {}

KOVATimingLogger::~KOVATimingLogger() { KOVATimingLogger::Stop(); }

void KOVATimingLogger::HandleEvent(KOVCEvent& event) {
  auto* const taskEvent = _isEnabled ? dynamic_cast<KOVCTaskEvent*>(&event) : nullptr;
  if (taskEvent == nullptr) return;
  char* identifier = nullptr;
  taskEvent->GetTaskIdentifier(identifier);
  Task* task = _tasks->find(identifier);
  if (taskEvent->GetKind() == kKOVATaskStart) {
    if (task == nullptr) task = &_tasks->all.emplace_back();
    task->identifier = identifier;
    task->name = taskEvent->GetTaskName();
    task->starts.push_back(momentOf(event));
    KOVAInfo::Printf("***************************%s Started***************************",
                     task->name.c_str());
    return;
  }
  if (task == nullptr || task->starts.empty()) return;
  const Seconds seconds = between(task->starts.back(), momentOf(event));
  task->starts.pop_back();
  task->total.elapsed += seconds.elapsed;
  task->total.kernel += seconds.kernel;
  task->total.user += seconds.user;
  ++task->calls;
  // A copy: what is reported may start another task.
  const Task ended = *task;
  KOVAInfo::Printf("***************************%s Ending***************************",
                   ended.name.c_str());
  printTask(ended, seconds, _isDetailed || isMainTask(ended.identifier));
}

void KOVATimingLogger::SetUp() {
  bool isWanted = false;
  if (KOVAEnvironment::GetVariable("KOVATaskTiming", isWanted).IsSuccess() && isWanted) {
    _isEnabled = true;
    if (_pMonitor == nullptr) _pMonitor = KOVABasePerformanceMonitor::Instance();
  }
  bool isDetailed = false;
  if (KOVAEnvironment::GetVariable("KOVATaskInfoDetailed", isDetailed).IsSuccess()) {
    _isDetailed = isDetailed;
  }
  if (_isRegistered) return;
  KOVAInfo::Printf("Task Timing On");
  KOVCEventBus::GetEventBus().AddListener(this);
  _isRegistered = true;
}

void KOVATimingLogger::Stop() {
  _isEnabled = false;
  if (!_isRegistered) return;
  KOVCEventBus::GetEventBus().RemoveListener(this);
  _isRegistered = false;
}

void KOVATimingLogger::Finalize() {
  KOVAInfo::Printf("================ Start Timing Performance Summary ================");
  KOVAInfo::Printf(
      "                # task = elapsed(s), kernel(s), user(s), cpu=kernel+user(s), #calls");
  KOVAInfo::Printf("                #        elapsed= wall clock time");
  KOVAInfo::Printf("                #        kernel = system calls time");
  KOVAInfo::Printf("                #        user   = user code time");
  KOVAInfo::Printf("                #        cpu    = actual cpu time");
  for (const Task& task : _tasks->all) {
    KOVAInfo::Printf("%50s = %10.4f %10.4f %10.4f %10.4f %8dx", task.name.c_str(),
                     task.total.elapsed, task.total.kernel, task.total.user,
                     task.total.kernel + task.total.user, task.calls);
  }
  double kernel = 0.0;
  double user = 0.0;
  if (_pMonitor == nullptr || _pMonitor->QueryProcessTimes(kernel, user).IsFailure()) {
    kova::platform::processTimes(kernel, user);
  }
  printSeconds("Process total CPU Time", kernel + user);
  KOVAInfo::Printf("================= End Timing Performance Summary =================");
  if (_pMonitor == nullptr) return;
  KOVAInfo::Printf("================ Start Memory Performance Summary ================");
  _pMonitor->PrintStatistics();
  KOVAInfo::Printf("================= End Memory Performance Summary =================");
}
