#pragma once

/// Everything public in one include, for hosts and examples. The library's own files include what
/// they use.

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/foundation/KOVAResultCodes.h"
#include "kovabase/io/KOVAFileOutputStream.h"
#include "kovabase/io/KOVAOutputStream.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/strings/Gk_Marker.h"
#include "kovabase/strings/KOVAFloatUtil.h"
#include "kovabase/strings/KOVALocalNumericLocaleOverride.h"
#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCodepageConverter.h"
