#include "kovabase/platform/ThreadSlot.h"

#include <pthread.h>

namespace kova::platform {

ThreadSlot::ThreadSlot(void (*destroy)(void*)) noexcept
    : _isUsable(pthread_key_create(&_key, destroy) == 0) {}

bool ThreadSlot::set(void* value) const noexcept {
  return _isUsable && pthread_setspecific(_key, value) == 0;
}

}  // namespace kova::platform
