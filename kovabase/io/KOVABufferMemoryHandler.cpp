#include "kovabase/io/KOVABufferMemoryHandler.h"

#include <cstdio>
#include <limits>

using namespace KOVAResultCode;

namespace {

constexpr char kNoNext[] =
    "KOVABufferMemoryHandler::GetChar: Unable to get next info from buffer!!!";

}  // namespace

KOVABufferMemoryHandler::KOVABufferMemoryHandler(unsigned char* block, unsigned long bytes)
    : _block(block) {
  if (block == nullptr || bytes > std::numeric_limits<std::uint32_t>::max()) return;
  _size = static_cast<std::uint32_t>(bytes);
  _bufferSize = _size;
}

KOVABufferMemoryHandler::~KOVABufferMemoryHandler() = default;

KOVAResult KOVABufferMemoryHandler::AllocateBuffer() {
  if (_bufferSize == 0) {
    std::fputs("KOVABufferMemoryHandler::AllocateBuffer: Buffer size undefined!!!!", stdout);
    return kWindowSizeUndefined;
  }
  // The block itself is the window.
  _window = _block;
  return kSuccess;
}

KOVAResult KOVABufferMemoryHandler::FillBuffer() {
  if (_window == nullptr) return kNotInitialized;
  if (_windowStart >= static_cast<long>(_size)) {
    std::fputs("KOVABufferMemoryHandler::FillBuffer: Reached end of MemoryBuffer !!!!", stdout);
    return kWindowReadNothing;
  }
  _window = _block;
  _windowStart = 0;
  _windowEnd = static_cast<long>(_size);
  _bytesRead = _size;
  return kSuccess;
}

KOVAResult KOVABufferMemoryHandler::GetByte(long position, unsigned char& byte) {
  const KOVAResult result = MoveWindowTo(position, kNoNext);
  if (result.IsSuccess()) byte = _window[position - _windowStart];
  return result;
}

KOVAResult KOVABufferMemoryHandler::GetBytes(long offset, int count, unsigned char* destination) {
  return CopyBytes(offset, count, destination, kNoNext);
}

KOVAResult KOVABufferMemoryHandler::AdvancePointerPosition(long position) {
  if (_window == nullptr || position < 0 || position >= static_cast<long>(_size)) return kFailure;
  _windowStart = _windowEnd = position;
  return kSuccess;
}

bool KOVABufferMemoryHandler::IsBufferValid() const { return _window != nullptr; }
