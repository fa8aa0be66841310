#pragma once

#include <mutex>

/// Our own stand-in for the mutex of the solid-modeling kernel, under the kernel's name for it.
namespace kova::kernel {

/// A mutual-exclusion lock that its owner may acquire again; it is free after as many releases.
class mutex_resource {
 public:
  /// The argument belongs to the kernel's interface; every mutex is re-entrant, whatever it says.
  explicit mutex_resource(int /*kind*/) noexcept {}

  void acquire() { _mutex.lock(); }
  void release() { _mutex.unlock(); }

 private:
  std::recursive_mutex _mutex;
};

}  // namespace kova::kernel
