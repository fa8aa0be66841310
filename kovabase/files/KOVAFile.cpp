#include "kovabase/files/KOVAFile.h"

#include "kovabase/platform/FileSystem.h"
#include "kovabase/platform/NativePath.h"

KOVAFile::KOVAFile(const KOVAFilePath& path) : _path(path) {}

KOVAFile::~KOVAFile() = default;

bool KOVAFile::IsRegular() const {
  const KOVAString path = _path.GetPath();
  const kova::platform::NativePath native(path.getUnits(), path.length());
  kova::platform::FileStatus status = {};
  return native.isValid() && kova::platform::queryFile(native.text(), status) && status.isRegular;
}

KOVAResult KOVAFile::GetSize(std::uint64_t& bytes) const {
  const KOVAString path = _path.GetPath();
  const kova::platform::NativePath native(path.getUnits(), path.length());
  kova::platform::FileStatus status = {};
  if (!native.isValid() || !kova::platform::queryFile(native.text(), status)) {
    return KOVAResultCode::kFileNotFound;
  }
  bytes = status.bytes;
  return KOVAResultCode::kSuccess;
}
