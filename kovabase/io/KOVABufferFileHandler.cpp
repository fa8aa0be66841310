#include "kovabase/io/KOVABufferFileHandler.h"

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/strings/Gk_String.h"

#include <algorithm>
#include <cstring>
#include <limits>

using namespace KOVAResultCode;

namespace {

constexpr std::uint32_t kSmallestWindow = 2048;
constexpr std::uint32_t kLargestWindow = 0x400000;
// Reads and writes of so much go past the window.
constexpr int kDirectBytes = 0x10000;
// Positions are 32 bits wide.
constexpr std::uint64_t kSizeLimit = std::uint64_t{1} << 32;

constexpr char kNoNextInput[] =
    "KOVABufferInputFileHandler::GetChar: Unable to get next info from buffer!!!";
constexpr char kNoNextOutput[] =
    "KOVABufferOutputFileHandler::GetChar: Unable to get next info from buffer!!!";

// The window is the buffer: one in the stream would only be filled a second time.
std::FILE* openUnbuffered(const KOVAFileHandle& file, const char* mode) {
  std::FILE* const stream = file->OpenStream(mode);
  if (stream != nullptr) std::setvbuf(stream, nullptr, _IONBF, 0);
  return stream;
}

}  // namespace

KOVABufferFileHandler::KOVABufferFileHandler(const KOVAFileHandle& file) : _file(file) {}

KOVABufferFileHandler::~KOVABufferFileHandler() {
  if (_stream != nullptr) std::fclose(_stream);
}

KOVAResult KOVABufferFileHandler::DecideFileBufferSize() {
  std::uint64_t bytes = 0;
  if (_file.IsValid() && _file->GetSize(bytes).IsSuccess()) {
    _size = static_cast<std::uint32_t>(std::min(bytes, kSizeLimit - 1));
    _bufferSize = _size;
  }
  if (_bufferSize == 0) _bufferSize = kSmallestWindow;
  _bufferSize = std::min(_bufferSize, kLargestWindow);
  return kSuccess;
}

KOVAResult KOVABufferFileHandler::AllocateBuffer() {
  return AllocateWindow("KOVABufferFileHandler::AllocateBuffer: Buffer size undefined!!!!",
                        "KOVABufferFileHandler::AllocateBuffer: Buffer not allocated properly!!!!");
}

bool KOVABufferFileHandler::IsBufferValid() const {
  return _stream != nullptr && _window != nullptr;
}

// Reading

KOVABufferInputFileHandler::KOVABufferInputFileHandler(const KOVAFileHandle& file)
    : KOVABufferFileHandler(file) {
  if (!file.IsValid() || !file->IsRegular()) return;
  std::uint64_t bytes = 0;
  if (file->GetSize(bytes).IsSuccess() && bytes >= kSizeLimit) {
    KOVAErrorEvent::Fire("File '%s' has %llu bytes: files of 4 GiB and more cannot be read.\n",
                         Gk_String(file->GetPath().GetPath()).getText(),
                         static_cast<unsigned long long>(bytes));
    return;
  }
  _stream = openUnbuffered(file, "rb");
}

KOVABufferInputFileHandler::~KOVABufferInputFileHandler() = default;

KOVAResult KOVABufferInputFileHandler::FillBuffer() {
  if (_stream == nullptr) return kNotInitialized;
  if (_window == nullptr) return kWindowNotAllocated;
  _windowStart = _windowEnd;
  _bytesRead = 0;
  if (fseeko(_stream, _windowStart, SEEK_SET) != 0) return kWindowReadFailed;
  _bytesRead = static_cast<std::uint32_t>(std::fread(_window, 1, GetCapacity(), _stream));
  if (_bytesRead > 0) {
    // What the file has gained meanwhile is not read.
    _bytesRead = static_cast<std::uint32_t>(
        std::min<long>(_bytesRead, static_cast<long>(_size) - _windowStart));
    _windowEnd = _windowStart + static_cast<long>(_bytesRead);
  }
  if (_bytesRead > 0) return kSuccess;
  if (std::ferror(_stream) != 0) {
    std::fputs("KOVABufferInputFileHandler::FillBuffer: Error has occured !!!!", stdout);
    return kWindowReadFailed;
  }
  if (std::feof(_stream) != 0) return kWindowReadFailed;
  // The message about the end comes exactly when the end has not been reached; kept.
  std::fputs("KOVABufferInputFileHandler::FillBuffer: Reached end of file !!!!", stdout);
  return kWindowReadNothing;
}

KOVAResult KOVABufferInputFileHandler::GetByte(long position, unsigned char& byte) {
  const KOVAResult result = MoveWindowTo(position, kNoNextInput);
  if (result.IsSuccess()) byte = _window[position - _windowStart];
  return result;
}

KOVAResult KOVABufferInputFileHandler::GetBytes(long offset, int count,
                                                unsigned char* destination) {
  // A window in between would cost the processor's cache. The rest, and every failure, is for the
  // window.
  if (_stream != nullptr && destination != nullptr && count >= kDirectBytes && offset >= 0 &&
      offset < static_cast<long>(_size) && !IsPointerPositionValid(offset) &&
      fseeko(_stream, offset, SEEK_SET) == 0) {
    const long wanted = std::min<long>(count, static_cast<long>(_size) - offset);
    const std::size_t got = std::fread(destination, 1, static_cast<std::size_t>(wanted), _stream);
    destination += got;
    offset += static_cast<long>(got);
    count -= static_cast<int>(got);
  }
  return CopyBytes(offset, count, destination, kNoNextInput);
}

KOVAResult KOVABufferInputFileHandler::AdvancePointerPosition(long position) {
  if (_stream == nullptr || position < 0 || position >= static_cast<long>(_size)) return kFailure;
  if (fseeko(_stream, position, SEEK_SET) != 0) return kFailure;
  _windowStart = _windowEnd = position;
  return kSuccess;
}

// Writing

KOVABufferOutputFileHandler::KOVABufferOutputFileHandler(const KOVAFileHandle& file)
    : KOVABufferFileHandler(file) {
  if (file.IsValid()) _stream = openUnbuffered(file, "w+b");
}

KOVABufferOutputFileHandler::~KOVABufferOutputFileHandler() { Flush(); }

KOVAResult KOVABufferOutputFileHandler::AllocateBuffer() {
  if (_pending > 0) {
    const KOVAResult flushed = Flush();
    if (flushed.IsFailure()) return flushed;
  }
  return KOVABufferFileHandler::AllocateBuffer();
}

KOVAResult KOVABufferOutputFileHandler::FillBuffer() {
  if (_stream == nullptr) return kNotInitialized;
  if (_window == nullptr) return kWindowNotAllocated;
  const KOVAResult flushed = Flush();
  if (flushed.IsFailure()) return flushed;
  _windowStart = _windowEnd;
  _bytesRead = 0;
  if (fseeko(_stream, _windowStart, SEEK_SET) != 0) return kWindowReadFailed;
  _bytesRead = static_cast<std::uint32_t>(std::fread(_window, 1, GetCapacity(), _stream));
  if (_bytesRead > 0) {
    _windowEnd = _windowStart + static_cast<long>(_bytesRead);
    return kSuccess;
  }
  if (std::ferror(_stream) != 0) {
    std::fputs("KOVABufferOutputFileHandler::FillBuffer: Error has occured !!!!", stdout);
    return kWindowReadFailed;
  }
  if (std::feof(_stream) != 0) return kWindowReadFailed;
  std::fputs("KOVABufferOutputFileHandler::FillBuffer: Reached end of file !!!!", stdout);
  return kWindowReadNothing;
}

KOVAResult KOVABufferOutputFileHandler::GetByte(long position, unsigned char& byte) {
  const KOVAResult result = MoveWindowTo(position, kNoNextOutput);
  if (result.IsSuccess()) byte = _window[position - _windowStart];
  return result;
}

KOVAResult KOVABufferOutputFileHandler::GetBytes(long offset, int count,
                                                 unsigned char* destination) {
  return CopyBytes(offset, count, destination, kNoNextOutput);
}

KOVAResult KOVABufferOutputFileHandler::AdvancePointerPosition(long position) {
  if (_stream == nullptr || position < 0 || position >= static_cast<long>(_size)) return kFailure;
  const KOVAResult flushed = Flush();
  if (flushed.IsFailure()) return flushed;
  _windowStart = _windowEnd = position;
  return kSuccess;
}

KOVAResult KOVABufferOutputFileHandler::PutBytes(long position, int count,
                                                 const unsigned char* bytes) {
  if (_stream == nullptr) return kNotInitialized;
  if (_window == nullptr) return kWindowNotAllocated;
  if (bytes == nullptr || count < 0 || position < 0 || position > static_cast<long>(_size)) {
    return kInvalidArgument;
  }
  if (_result.IsFailure()) return _result;
  if (static_cast<std::uint64_t>(position) + static_cast<std::uint64_t>(count) >= kSizeLimit) {
    return kInvalidArgument;
  }
  // The window of a new file is small and would cut it into many pieces.
  if (count >= kDirectBytes) {
    const KOVAResult flushed = Flush();
    if (flushed.IsFailure()) return flushed;
    const std::size_t bytesToWrite = static_cast<std::size_t>(count);
    if (fseeko(_stream, position, SEEK_SET) != 0 ||
        std::fwrite(bytes, 1, bytesToWrite, _stream) != bytesToWrite) {
      return _result = kFileSaveError;
    }
    // What the window holds may be what has been written over.
    _windowStart = _windowEnd = position + count;
    _size = std::max(_size, static_cast<std::uint32_t>(_windowEnd));
    return kSuccess;
  }
  while (count > 0) {
    // The window goes on being filled where it ends; anywhere else a new one begins.
    if (_pending == 0 || position != _windowStart + static_cast<long>(_pending) ||
        _pending == GetCapacity()) {
      const KOVAResult flushed = Flush();
      if (flushed.IsFailure()) return flushed;
      _windowStart = position;
    }
    const std::uint32_t room =
        std::min(GetCapacity() - _pending, static_cast<std::uint32_t>(count));
    std::memcpy(_window + _pending, bytes, room);
    _pending += room;
    _windowEnd = _windowStart + static_cast<long>(_pending);
    bytes += room;
    position += static_cast<long>(room);
    count -= static_cast<int>(room);
    _size = std::max(_size, static_cast<std::uint32_t>(position));
  }
  return kSuccess;
}

KOVAResult KOVABufferOutputFileHandler::Flush() {
  if (_stream == nullptr) return kNotInitialized;
  if (_pending == 0 || _result.IsFailure()) return _result;
  const bool isWritten = fseeko(_stream, _windowStart, SEEK_SET) == 0 &&
                         std::fwrite(_window, 1, _pending, _stream) == _pending;
  _pending = 0;
  if (!isWritten) _result = kFileSaveError;
  return _result;
}
