#include "kovabase/io/KOVAOutputStream.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/strings/KOVAString.h"

#include <memory>
#include <new>

KOVAOutputStream::~KOVAOutputStream() = default;

KOVAResult KOVAOutputStream::Write(const KOVAString& text) {
  char small[768];
  const int size = text.getConvertToUTF8Size();
  const std::size_t count = static_cast<std::size_t>(size) - 1;
  std::unique_ptr<char[]> large;
  char* bytes = small;
  if (count >= sizeof small) {
    large.reset(new (std::nothrow) char[count + 1]);
    if (large == nullptr) throw KOVAAllocException();
    bytes = large.get();
  }
  const KOVAResult converted = text.convertToUTF8(bytes, size);
  if (converted.IsFailure()) return Fail(converted);
  return Write(bytes, count);
}

KOVAResult KOVAOutputStream::WriteThrough(const void* bytes, std::size_t count) {
  if (_result.IsFailure() || count == 0) return _result;
  const KOVAResult result = WriteBytes(static_cast<const char*>(bytes), count);
  return result.IsFailure() ? Fail(result) : _result;
}

KOVAResult KOVAOutputStream::Flush() {
  if (_result.IsFailure()) return _result;
  const KOVAResult result = FlushBytes();
  return result.IsFailure() ? Fail(result) : _result;
}

KOVAResult KOVAOutputStream::FlushBytes() { return KOVAResultCode::kSuccess; }

const char* KOVAOutputStream::GetFailureReason() const {
  return _result.IsFailure() ? _result.GetMessage() : "";
}

KOVAResult KOVAOutputStream::Fail(KOVAResult failure) {
  if (_result.IsSuccess()) _result = failure;
  SetPutArea(nullptr, nullptr);
  return _result;
}
