#include "kovabase/strings/KOVAStringISO8859Reader.h"

#include "kovabase/strings/internal/StepEscapes.h"

using namespace kova::internal;

KOVAStringISO8859Reader::KOVAStringISO8859Reader(const char* escape) noexcept {
  if (escape == nullptr) return;
  for (int i = 0; i < kStepMarkerLength && escape[i] != 0; ++i) _input[i] = escape[i];
}

KOVAStringISO8859Reader::~KOVAStringISO8859Reader() = default;

KOVAResult KOVAStringISO8859Reader::GetResult(KOVAString& result) {
  if (_encoding == -1) {
    DetermineEncoding();
    if (_encoding == 1) _result.append(decodeStepShift(static_cast<unsigned char>(_input[3])));
  }
  result = _result;
  return _encoding == 1 ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

void KOVAStringISO8859Reader::DetermineEncoding() noexcept {
  _encoding = isStepShift(_input) && _input[3] != 0 ? 1 : 0;
}
