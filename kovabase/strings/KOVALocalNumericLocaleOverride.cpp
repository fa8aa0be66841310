#include "kovabase/strings/KOVALocalNumericLocaleOverride.h"

#include "kovabase/platform/Locale.h"

KOVALocalNumericLocaleOverride::KOVALocalNumericLocaleOverride() noexcept
    : _pushed(kova::platform::pushCNumericLocale()) {}

KOVALocalNumericLocaleOverride::~KOVALocalNumericLocaleOverride() {
  kova::platform::popNumericLocale(_pushed);
}
