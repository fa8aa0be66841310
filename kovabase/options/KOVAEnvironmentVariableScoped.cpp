#include "kovabase/options/KOVAEnvironmentVariableScoped.h"

#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/options/internal/EnvironmentText.h"
#include "kovabase/platform/Environment.h"

#include <new>
#include <string>

namespace {

KOVAString widen(const std::string& bytes) {
  return KOVAString::fromBytes(bytes.data(), static_cast<int>(bytes.size()), "ISO-8859-1");
}

std::string narrow(const KOVAString& units) {
  std::string bytes;
  for (int i = 0; i < units.length(); ++i) bytes += static_cast<char>(units.charAt(i));
  return bytes;
}

}  // namespace

KOVAEnvironmentVariableScoped::KOVAEnvironmentVariableScoped(const KOVAString& name,
                                                             const KOVAString& value) try
    : _name(name) {
  std::string variable;
  std::string previous;
  if (kova::internal::toEnvironmentName(name, variable)) {
    _hadPreviousValue = kova::platform::readVariable(variable.c_str(), previous);
    _previousValue = widen(previous);
  }
  KOVAEnvironment::PutVariable(name, value);
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVAEnvironmentVariableScoped::~KOVAEnvironmentVariableScoped() {
  try {
    std::string variable;
    if (!kova::internal::toEnvironmentName(_name, variable)) return;
    if (_hadPreviousValue) {
      kova::platform::writeVariable(variable.c_str(), narrow(_previousValue).c_str());
    } else {
      kova::platform::removeVariable(variable.c_str());
    }
  } catch (...) {
    // Without memory the variable stays as it is; a destructor must not say so by throwing.
  }
}
