#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAUnrecoverableError.h"

/// Memory cannot be had.
class KOVABASE_API KOVAAllocException : public KOVAUnrecoverableError {};
