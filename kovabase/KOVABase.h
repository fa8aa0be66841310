#pragma once

/// Everything public in one include, for hosts and examples. The library's own files include what
/// they use.

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/concurrency/KOVAReadersWritersLock.h"
#include "kovabase/containers/KOVAArrayHeader.h"
#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/containers/KOVAIsByteMovable.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/foundation/KOVAArchiveException.h"
#include "kovabase/foundation/KOVAAtomicCounter.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/foundation/KOVAResultCodes.h"
#include "kovabase/foundation/KOVAUnrecoverableError.h"
#include "kovabase/foundation/KOVAUseCounted.h"
#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/io/KOVAOutputStream.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/strings/Gk_Marker.h"
#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVALocalNumericLocaleOverride.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCodepageConverter.h"
