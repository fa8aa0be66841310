#include "kovabase/foundation/KOVAError.h"

#include "kovabase/io/KOVAStreamFormatter.h"

#include <new>

namespace {

// Storage of its own, so that nothing destroys the object at exit.
alignas(KOVAError) constinit unsigned char g_failError[sizeof(KOVAError)] = {};

}  // namespace

const KOVAError& KOVAError::FAIL_ERROR = *::new (static_cast<void*>(g_failError)) KOVAError();

KOVAError::~KOVAError() = default;

KOVAResult KOVAError::SetDescription(KOVAString& description) {
  _description = description;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVAError::GetDescription(KOVAString& description) const {
  description = _description;
  return KOVAResultCode::kSuccess;
}

void KOVAError::GetFormattedDescription(KOVAOutputStream* stream) const {
  KOVAStreamFormatter formatter(stream);
  if (_type == KOVAResultCode::kSuccess) return;
  if (_description.length() == 0) {
    formatter << "Error " << _type;
  } else {
    formatter << "Error Description : " << _description;
  }
  formatter << KOVAEndLine;
}

void KOVAError::SetSourceFileInfo(const char* file, int line) {
  _sourceFile = KOVAString(file);
  _sourceLine = line;
}
