#include "kovabase/foundation/KOVAResult.h"

namespace {

using namespace KOVAResultCode;

bool isFailureCode(int code) { return KOVAResult(code).IsFailure(); }

}  // namespace

const char* KOVAResult::GetMessage() const noexcept {
  switch (_code) {
    case kSuccess: return "Success";
    case kPartialSuccess: return "Partial Success";
    case kNoEntityToTranslate: return "No Entity to Translate";
    case kNoTranslatableGeometry: return "No translatable geometry";
    case kFailure: return "Failure";
    case kErrorEncountered: return "Error Encountered";
    case kNotSupported: return "Not supported";
    case kNotImplemented: return "Method is not implemented";
    case kUnexpectedError: return "Unexpected Error";
    case kInvalidComponent: return "Invalid Component";
    case kInvalidObject: return "Invalid Object";
    case kInvalidArgument: return "Invalid Argument";
    case kFileNotFound: return "File Not Found";
    case kFileOpenError: return "File Open Error";
    case kFileSaveError: return "File Save Error";
    case kFileEncrypted: return "File is encrypted";
    case kModelExceedsValidBox: return "Model size exceeds valid box";
    case kModelBelowValidBox: return "Model size is smaller than the valid box";
    case kInvalidWriteUnit: return "File write unit is invalid";
    case kFileVersionNotSupported: return "File version is not supported";
    case kInvalidFile: return "Invalid file";
    case kFileFormatNotSupported: return "File format not supported";
    case kAborted: return "Aborted";
    case kUndetermined: return "Undetermined";
    default: return "Unknown Result";
  }
}

long KOVAResult::GetReturnCode() const noexcept {
  if (IsSuccess()) return 0;
  return GetDomain() != 0 ? 1 : static_cast<long>(GetNumber());
}

long KOVAResult::GetReturnCode(bool ok) noexcept { return ok ? 1 : 0; }

const char* KOVAResult::GetOKKOString(bool ok) noexcept { return ok ? "OK" : "KO"; }

KOVAResult& KOVAResult::operator&=(KOVAResult other) noexcept {
  const int next = other._code;
  if (IsCompleteSuccess()) {
    const bool isWorse = next == kPartialSuccess || next == kNoTranslatableGeometry ||
                         (next == kNoEntityToTranslate && _code != kNoTranslatableGeometry);
    if (isWorse || isFailureCode(next)) _code = next;
  } else if (_code == kPartialSuccess) {
    if (isFailureCode(next)) _code = next;
  } else if (_code == kUndetermined) {
    if (other.IsDeterminedFailure()) _code = next;
  } else if (_code == kNotImplemented) {
    // A step that is not supplied must not mask the outcome of the next one.
    _code = next;
  }
  return *this;
}

KOVAResult KOVAResult::operator|=(KOVAResult other) noexcept {
  const int next = other._code;
  if (IsCompleteSuccess()) {
    if (isFailureCode(next) || next == kPartialSuccess) _code = kPartialSuccess;
  } else if (_code == kUndetermined) {
    if (other.IsCompleteSuccess()) {
      _code = kPartialSuccess;
    } else if (other.IsDeterminedFailure()) {
      _code = next;
    }
    // Partial Success leaves Undetermined as it is; kept.
  } else if (_code != kPartialSuccess && !isFailureCode(next)) {
    _code = kPartialSuccess;
  }
  return *this;
}
