#include "kovabase/files/KOVALibraryManager.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/platform/Environment.h"

#include <algorithm>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

struct NameHash {
  std::size_t operator()(const KOVAString& name) const noexcept { return name.hashCode(); }
};

struct Entry {
  KOVALibraryHandle library;
  unsigned number = 0;  // counts up with each library, so that they can go in reverse order
};

struct Libraries {
  KOVAMutex lock;
  std::unordered_map<KOVAString, Entry, NameHash> table;
  unsigned lastNumber = 0;
};

Libraries& libraries() try {
  static Libraries* const all = new Libraries;
  return *all;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

}  // namespace

KOVAResult KOVALibraryManager::CreateLibrary(const KOVAString& name,
                                             const KOVAString& initFunctionName,
                                             const KOVAString& finalizeFunctionName,
                                             KOVALibraryHandle& library) {
  Libraries& all = libraries();
  const KOVAMutex::LockGuard_t guard(all.lock);
  if (const auto found = all.table.find(name); found != all.table.end()) {
    library = found->second.library;
    return KOVAResultCode::kSuccess;
  }
  const KOVALibraryHandle created(new (std::nothrow)
                                      KOVALibrary(name, initFunctionName, finalizeFunctionName));
  if (!created.IsValid()) throw KOVAAllocException();
  KOVAResult result = KOVAResultCode::kSuccess;
  result &= AddLibrary(name, created);
  library = created;
  return result;
}

KOVAResult KOVALibraryManager::AddLibrary(const KOVAString& name, KOVALibrary* library) try {
  if (library == nullptr) return KOVAResultCode::kInvalidArgument;
  Libraries& all = libraries();
  const KOVAMutex::LockGuard_t guard(all.lock);
  Entry& entry = all.table[name];
  if (!entry.library.IsValid()) entry.number = ++all.lastNumber;
  entry.library = KOVALibraryHandle(library);
  return KOVAResultCode::kSuccess;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVAResult KOVALibraryManager::FreeLibraries() { return FreeLibrariesInternal(false); }

KOVAResult KOVALibraryManager::FreeLibrariesOnTerminate() { return FreeLibrariesInternal(true); }

KOVAResult KOVALibraryManager::FreeLibrariesInternal(bool onTerminate) try {
  std::string value;
  const bool isForced =
      kova::platform::readVariable("KOVA_FORCE_UNLOAD_DLLS", value) && value == "TRUE";
  if (onTerminate && !isForced) return KOVAResultCode::kSuccess;

  Libraries& all = libraries();
  std::vector<Entry> entries;
  {
    const KOVAMutex::LockGuard_t guard(all.lock);
    for (const auto& [name, entry] : all.table) entries.push_back(entry);
    all.table.clear();
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.number < b.number; });
  // Without the lock: the libraries' own functions run now, and may ask for libraries.
  while (!entries.empty()) {
    if (onTerminate) entries.back().library->SetUnloadable(true);
    entries.pop_back();
  }
  return KOVAResultCode::kSuccess;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}
