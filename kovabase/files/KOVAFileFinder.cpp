#include "kovabase/files/KOVAFileFinder.h"

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/Gk_DirElement.h"

KOVAFileFinder::KOVAFileFinder(const KOVAFilePath& directory) : _directory(directory) {}

KOVAFileFinder::~KOVAFileFinder() = default;

KOVAResult KOVAFileFinder::GetExactName(const KOVAString& name, KOVAString& exactName) {
  KOVAString adjusted = KOVAFilePath(name).GetName();
  if (AdjustName(adjusted).IsFailure() || adjusted.isEmpty()) return KOVAResultCode::kFailure;
  exactName = adjusted;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFileFinder::AdjustName(KOVAString& /*name*/) { return KOVAResultCode::kSuccess; }

KOVAResult KOVAFileFinder::Find(const KOVAString& name, KOVAFilePath& path) {
  KOVAString exactName;
  const KOVAResult result = GetExactName(name, exactName);
  if (result.IsFailure()) return result;

  if (!_directory.IsValid()) {
    const KOVAFilePath candidate(exactName);
    if (!candidate.DoesFileExist()) return KOVAResultCode::kFileNotFound;
    path = candidate;
    return KOVAResultCode::kSuccess;
  }

  KOVADynamicArray<KOVAFilePath> waiting(1, _directory);
  for (int i = 0; i < waiting.size(); ++i) {
    Gk_DirElement directory(waiting[i]);
    const KOVAFilePath candidate(directory.GetPath().GetPath(), exactName);
    if (candidate.DoesFileExist()) {
      path = candidate;
      return KOVAResultCode::kSuccess;
    }
    directory.Read();
    for (int j = 0; j < directory.GetDirectoryCount(); ++j) {
      const Gk_DirElement below = directory.GetDirectory(j);
      if (!below.IsLink()) waiting.add(below.GetPath());
    }
  }
  return KOVAResultCode::kFileNotFound;
}
