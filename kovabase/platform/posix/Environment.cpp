#include "kovabase/platform/Environment.h"

#include <mutex>
#include <stdlib.h>
#include <unistd.h>

namespace kova::platform {

namespace {

// Usable before and after any other static object: nothing runs to make or to destroy it.
constinit std::mutex environmentLock;

}  // namespace

bool readVariable(const char* name, std::string& value) {
  const std::lock_guard<std::mutex> guard(environmentLock);
  const char* text = getenv(name);
  if (text == nullptr) return false;
  value = text;
  return true;
}

bool writeVariable(const char* name, const char* value) noexcept {
  const std::lock_guard<std::mutex> guard(environmentLock);
  return setenv(name, value, 1) == 0;
}

bool removeVariable(const char* name) noexcept {
  const std::lock_guard<std::mutex> guard(environmentLock);
  return unsetenv(name) == 0;
}

std::vector<std::string> environmentBlock() {
  const std::lock_guard<std::mutex> guard(environmentLock);
  std::vector<std::string> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    entries.emplace_back(*entry);
  }
  return entries;
}

}  // namespace kova::platform
