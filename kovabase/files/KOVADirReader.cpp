#include "kovabase/files/KOVADirReader.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/platform/FileSystem.h"
#include "kovabase/platform/NativePath.h"

#include <new>
#include <vector>

KOVADirReader::KOVADirReader(const KOVAFilePath& directory)
    : _directory(directory), _entries(new (std::nothrow) kova::platform::DirectoryEntries) {
  if (_entries == nullptr) throw KOVAAllocException();
}

KOVADirReader::~KOVADirReader() = default;

KOVAResult KOVADirReader::Open() {
  Close();
  if (!_directory.IsValid()) return KOVAResultCode::kInvalidArgument;
  const KOVAString path = _directory.GetPath();
  const kova::platform::NativePath native(path.getUnits(), path.length());
  if (native.isValid() && _entries->open(native.text())) return KOVAResultCode::kSuccess;
  return native.isValid() && kova::platform::doesExist(native.text())
             ? KOVAResultCode::kFileOpenError
             : KOVAResultCode::kFileNotFound;
}

void KOVADirReader::Close() { _entries->close(); }

bool KOVADirReader::GetNext(KOVAString& name, bool& isDirectory, bool& isLink) try {
  kova::platform::DirectoryEntries::Entry entry = {};
  if (!_entries->next(entry)) return false;
  const std::vector<unsigned short> stored =
      kova::platform::storedForm(entry.name.data(), entry.name.size());
  name = KOVAString::fromUnits(stored.data(), static_cast<int>(stored.size()));
  isDirectory = entry.isDirectory;
  isLink = entry.isLink;
  return true;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}
