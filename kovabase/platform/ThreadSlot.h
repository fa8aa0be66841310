#pragma once

namespace kova::platform {

/// What a thread leaves behind and has destroyed at its end: one pointer per thread, null at first.
/// Unlike a thread_local object with a destructor it ends nothing when memory is exhausted, and it
/// may be set again in destructors that run while the thread ends.
class ThreadSlot {
 public:
  /// @param destroy  is called with each ending thread's value, unless that is null; not on the
  ///   thread that ends the process.
  explicit ThreadSlot(void (*destroy)(void*)) noexcept;
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;

  /// @return false, and the value stays as it was, when the system has no place left.
  bool set(void* value) const noexcept;

 private:
  unsigned _key = 0;
  bool _isUsable;
};

}  // namespace kova::platform
