#include "kovabase/files/KOVAFileDescriptor.h"

#include "kovabase/platform/FileDescriptor.h"
#include "kovabase/platform/FileSystem.h"
#include "kovabase/platform/NativePath.h"

#include <utility>

namespace {

kova::platform::Access accessOf(KOVAFileIOMode mode) {
  switch (mode) {
    case KOVAFileIOMode::kWrite: return kova::platform::Access::kWrite;
    case KOVAFileIOMode::kReadAndWrite: return kova::platform::Access::kReadAndWrite;
    case KOVAFileIOMode::kRead: break;
  }
  return kova::platform::Access::kRead;
}

}  // namespace

KOVAFileDescriptor::KOVAFileDescriptor(const KOVAFileHandle& file, KOVAFileIOMode mode)
    : _file(file), _mode(mode) {}

KOVAFileDescriptor::~KOVAFileDescriptor() { Close(); }

KOVAResult KOVAFileDescriptor::Open() {
  if (!_file.IsValid()) return KOVAResultCode::kInvalidArgument;
  if (IsOpen()) return KOVAResultCode::kSuccess;
  const KOVAString path = _file->GetPath().GetPath();
  const kova::platform::NativePath native(path.getUnits(), path.length());
  if (native.isValid()) {
    _descriptor = kova::platform::openDescriptor(native.text(), accessOf(_mode));
  }
  return IsOpen() ? KOVAResultCode::kSuccess : KOVAResultCode::kFileOpenError;
}

KOVAResult KOVAFileDescriptor::Close() {
  if (!IsOpen()) return KOVAResultCode::kSuccess;
  const int error = kova::platform::closeDescriptor(std::exchange(_descriptor, -1));
  return error == 0 ? KOVAResultCode::kSuccess : KOVAResultCode::kFileSaveError;
}

KOVAResult KOVAFileDescriptor::GetSize(std::uint64_t& bytes) const {
  kova::platform::FileStatus status = {};
  if (!IsOpen() || !kova::platform::queryDescriptor(_descriptor, status)) {
    return KOVAResultCode::kFailure;
  }
  bytes = status.bytes;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFileDescriptor::ReadBytes(std::uint64_t offset, std::size_t count,
                                         unsigned char* destination, std::size_t& bytesRead) const {
  bytesRead = 0;
  if (destination == nullptr) return KOVAResultCode::kInvalidArgument;
  if (!IsOpen()) return KOVAResultCode::kFailure;
  const std::int64_t done = kova::platform::readAt(_descriptor, offset, destination, count);
  if (done < 0) return KOVAResultCode::kFailure;
  bytesRead = static_cast<std::size_t>(done);
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAFileDescriptor::WriteBytes(std::uint64_t offset, std::size_t count,
                                          const unsigned char* source) {
  if (source == nullptr) return KOVAResultCode::kInvalidArgument;
  if (!IsOpen()) return KOVAResultCode::kFailure;
  const std::int64_t done = kova::platform::writeAt(_descriptor, offset, source, count);
  return done >= 0 && static_cast<std::size_t>(done) == count ? KOVAResultCode::kSuccess
                                                              : KOVAResultCode::kFailure;
}
