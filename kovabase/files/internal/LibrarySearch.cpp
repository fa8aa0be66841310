#include "kovabase/files/internal/LibrarySearch.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/options/KOVAEnvironment.h"

namespace kova::internal {

namespace {

struct AddedDirectories {
  KOVAMutex lock;
  KOVADynamicArray<KOVAFilePath> directories;
};

AddedDirectories& addedDirectories() {
  static AddedDirectories* const added = new AddedDirectories;
  return *added;
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

KOVAResult searchPathDirectories(KOVADynamicArray<KOVAFilePath>& directories) {
  KOVAString variable;
  KOVAString list;
  KOVAResult result = KOVAEnvironment::GetPathEnvName(variable);
  result &= KOVAEnvironment::GetVariable(variable, list);
  for (int start = 0, end = 0; result.IsSuccess() && end <= list.length(); ++end) {
    if (end < list.length() && !isListSeparator(list.charAt(end))) continue;
    if (end > start) directories.add(KOVAFilePath(list.substring(start, end)));
    start = end + 1;
  }
  return result;
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
