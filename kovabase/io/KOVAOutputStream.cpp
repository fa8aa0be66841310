#include "kovabase/io/KOVAOutputStream.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/internal/CodeUnits.h"

#include <algorithm>

KOVAOutputStream::~KOVAOutputStream() = default;

KOVAResult KOVAOutputStream::Write(const KOVAString& text) {
  constexpr std::size_t kMostUnits = 256;
  constexpr std::size_t kBytesOfUnit = 3;
  char bytes[kMostUnits * kBytesOfUnit];
  const unsigned short* units = text.getUnits();
  const unsigned short* const end = units + text.length();
  KOVAResult result = GetResult();
  while (units != end && result.IsSuccess()) {
    std::size_t count = std::min(kMostUnits, static_cast<std::size_t>(end - units));
    // A pair of surrogates is one character and stays together.
    if (count == kMostUnits && kova::internal::isLeadSurrogate(units[count - 1])) --count;
    const char* stop = kova::internal::encodeUTF8(units, count, bytes);
    result = Write(bytes, static_cast<std::size_t>(stop - bytes));
    units += count;
  }
  return result;
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
