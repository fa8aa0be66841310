#include "kovabase/events/KOVCConversionStageEvent.h"

KOVCConversionStageEvent::KOVCConversionStageEvent(const char* stage, int number, double fraction,
                                                   bool flag)
    : KOVCEvent(KOVAEventText::Static("KOVCConversionStageEvent"), KOVAEventLevels::kMessage),
      _stage(stage != nullptr ? stage : ""),
      _number(number),
      _fraction(fraction),
      _flag(flag) {}

KOVCConversionStageEvent::KOVCConversionStageEvent(const KOVCConversionStageEvent& other) = default;

KOVCEvent* KOVCConversionStageEvent::Clone() const { return new KOVCConversionStageEvent(*this); }
