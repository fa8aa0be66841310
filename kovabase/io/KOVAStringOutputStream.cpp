#include "kovabase/io/KOVAStringOutputStream.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/io/internal/GrowableBytes.h"
#include "kovabase/strings/KOVAString.h"

#include <climits>
#include <cstdlib>

KOVAStringOutputStream::~KOVAStringOutputStream() { std::free(_begin); }

KOVAString KOVAStringOutputStream::GetString(const char* codepage) const {
  if (GetByteCount() > INT_MAX) throw KOVAAllocException();
  return KOVAString::fromBytes(_begin, static_cast<int>(GetByteCount()), codepage);
}

const char* KOVAStringOutputStream::GetBytes() const {
  if (_begin == nullptr) return "";
  // The put area ends one byte early, so that there is always room.
  *GetPut() = 0;
  return _begin;
}

void KOVAStringOutputStream::Clear() {
  if (_begin != nullptr) SetPutArea(_begin, _begin + _capacity - 1);
}

KOVAResult KOVAStringOutputStream::WriteBytes(const char* bytes, std::size_t count) {
  const std::size_t used = GetByteCount();
  kova::internal::appendBytes(_begin, used, _capacity, bytes, count);
  if (used + count == _capacity) {
    kova::internal::appendBytes(_begin, used + count, _capacity, "", 1);
  }
  SetPutArea(_begin + used + count, _begin + _capacity - 1);
  return KOVAResultCode::kSuccess;
}
