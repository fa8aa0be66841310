#include "kovabase/files/internal/LibrarySearch.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/platform/Environment.h"
#include "kovabase/platform/NativePath.h"

#include <new>
#include <string>
#include <vector>

namespace kova::internal {

namespace {

struct AddedDirectories {
  KOVAMutex lock;
  KOVADynamicArray<KOVAFilePath> directories;
};

AddedDirectories& addedDirectories() try {
  static AddedDirectories* const added = new AddedDirectories;
  return *added;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

bool isListSeparator(unsigned short unit) { return unit == ';' || unit == ':'; }

}  // namespace

bool isLibraryPath(const KOVAString& name) {
  return name.indexOf(static_cast<unsigned short>('/')) >= 0 ||
         name.indexOf(static_cast<unsigned short>('\\')) >= 0;
}

void addLibraryDirectory(const KOVAString& directory) {
  if (directory.isEmpty()) return;
  KOVAFilePath path(directory);
  if (!path.IsAbsolute()) {
    path = KOVAFilePath(KOVAFilePath::GetCurrentWorkingDirectory().GetPath(), directory);
  }
  AddedDirectories& added = addedDirectories();
  const KOVAMutex::LockGuard_t guard(added.lock);
  for (const KOVAFilePath& known : added.directories) {
    if (known.GetPath() == path.GetPath()) return;
  }
  added.directories.add(path);
}

KOVAResult searchPathDirectories(KOVADynamicArray<KOVAFilePath>& directories) try {
  KOVAString name;
  char variable[16];
  std::string value;
  // Read as names of the system, which the default code page need not be able to spell.
  if (KOVAEnvironment::GetPathEnvName(name).IsFailure() ||
      name.convertToUTF8(variable, sizeof variable).IsFailure() ||
      !kova::platform::readVariable(variable, value)) {
    return KOVAResultCode::kFailure;
  }
  const std::vector<unsigned short> list = kova::platform::storedForm(value.data(), value.size());
  const int count = static_cast<int>(list.size());
  for (int start = 0, end = 0; end <= count; ++end) {
    if (end < count && !isListSeparator(list[static_cast<std::size_t>(end)])) continue;
    if (end > start) {
      directories.add(KOVAFilePath(KOVAString::fromUnits(list.data() + start, end - start)));
    }
    start = end + 1;
  }
  return KOVAResultCode::kSuccess;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVADynamicArray<KOVAFilePath> libraryPlaces(const KOVAString& fileName) {
  KOVADynamicArray<KOVAFilePath> places;
  {
    AddedDirectories& added = addedDirectories();
    const KOVAMutex::LockGuard_t guard(added.lock);
    for (const KOVAFilePath& directory : added.directories) {
      places.add(KOVAFilePath(directory.GetPath(), fileName));
    }
  }
  KOVADynamicArray<KOVAFilePath> directories;
  searchPathDirectories(directories);
  for (const KOVAFilePath& directory : directories) {
    if (directory.IsAbsolute()) places.add(KOVAFilePath(directory.GetPath(), fileName));
  }
  return places;
}

}  // namespace kova::internal
