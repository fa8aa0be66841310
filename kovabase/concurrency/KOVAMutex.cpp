#include "kovabase/concurrency/KOVAMutex.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/kernel/mutex_resource.h"

using kova::kernel::mutex_resource;

namespace {

mutex_resource* resource(void* impl) { return static_cast<mutex_resource*>(impl); }

}  // namespace

KOVAMutex::KOVAMutex() noexcept : _impl(kova::internal::tryCreate<mutex_resource>(1)) {}

KOVAMutex::~KOVAMutex() {
  kova::internal::destroy(resource(_impl));
  _impl = nullptr;
}

void KOVAMutex::Acquire() noexcept {
  if (_impl != nullptr) resource(_impl)->acquire();
}

void KOVAMutex::Release() noexcept {
  if (_impl != nullptr) resource(_impl)->release();
}
