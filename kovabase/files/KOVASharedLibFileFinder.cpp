#include "kovabase/files/KOVASharedLibFileFinder.h"

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/internal/LibrarySearch.h"
#include "kovabase/options/KOVAEnvironment.h"

KOVASharedLibFileFinder::KOVASharedLibFileFinder(const KOVAFilePath& directory)
    : KOVAFileFinder(directory) {}

KOVASharedLibFileFinder::~KOVASharedLibFileFinder() = default;

KOVAResult KOVASharedLibFileFinder::AddPrefix(KOVAString& name) {
  if (!name.isEmpty()) name = kova::internal::kLibraryPrefix + name;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVASharedLibFileFinder::AddExtension(KOVAString& name) {
  if (!name.isEmpty()) name.append(kova::internal::kLibraryExtension);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVASharedLibFileFinder::GetExactName(const KOVAString& name, KOVAString& exactName) {
  KOVAString adjusted = KOVAFilePath(name).GetName();
  KOVAResult result = AddPrefix(adjusted);
  result &= AdjustName(adjusted);
  result &= AddExtension(adjusted);
  if (result.IsFailure() || adjusted.isEmpty()) return KOVAResultCode::kFailure;
  exactName = adjusted;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVASharedLibFileFinder::Find(const KOVAString& name, KOVAFilePath& path) {
  KOVADynamicArray<KOVAFilePath> places;
  if (kova::internal::isLibraryPath(name)) {
    places.add(KOVAFilePath(name));
  } else if (GetDirectory().IsValid()) {
    return KOVAFileFinder::Find(name, path);
  } else {
    KOVAString exactName;
    const KOVAResult result = GetExactName(name, exactName);
    if (result.IsFailure()) return result;
    places = kova::internal::libraryPlaces(exactName);
  }
  for (const KOVAFilePath& place : places) {
    if (place.DoesFileExist()) {
      path = place;
      return KOVAResultCode::kSuccess;
    }
  }
  return KOVAResultCode::kFileNotFound;
}

// Declared with the environment, which paths and finders rest on.
KOVAResult KOVAEnvironment::FindSharedExternalLibrary(const KOVAString& name, KOVAString& path) {
  KOVASharedLibFileFinder finder;
  KOVAFilePath found;
  if (finder.Find(name, found).IsFailure() || !found.IsValid()) return KOVAResultCode::kFailure;
  path = found.GetPath();
  return KOVAResultCode::kSuccess;
}
