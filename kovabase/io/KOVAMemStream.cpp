#include "kovabase/io/KOVAMemStream.h"

#include "kovabase/io/internal/GrowableBytes.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

KOVAMemStream::~KOVAMemStream() { std::free(_begin); }

const char* KOVAMemStream::GetName() { return "KOVAMemStream"; }

std::size_t KOVAMemStream::Read(void* bytes, std::size_t count) {
  const std::size_t copied = std::min(count, GetByteCount() - _position);
  if (bytes == nullptr || copied == 0) return 0;
  std::memcpy(bytes, _begin + _position, copied);
  _position += copied;
  return copied;
}

KOVAResult KOVAMemStream::SetPosition(std::size_t position) {
  if (position > GetByteCount()) return KOVAResultCode::kInvalidArgument;
  _position = position;
  return KOVAResultCode::kSuccess;
}

void KOVAMemStream::Clear() {
  if (_begin != nullptr) SetPutArea(_begin, _begin + _capacity);
  _position = 0;
}

KOVAResult KOVAMemStream::WriteBytes(const char* bytes, std::size_t count) {
  const std::size_t used = GetByteCount();
  kova::internal::appendBytes(_begin, used, _capacity, bytes, count);
  SetPutArea(_begin + used + count, _begin + _capacity);
  return KOVAResultCode::kSuccess;
}
