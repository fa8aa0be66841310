#include "kovabase/platform/Module.h"

#include <cerrno>
#include <dlfcn.h>

namespace kova::platform {

void* openModule(const std::string& path, std::string& error, int* systemError) {
  errno = 0;
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    if (systemError != nullptr) *systemError = errno;
    const char* reason = dlerror();
    error = reason != nullptr ? reason : "the loader gave no reason";
  }
  return module;
}

void* findSymbol(void* module, const std::string& name) {
  return module != nullptr ? dlsym(module, name.c_str()) : nullptr;
}

void closeModule(void* module) {
  if (module != nullptr) dlclose(module);
}

}  // namespace kova::platform
