#include "kovabase/strings/KOVAStringISO10646Reader.h"

#include "kovabase/strings/internal/StepEscapes.h"

using namespace kova::internal;

KOVAStringISO10646Reader::KOVAStringISO10646Reader(const char* escape) : _input(escape) {}

KOVAStringISO10646Reader::~KOVAStringISO10646Reader() = default;

KOVAResult KOVAStringISO10646Reader::GetResult(KOVAString& result) {
  if (_encoding == -1) {
    DetermineEncoding();
    const int count = GetNumberOfQuadruplets();
    _result.reserve(count);
    for (int i = 0; i < count; ++i) {
      char quadruplet[5];
      GetQuadrupletAt(i, quadruplet);
      _result.append(GetUChar(quadruplet));
    }
  }
  result = _result;
  return _encoding == 2 ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
}

void KOVAStringISO10646Reader::DetermineEncoding() noexcept {
  const int digits = _input.length() - 2 * kStepMarkerLength;
  const bool isQuadruplets = digits > 0 && digits % kStepQuadrupletLength == 0 &&
                             _input.startsWith("\\X2\\") && _input.endsWith("\\X0\\");
  _encoding = isQuadruplets ? 2 : 0;
}

int KOVAStringISO10646Reader::GetNumberOfQuadruplets() const noexcept {
  return _encoding == 2 ? (_input.length() - 2 * kStepMarkerLength) / kStepQuadrupletLength : 0;
}

void KOVAStringISO10646Reader::GetQuadrupletAt(int index, char (&quadruplet)[5]) const noexcept {
  const int first = kStepMarkerLength + index * kStepQuadrupletLength;
  for (int i = 0; i < kStepQuadrupletLength; ++i) quadruplet[i] = _input.charAt(first + i);
  quadruplet[kStepQuadrupletLength] = 0;
}

unsigned short KOVAStringISO10646Reader::GetUChar(const char* quadruplet) noexcept {
  return decodeStepQuadruplet(quadruplet);
}
