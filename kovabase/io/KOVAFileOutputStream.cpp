#include "kovabase/io/KOVAFileOutputStream.h"

#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/platform/FileDescriptor.h"
#include "kovabase/strings/KOVAString.h"

#include <cerrno>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t kBufferSize = std::size_t{64} << 10;

}  // namespace

KOVAFileOutputStream::KOVAFileOutputStream(std::FILE* file) : _file(file) {
  if (file == nullptr) FailWith(KOVAResultCode::kInvalidArgument, EINVAL);
}

KOVAFileOutputStream::KOVAFileOutputStream(const char* path) { Open(path); }

KOVAFileOutputStream::KOVAFileOutputStream(const KOVAString& path) {
  KOVAStringOutputStream bytes;
  const KOVAResult converted = bytes.Write(path);
  if (converted.IsFailure()) {
    Fail(converted);
  } else if (std::strlen(bytes.GetBytes()) != bytes.GetByteCount()) {
    // A zero inside would silently name another file.
    FailWith(KOVAResultCode::kInvalidArgument, EINVAL);
  } else {
    Open(bytes.GetBytes());
  }
}

KOVAFileOutputStream::KOVAFileOutputStream(int descriptor) : _descriptor(descriptor) {
  if (descriptor < 0) FailWith(KOVAResultCode::kInvalidArgument, EBADF);
}

KOVAFileOutputStream::~KOVAFileOutputStream() {
  Close();
  delete[] _buffer;
}

void KOVAFileOutputStream::Open(const char* path) {
  if (path == nullptr) {
    FailWith(KOVAResultCode::kInvalidArgument, EINVAL);
    return;
  }
  int error = 0;
  _descriptor = kova::platform::openForWriting(path, error);
  _isOwned = _descriptor >= 0;
  if (!_isOwned) FailWith(KOVAResultCode::kFileOpenError, error);
}

KOVAResult KOVAFileOutputStream::WriteBytes(const char* bytes, std::size_t count) {
  if (_isClosed) return FailWith(KOVAResultCode::kFileSaveError, EBADF);
  if (_file != nullptr || !HasBuffer()) return Send(bytes, count);

  if (count > static_cast<std::size_t>(_buffer + kBufferSize - GetPut())) {
    const KOVAResult sent = SendBuffer();
    if (sent.IsFailure()) return sent;
    if (count >= kBufferSize) return Send(bytes, count);
  }
  std::memcpy(GetPut(), bytes, count);
  SetFill(GetPut() + count);
  const bool isUrgent = !_isOwned && std::memchr(bytes, '\n', count) != nullptr;
  return isUrgent ? SendBuffer() : KOVAResult(KOVAResultCode::kSuccess);
}

KOVAResult KOVAFileOutputStream::FlushBytes() {
  if (_file != nullptr) {
    return std::fflush(_file) == 0 ? KOVAResult(KOVAResultCode::kSuccess)
                                   : FailWith(KOVAResultCode::kFileSaveError, errno);
  }
  return SendBuffer();
}

KOVAResult KOVAFileOutputStream::Close() {
  if (_isClosed) return GetResult();
  Flush();
  _isClosed = true;
  SetPutArea(nullptr, nullptr);
  if (_isOwned) {
    const int error = kova::platform::closeDescriptor(_descriptor);
    if (error != 0) FailWith(KOVAResultCode::kFileSaveError, error);
  }
  _descriptor = -1;
  _file = nullptr;
  return GetResult();
}

const char* KOVAFileOutputStream::GetFailureReason() const { return _reason; }

bool KOVAFileOutputStream::HasBuffer() {
  if (_buffer == nullptr) {
    // Without memory for it every write goes to the system on its own.
    _buffer = new (std::nothrow) char[kBufferSize];
    if (_buffer != nullptr) SetFill(_buffer);
  }
  return _buffer != nullptr;
}

void KOVAFileOutputStream::SetFill(char* fill) {
  // Lines for a descriptor must not wait in a put area that nobody looks through.
  SetPutArea(fill, _isOwned ? _buffer + kBufferSize : fill);
}

KOVAResult KOVAFileOutputStream::Send(const char* bytes, std::size_t count) {
  if (_file != nullptr) {
    return std::fwrite(bytes, 1, count, _file) == count
               ? KOVAResult(KOVAResultCode::kSuccess)
               : FailWith(KOVAResultCode::kFileSaveError, errno);
  }
  const int error = kova::platform::writeAll(_descriptor, bytes, count);
  return error == 0 ? KOVAResult(KOVAResultCode::kSuccess)
                    : FailWith(KOVAResultCode::kFileSaveError, error);
}

KOVAResult KOVAFileOutputStream::SendBuffer() {
  if (_buffer == nullptr || GetPut() == _buffer) return KOVAResultCode::kSuccess;
  const std::size_t held = static_cast<std::size_t>(GetPut() - _buffer);
  SetFill(_buffer);
  return Send(_buffer, held);
}

KOVAResult KOVAFileOutputStream::FailWith(KOVAResult failure, int systemError) {
  if (GetResult().IsSuccess()) {
    kova::platform::describeError(systemError, _reason, sizeof _reason);
  }
  return Fail(failure);
}
