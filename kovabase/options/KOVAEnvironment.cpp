#include "kovabase/options/KOVAEnvironment.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/options/internal/EnvironmentText.h"
#include "kovabase/platform/Environment.h"
#include "kovabase/strings/KOVAStringConversions.h"

#include <algorithm>
#include <new>
#include <string>

namespace {

constexpr int kImageSuffixUnits = 24;

}  // namespace

KOVAEnvironment::KOVAEnvironment() {
  for (const std::string& entry : kova::platform::environmentBlock()) AddEntry(entry.c_str());
}

KOVAEnvironment& KOVAEnvironment::GetEnv() try {
  static KOVAEnvironment* const environment = new KOVAEnvironment;
  return *environment;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVAResult KOVAEnvironment::GetVariable(const KOVAString& name, KOVAString& value) try {
  std::string variable;
  std::string text;
  if (!kova::internal::toEnvironmentName(name, variable) ||
      !kova::platform::readVariable(variable.c_str(), text)) {
    return KOVAResultCode::kFailure;
  }
  value = KOVAString(text.c_str());
  return KOVAResultCode::kSuccess;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVAResult KOVAEnvironment::GetVariable(const KOVAString& name, int& value) {
  KOVAString text;
  const KOVAResult result = GetVariable(name, text);
  return result.IsSuccess() ? KOVAStringToInteger(text, value) : result;
}

KOVAResult KOVAEnvironment::GetVariable(const KOVAString& name, double& value) {
  KOVAString text;
  const KOVAResult result = GetVariable(name, text);
  return result.IsSuccess() ? KOVAStringToDouble(text, value) : result;
}

KOVAResult KOVAEnvironment::GetVariable(const KOVAString& name, bool& value) {
  KOVAString text;
  const KOVAResult result = GetVariable(name, text);
  bool parsed = false;
  value = result.IsSuccess() && KOVAStringToBool(text, parsed).IsSuccess() && parsed;
  return result;
}

KOVAResult KOVAEnvironment::PutVariable(const KOVAString& name, const KOVAString& value) try {
  std::string variable;
  std::string text;
  if (!kova::internal::toEnvironmentName(name, variable) ||
      !kova::internal::toEnvironmentText(value, text)) {
    return KOVAResultCode::kFailure;
  }
  const bool isDone = text.empty() ? kova::platform::removeVariable(variable.c_str())
                                   : kova::platform::writeVariable(variable.c_str(), text.c_str());
  return isDone ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVAResult KOVAEnvironment::RemoveVariable(const KOVAString& name) {
  return PutVariable(name, KOVAString());
}

KOVAResult KOVAEnvironment::GetPathEnvName(KOVAString& name) {
  name = KOVAString("PATH");
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAEnvironment::GetWorkspaceDirectory(KOVAString& directory) {
  const KOVAResult result = GetVariable("ADL_IMAGE_DOS_DIR", directory);
  if (result.IsSuccess()) return result;

  KOVAString input;
  if (GetVariable("ADL_ODT_IN", input).IsFailure() || input.length() < kImageSuffixUnits) {
    return KOVAResultCode::kFailure;
  }
  const KOVAString kept = input.substring(0, input.length() - kImageSuffixUnits);
  const int separator = std::max(kept.lastIndexOf(static_cast<unsigned short>('\\')),
                                 kept.lastIndexOf(static_cast<unsigned short>('/')));
  if (separator < 0) return KOVAResultCode::kFailure;
  directory = kept.substring(0, separator);
  return KOVAResultCode::kSuccess;
}
