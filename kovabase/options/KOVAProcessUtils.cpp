#include "kovabase/options/KOVAProcessUtils.h"

#include "kovabase/platform/Identity.h"
#include "kovabase/platform/Process.h"

int KOVAProcessUtils::GetProcessID() { return kova::platform::processId(); }

KOVAString KOVAProcessUtils::GetProgramDirectory() {
  return KOVAString(kova::platform::programFolder().c_str(), "UTF-8");
}

std::int64_t KOVAProcessUtils::GetPeakMemory() { return kova::platform::peakMemory(); }
