#include "tests/support/AllocationFailure.h"

#include "kovabase/foundation/KOVAAllocException.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_THREAD__)
#define KOVA_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define KOVA_THREAD_SANITIZER 1
#endif
#if __has_feature(address_sanitizer)
#define KOVA_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define KOVA_ADDRESS_SANITIZER 1
#endif

namespace {

struct Watch {
  bool isOn = false;
  bool allFailFromThere = false;
  bool hasFailed = false;
  int which = 0;
  int allocations = 0;
  int blocksHeld = 0;
};

constinit thread_local Watch t_watch;

}  // namespace

#if defined(KOVA_THREAD_SANITIZER)

const bool kova::test::kCanFailAllocations = false;

// What is too large is refused with null instead of ending the program.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

#else

const bool kova::test::kCanFailAllocations = true;

// The real heap, which the functions below stand before.
#if defined(KOVA_ADDRESS_SANITIZER)
#define KOVA_HEAP(name) __interceptor_##name
// What is too large is refused with null instead of ending the program.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
#else
#define KOVA_HEAP(name) __libc_##name
#endif

extern "C" {
void* KOVA_HEAP(malloc)(std::size_t bytes);
void* KOVA_HEAP(calloc)(std::size_t count, std::size_t bytes);
void* KOVA_HEAP(realloc)(void* block, std::size_t bytes);
void KOVA_HEAP(free)(void* block);
}

namespace {

bool mustFail() {
  Watch& watch = t_watch;
  if (!watch.isOn) return false;
  ++watch.allocations;
  const bool fails =
      watch.allFailFromThere ? watch.allocations >= watch.which : watch.allocations == watch.which;
  if (fails) {
    watch.hasFailed = true;
    errno = ENOMEM;
  }
  return fails;
}

void* counted(void* block) {
  if (block != nullptr && t_watch.isOn) ++t_watch.blocksHeld;
  return block;
}

void* allocateOrThrow(std::size_t bytes) {
  for (;;) {
    if (void* const block = std::malloc(bytes != 0 ? bytes : 1)) return block;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

void* allocateOrNull(std::size_t bytes) noexcept {
  try {
    return allocateOrThrow(bytes);
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

extern "C" {

void* malloc(std::size_t bytes) { return mustFail() ? nullptr : counted(KOVA_HEAP(malloc)(bytes)); }

void* calloc(std::size_t count, std::size_t bytes) {
  return mustFail() ? nullptr : counted(KOVA_HEAP(calloc)(count, bytes));
}

void* realloc(void* block, std::size_t bytes) {
  if (mustFail()) return nullptr;
  void* const moved = KOVA_HEAP(realloc)(block, bytes);
  return block == nullptr ? counted(moved) : moved;
}

void free(void* block) {
  if (block != nullptr && t_watch.isOn) --t_watch.blocksHeld;
  KOVA_HEAP(free)(block);
}

}  // extern "C"

// A sanitizer brings operators of its own, which do not go through malloc.
void* operator new(std::size_t bytes) { return allocateOrThrow(bytes); }
void* operator new[](std::size_t bytes) { return allocateOrThrow(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return allocateOrNull(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return allocateOrNull(bytes);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

#endif

namespace kova::test {

FailingAllocation::FailingAllocation(int which, Shortage shortage) noexcept {
  t_watch = Watch();
  t_watch.which = which;
  t_watch.allFailFromThere = shortage == Shortage::kAllFailFromThere;
  t_watch.isOn = true;
}

FailingAllocation::~FailingAllocation() { t_watch.isOn = false; }

int FailingAllocation::allocations() const noexcept { return t_watch.allocations; }
bool FailingAllocation::hasFailed() const noexcept { return t_watch.hasFailed; }
int FailingAllocation::blocksHeld() const noexcept { return t_watch.blocksHeld; }

::testing::AssertionResult survivesFailingAllocations(const std::function<bool()>& work,
                                                      Shortage shortage) {
  if (!work()) return ::testing::AssertionFailure() << "fails without a shortage of memory";
  if (!kCanFailAllocations) return ::testing::AssertionSuccess();
  for (int which = 1; which < INT_MAX; ++which) {
    const char* problem = nullptr;
    int blocksHeld = 0;
    bool hasFailed = false;
    {
      const FailingAllocation failure(which, shortage);
      try {
        if (!work()) problem = "ended otherwise than stated";
      } catch (const KOVAAllocException&) {
      } catch (const std::bad_alloc&) {
        problem = "ended in std::bad_alloc";
      } catch (...) {
        problem = "ended in an exception that says nothing of memory";
      }
      blocksHeld = failure.blocksHeld();
      hasFailed = failure.hasFailed();
    }
    if (problem == nullptr && blocksHeld > 0) problem = "did not give back all of its blocks";
    if (problem != nullptr) {
      return ::testing::AssertionFailure() << "the run in which allocation " << which << " failed "
                                           << problem << "; blocks held: " << blocksHeld;
    }
    if (!hasFailed) {
      if (which == 1) return ::testing::AssertionFailure() << "allocates nothing";
      break;
    }
  }
  return ::testing::AssertionSuccess();
}

}  // namespace kova::test
