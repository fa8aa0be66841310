#include "kovabase/foundation/KOVACallbackShared.h"

#include "kovabase/foundation/Gk_ErrMgr.h"
#include "kovabase/foundation/KOVAAbortException.h"

constinit KOVACallbackShared::AbortCallback KOVACallbackShared::_abortCallback = nullptr;

bool KOVACallbackShared::IsAborted() {
  if (_abortCallback != nullptr && Gk_ErrMgr::shouldAbort()) {
    _abortCallback();
    throw KOVAAbortException();
  }
  return false;
}
