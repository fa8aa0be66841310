#include "kovabase/concurrency/KOVASingletonThreadPool.h"

#include "kovabase/concurrency/KOVAThreadJob.h"
#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/foundation/KOVAAtomicCounter.h"
#include "kovabase/foundation/KOVAError.h"
#include "kovabase/foundation/KOVAException.h"
#include "kovabase/foundation/internal/StaticThreadLocal.h"
#include "kovabase/kernel/Kernel.h"
#include "kovabase/kernel/Session.h"
#include "kovabase/kernel/ThreadWork.h"
#include "kovabase/platform/Environment.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace kernel = kova::kernel;

namespace {

using Callback = KOVASingletonThreadPool::ThreadInitializerCallback_t;
using CallbackList = std::vector<Callback*>;

// What only the pool's own operations touch; never destroyed, since workers may outlive main.
struct Pool {
  // Held through the whole of Initialize and Shutdown.
  std::mutex lifecycle;
  KOVAAtomicCounter users;
  kernel::ThreadWork service;
  KOVADynamicArray<void*> threadValues;
  KOVAAtomicCounter threadIds;

  std::mutex callbacks;
  CallbackList registry;
  // One list for each thread id; entry 0 stays empty.
  std::vector<CallbackList> threadCallbacks;
};

Pool& pool() {
  static Pool* const instance = new Pool;
  return *instance;
}

constinit std::atomic<bool> g_isReady{false};
constinit std::atomic<bool> g_isMTEnabled{false};
constinit std::atomic<int> g_threadCount{0};
constinit std::atomic<int> g_threadValueCount{0};
constinit std::atomic<double> g_absoluteResolution{-1.0};
constinit std::atomic<double> g_fitTolerance{-1.0};

constinit KOVAAtomicCounter g_kernelUsers{0};
constinit std::atomic<bool> g_isKernelStopped{false};

// The calling worker's id; 0 on every other thread.
KOVABASE_STATIC_THREAD_LOCAL int t_threadId = 0;

bool isOnWorker() { return t_threadId != 0; }

bool hasWorkers() { return g_isMTEnabled && g_threadCount >= 1; }

void applySessionValues() {
  const double absoluteResolution = g_absoluteResolution;
  const double fitTolerance = g_fitTolerance;
  if (absoluteResolution > 0.0) kernel::setAbsoluteResolution(absoluteResolution);
  if (fitTolerance > 0.0) kernel::setFitTolerance(fitTolerance);
  if (absoluteResolution > 0.0 || fitTolerance > 0.0) {
    kernel::startModule(kernel::Module::kCurve2D);
    kernel::startModule(kernel::Module::kCurve3D);
    kernel::startModule(kernel::Module::kSurface3D);
  }
}

// Runs foreign code and turns what it throws into an error event, so that it ends neither the
// worker nor the process.
template <typename Function>
void runGuarded(const char* what, Function function) noexcept {
  const auto report = [what](const char* reason) noexcept {
    try {
      KOVAError::Printf("KOVASingletonThreadPool: %s ended with an exception: %s", what, reason);
    } catch (...) {
      // A listener has thrown in turn, or there is no memory for the report: nobody is left to
      // tell.
    }
  };
  try {
    function();
  } catch (const KOVAAbortException&) {
    // The user has asked for it: no error.
  } catch (const KOVAAllocException&) {
    report("out of memory");
  } catch (const std::bad_alloc&) {
    report("out of memory");
  } catch (const KOVAException& exception) {
    char reason[512];
    const KOVAString text = exception.GetRequest() + " " + exception.GetDiagnostic();
    if (text.convertToUTF8(reason, sizeof reason).IsFailure()) reason[0] = '\0';
    report(reason);
  } catch (const Gk_Exception& exception) {
    report(exception.getMessage() != nullptr ? exception.getMessage() : "no message");
  } catch (const std::exception& exception) {
    report(exception.what());
  } catch (...) {
    report("unknown type");
  }
}

void runJob(void* work, void* data) {
  runGuarded("a job", [&] { static_cast<KOVAThreadJob*>(work)->Work(data); });
}

// Works on a copy: a callback may change the registry.
void runAll(const CallbackList& callbacks, const char* what, void (Callback::*operation)()) {
  for (Callback* callback : callbacks) {
    runGuarded(what, [&] { (callback->*operation)(); });
  }
}

CallbackList copyRegistry() {
  const std::lock_guard guard(pool().callbacks);
  return pool().registry;
}

CallbackList takeThreadCallbacks() {
  const std::lock_guard guard(pool().callbacks);
  const auto index = static_cast<std::size_t>(t_threadId);
  if (index >= pool().threadCallbacks.size()) return {};
  return std::exchange(pool().threadCallbacks[index], {});
}

void startWorker() {
  kernel::startThread();
  applySessionValues();
  t_threadId = static_cast<int>(pool().threadIds.AtomicIncrement());
  runGuarded("the start of a worker",
             [] { runAll(copyRegistry(), "a thread-start callback", &Callback::ThreadStart); });
}

void endWorker() {
  runGuarded("the end of a worker", [] {
    runAll(takeThreadCallbacks(), "a thread-end callback", &Callback::ThreadEnd);
    runAll(copyRegistry(), "a thread-end callback", &Callback::ThreadEnd);
  });
  kernel::stopThread();
  t_threadId = 0;
  pool().threadIds.AtomicDecrement();
}

bool isForbiddenByEnvironment() {
  std::string value;
  if (!kova::platform::readVariable("VEX_FORCE_NO_ORLA_THREADS", value)) return false;
  return !value.empty() && std::string_view("TtYy1").find(value[0]) != std::string_view::npos;
}

int wantedThreads() {
  std::string value;
  if (kova::platform::readVariable("VEX_NUM_THREADS", value)) {
    const long count = std::strtol(value.c_str(), nullptr, 10);
    if (count != 0) return static_cast<int>(std::clamp<long>(count, INT_MIN, INT_MAX));
  }
  return static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
}

// At the end of the process.
void leaveWorkersBehind() {
  // Another thread that is just starting or joining the workers is left to itself, too.
  const std::unique_lock lock(pool().lifecycle, std::try_to_lock);
  if (lock.owns_lock()) pool().service.abandon();
}

void synchronise() {
  if (!isOnWorker()) pool().service.synchronise();
}

// One callback list and one value for each thread id, 0 included. Where memory is short a worker
// goes without.
void makeThreadSlots(int workers) noexcept {
  try {
    pool().threadValues.resize(workers + 1);
    g_threadValueCount = workers + 1;
    const std::lock_guard guard(pool().callbacks);
    pool().threadCallbacks.resize(static_cast<std::size_t>(workers) + 1);
  } catch (const KOVAAllocException&) {
  } catch (const std::bad_alloc&) {
  }
}

void clearThreadSlots() noexcept {
  g_threadValueCount = 0;
  pool().threadValues.clear();
  const std::lock_guard guard(pool().callbacks);
  pool().threadCallbacks.clear();
}

}  // namespace

KOVASingletonThreadPool::ThreadInitializerCallback_t::~ThreadInitializerCallback_t() = default;

void KOVASingletonThreadPool::Initialize(bool multithreaded) {
  // A worker cannot wait for the thread that starts or joins it.
  if (isOnWorker()) return;
  const std::lock_guard guard(pool().lifecycle);
  if (pool().users.AtomicIncrement() != 1) return;

  kernel::startMainThread();
  applySessionValues();
  g_isMTEnabled = multithreaded && !isForbiddenByEnvironment();
  g_threadCount = wantedThreads();
  if (hasWorkers()) {
    static const int registered = std::atexit(leaveWorkersBehind);
    static_cast<void>(registered);
    const int workers = pool().service.start(g_threadCount, {startWorker, endWorker, runJob});
    g_threadCount = workers;
    makeThreadSlots(workers);
  }
  g_isReady = true;
}

void KOVASingletonThreadPool::Shutdown() {
  if (isOnWorker()) return;
  const std::lock_guard guard(pool().lifecycle);
  if (pool().users.GetCount() == 0 || pool().users.AtomicDecrement() != 0) return;

  if (hasWorkers()) pool().service.terminate();
  kernel::stopMainThread();
  clearThreadSlots();
  g_threadCount = 0;
  g_isMTEnabled = false;
  g_isReady = false;
}

bool KOVASingletonThreadPool::IsReadyForUse() noexcept { return g_isReady; }

bool KOVASingletonThreadPool::IsMTEnabled() noexcept { return g_isMTEnabled; }

int KOVASingletonThreadPool::GetThreadCount() noexcept { return g_threadCount; }

int KOVASingletonThreadPool::GetCurrentThreadID() noexcept { return t_threadId; }

void** KOVASingletonThreadPool::GetThreadValue(int threadId) noexcept {
  if (threadId < 0 || threadId >= g_threadValueCount) return nullptr;
  return &pool().threadValues[threadId];
}

void KOVASingletonThreadPool::Enqueue(KOVAThreadJob* job, void* data) {
  if (job != nullptr && !pool().service.run(job, data)) runJob(job, data);
}

void KOVASingletonThreadPool::WaitForAllCurrentJobs() { synchronise(); }

void KOVASingletonThreadPool::AddInitializerCallback(ThreadInitializerCallback_t* callback) {
  synchronise();
  if (callback == nullptr) return;
  const std::lock_guard guard(pool().callbacks);
  pool().registry.push_back(callback);
  for (std::size_t id = 1; id < pool().threadCallbacks.size(); ++id) {
    pool().threadCallbacks[id].push_back(callback);
  }
}

void KOVASingletonThreadPool::RemoveInitializerCallback(ThreadInitializerCallback_t* callback) {
  synchronise();
  const std::lock_guard guard(pool().callbacks);
  CallbackList& registry = pool().registry;
  const auto found = std::find(registry.begin(), registry.end(), callback);
  if (found != registry.end()) registry.erase(found);
}

void KOVASingletonThreadPool::CacheSessionValues(double absoluteResolution, double fitTolerance) {
  if (absoluteResolution > 0.0) g_absoluteResolution = absoluteResolution;
  if (fitTolerance > 0.0) g_fitTolerance = fitTolerance;
}

void KOVASingletonThreadPool::InitializeKernel() {
  if (g_isKernelStopped) throw KOVAAbortException();
  g_kernelUsers.AtomicIncrement();
  kernel::startMainThread();
}

void KOVASingletonThreadPool::ShutdownKernel() {
  // Never cleared again: the kernel starts only once in a process.
  if (g_kernelUsers.AtomicDecrement() < 1) g_isKernelStopped = true;
  kernel::stopMainThread();
}

bool KOVASingletonThreadPool::HasKernelBeenInitialized() noexcept {
  return kernel::isReadyForUse();
}
