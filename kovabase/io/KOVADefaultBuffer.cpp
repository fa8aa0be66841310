#include "kovabase/io/KOVADefaultBuffer.h"

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/io/KOVABufferFileHandler.h"
#include "kovabase/io/KOVABufferMemoryHandler.h"

using namespace KOVAResultCode;

namespace {

constexpr int kOutputMode = 1;

KOVABufferFileHandler* makeFileHandler(const KOVAFileHandle& file, bool isOutput) {
  if (isOutput) return new KOVABufferOutputFileHandler(file);
  return new KOVABufferInputFileHandler(file);
}

}  // namespace

KOVADefaultBuffer::KOVADefaultBuffer(const KOVAFileHandle& file, int mode)
    : _handler(makeFileHandler(file, mode == kOutputMode)), _isOutput(mode == kOutputMode) {
  auto& handler = static_cast<KOVABufferFileHandler&>(*_handler.operator->());
  if (!handler.IsOpen()) {
    KOVAErrorEvent::Fire("could not open input file\n");
    return;
  }
  handler.DecideFileBufferSize();
  handler.AllocateBuffer();
}

KOVADefaultBuffer::KOVADefaultBuffer(unsigned char* block, unsigned long bytes)
    : _handler(new KOVABufferMemoryHandler(block, bytes)) {
  if (_handler->GetSize() == 0) {
    KOVAErrorEvent::Fire("Input Buffer is Invalid\n");
    return;
  }
  _handler->AllocateBuffer();
}

KOVADefaultBuffer::~KOVADefaultBuffer() = default;

KOVAResult KOVADefaultBuffer::SetOffset(long offset) {
  if (offset < 0 || offset > GetSize()) {
    KOVAErrorEvent::Fire("Offset Index beyond file length!!!");
    return kFailure;
  }
  ShowWindow(offset);
  return kSuccess;
}

long KOVADefaultBuffer::GetSize() const { return static_cast<long>(_handler->GetSize()); }

KOVAResult KOVADefaultBuffer::PeekBytes(long offset, int count, unsigned char* destination) {
  if (destination == nullptr || count < 0) return kFailure;
  if (offset < 0 || offset > GetSize() || count > GetSize() - offset) return kInvalidArgument;
  const long here = GetOffset();
  KOVAResult result;
  try {
    result = _handler->GetBytes(offset, count, destination);
  } catch (...) {
    ShowWindow(here);
    throw;
  }
  ShowWindow(here);
  return result;
}

bool KOVADefaultBuffer::IsPointerPositionValid(long position) const {
  return _handler->IsPointerPositionValid(position);
}

bool KOVADefaultBuffer::IsBufferValid() const { return _handler->IsBufferValid(); }

KOVAResult KOVADefaultBuffer::Flush() {
  if (!_isOutput) return kNotSupported;
  KOVABufferManager* const handler = _handler;
  return static_cast<KOVABufferOutputFileHandler*>(handler)->Flush();
}

KOVAResult KOVADefaultBuffer::WriteBytes(const void* bytes, int count) {
  if (!_isOutput) return kNotSupported;
  const long offset = GetOffset();
  KOVABufferManager* const handler = _handler;
  const KOVAResult result = static_cast<KOVABufferOutputFileHandler*>(handler)->PutBytes(
      offset, count, static_cast<const unsigned char*>(bytes));
  // What is being written is not offered for reading: the next read asks the handler.
  _cursor = _end = nullptr;
  _windowEnd = result.IsSuccess() ? offset + count : offset;
  return result;
}

bool KOVADefaultBuffer::Refill(KOVAResult& result) {
  result = kSuccess;
  if (_cursor != _end) return true;
  const long offset = GetOffset();
  if (offset >= GetSize() || !IsBufferValid()) return false;
  unsigned char byte;
  result = _handler->GetByte(offset, byte);
  ShowWindow(offset);
  return result.IsSuccess();
}

KOVAResult KOVADefaultBuffer::ReadAcross(void* destination, int count) {
  if (!IsBufferValid()) return kNotInitialized;
  if (destination == nullptr || count < 0) return kFailure;
  const long offset = GetOffset();
  KOVAResult result;
  try {
    result = _handler->GetBytes(offset, count, static_cast<unsigned char*>(destination));
  } catch (...) {
    ShowWindow(offset);
    throw;
  }
  ShowWindow(result.IsSuccess() ? offset + count : offset);
  return result;
}

KOVAResult KOVADefaultBuffer::FailAtEnd() {
  if (!IsBufferValid()) return kNotInitialized;
  unsigned char none;
  return _handler->GetByte(GetSize(), none);
}

void KOVADefaultBuffer::ShowWindow(long offset) {
  if (_handler->IsPointerPositionValid(offset)) {
    _windowEnd = _handler->GetWindowEnd();
    _cursor = _handler->GetWindow() + (offset - _handler->GetWindowStart());
    _end = _cursor + (_windowEnd - offset);
  } else {
    _cursor = _end = nullptr;
    _windowEnd = offset;
  }
}
