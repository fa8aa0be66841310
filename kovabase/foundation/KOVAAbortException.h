#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAUnrecoverableError.h"

/// The user has asked to stop.
class KOVABASE_API KOVAAbortException : public KOVAUnrecoverableError {};
