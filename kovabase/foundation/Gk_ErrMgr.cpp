#include "kovabase/foundation/Gk_ErrMgr.h"

#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAError.h"

#include <atomic>

namespace {

constinit std::atomic<bool> g_abort{false};

}  // namespace

void Gk_ErrMgr::raise(const Gk_Exception& exception) {
  if (exception.getMessage() != nullptr) KOVAError::Printf("%s", exception.getMessage());
  throw Gk_Exception(exception);
}

void Gk_ErrMgr::setAbort() noexcept { g_abort.store(true); }

bool Gk_ErrMgr::shouldAbort() noexcept { return g_abort.load(); }

void Gk_ErrMgr::checkAbort() {
  // The plain read first: this stands in inner loops, and the flag is hardly ever set.
  if (g_abort.load(std::memory_order_relaxed) && g_abort.exchange(false)) {
    throw KOVAAbortException();
  }
}

void Gk_ErrMgr::doAssert(const char*, int) noexcept {}

void Gk_ErrMgr::trap() noexcept {}
