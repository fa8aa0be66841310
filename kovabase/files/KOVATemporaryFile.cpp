#include "kovabase/files/KOVATemporaryFile.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/platform/Environment.h"
#include "kovabase/platform/FileSystem.h"
#include "kovabase/platform/Identity.h"
#include "kovabase/platform/NativePath.h"
#include "kovabase/strings/KOVAStringConversions.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kMostNameUnits = 5000;
constexpr int kMostFallbackNames = 25;
constexpr std::size_t kMostModeCharacters = 15;
constexpr const char* kFallbackPrefix = "KOVATemp_";

bool isDirectory(const char* native) {
  kova::platform::FileStatus status = {};
  return kova::platform::queryFile(native, status) && status.isDirectory;
}

// Ends with a separator; empty when there is no directory.
KOVAString findDirectory() {
  std::string native;
  if (kova::platform::readVariable("TMPDIR", native) && isDirectory(native.c_str())) {
    native += '/';
  } else if (isDirectory("./")) {
    native = "./";
  } else {
    return KOVAString();
  }
  const std::vector<unsigned short> stored =
      kova::platform::storedForm(native.data(), native.size());
  return KOVAString::fromUnits(stored.data(), static_cast<int>(stored.size()));
}

// Other processes and threads make other names, and this thread never the same one again.
KOVAString makeUniqueName() {
  static std::atomic<unsigned> counter = 0;
  char name[96];
  std::snprintf(name, sizeof name, "KOVATemp-P%d-T%d-%u-%013llx", kova::platform::processId(),
                kova::platform::threadId(), ++counter,
                static_cast<unsigned long long>(kova::platform::randomBits() >> 12));
  return KOVAString(name, "US-ASCII");
}

KOVAString makeWorkingName() try {
  KOVAString name = findDirectory();
  if (!name.isEmpty()) name.append(makeUniqueName());
  return name;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

}  // namespace

KOVATemporaryFile::KOVATemporaryFile() { InitializeName(KOVAFilePath(), nullptr, 0); }

KOVATemporaryFile::KOVATemporaryFile(const KOVAFilePath& base, const char* name,
                                     unsigned int number) {
  InitializeName(base, name, number);
}

KOVATemporaryFile::~KOVATemporaryFile() { Terminate(); }

void KOVATemporaryFile::InitializeName(const KOVAFilePath& /*base*/, const char* name,
                                       unsigned int number) {
  KOVAString workingName = makeWorkingName();
  if (name != nullptr && name[0] != '\0' && !workingName.isEmpty()) {
    KOVAString part = KOVAFilePath(name).GetName();
    if (number != 0) {
      part.append("_");
      part.append(KOVAStringFromULong(number));
    }
    if (static_cast<long long>(workingName.length()) + 1 + part.length() < kMostNameUnits) {
      workingName.append("_");
      workingName.append(part);
    }
  }
  _path = KOVAFilePath(workingName);
  for (int i = 1; !_path.IsValid() && i <= kMostFallbackNames; ++i) {
    const KOVAFilePath fallback(kFallbackPrefix + KOVAStringFromInteger(i));
    if (!fallback.DoesDirectoryExist()) _path = fallback;
  }
}

void KOVATemporaryFile::GetPath(KOVAFilePath& path) const { path = _path; }

std::FILE* KOVATemporaryFile::Open(const char* mode) {
  Close();
  if (mode == nullptr || std::strlen(mode) > kMostModeCharacters) return nullptr;
  const KOVAString path = _path.GetPath();
  const kova::platform::NativePath native(path.getUnits(), path.length());
  if (!native.isValid()) return nullptr;
  _stream = kova::platform::openPrivateStream(native.text(), mode, !_isCreated);
  if (_stream != nullptr) _isCreated = true;
  return _stream;
}

bool KOVATemporaryFile::Close() {
  return _stream == nullptr || std::fclose(std::exchange(_stream, nullptr)) == 0;
}

bool KOVATemporaryFile::Remove() {
  if (!_path.RemoveFile()) return false;
  _isCreated = false;
  return true;
}

void KOVATemporaryFile::Terminate() {
  Close();
  Remove();
}
