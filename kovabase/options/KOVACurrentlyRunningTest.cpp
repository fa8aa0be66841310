#include "kovabase/options/KOVACurrentlyRunningTest.h"

#include "kovabase/concurrency/KOVAMutex.h"

#include <new>

namespace {

struct RunningTest {
  KOVAMutex mutex;
  KOVAString name;
};

// Never destroyed, and needs no memory: a scope may end in any destructor.
RunningTest& runningTest() noexcept {
  alignas(RunningTest) static unsigned char place[sizeof(RunningTest)];
  static RunningTest* const instance = ::new (static_cast<void*>(place)) RunningTest;
  return *instance;
}

}  // namespace

KOVACurrentlyRunningTest::Scope_t::Scope_t(const KOVAString& name) : _previous(GetName()) {
  SetName(name);
}

KOVACurrentlyRunningTest::Scope_t::~Scope_t() {
  RunningTest& test = runningTest();
  const KOVAMutex::LockGuard_t guard(test.mutex);
  test.name = static_cast<KOVAString&&>(_previous);
}

bool KOVACurrentlyRunningTest::IsRunning() {
  RunningTest& test = runningTest();
  const KOVAMutex::LockGuard_t guard(test.mutex);
  return !test.name.isEmpty();
}

KOVAString KOVACurrentlyRunningTest::GetName() {
  RunningTest& test = runningTest();
  const KOVAMutex::LockGuard_t guard(test.mutex);
  return test.name;
}

void KOVACurrentlyRunningTest::SetName(const KOVAString& name) {
  RunningTest& test = runningTest();
  const KOVAMutex::LockGuard_t guard(test.mutex);
  test.name = name;
}
