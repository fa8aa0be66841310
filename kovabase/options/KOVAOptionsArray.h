#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/options/KOVAOptions.h"

/// Option sets side by side, for a translator that keeps one for each of its components.
using KOVAOptionsArray = KOVADynamicArray<KOVAOptions>;
