#include "kovabase/io/KOVAOutputStream.h"

KOVAOutputStream::~KOVAOutputStream() = default;

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
