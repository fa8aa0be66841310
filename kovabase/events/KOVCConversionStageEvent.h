#pragma once

#include "kovabase/events/KOVCEvent.h"

/// A stage that a conversion has reached, level 50. What the number, the fraction and the flag mean
/// is settled between the translator that fires the event and its listeners.
class KOVABASE_API KOVCConversionStageEvent : public KOVCEvent {
 public:
  /// @param stage  copied; null is the empty text.
  KOVCConversionStageEvent(const char* stage, int number, double fraction, bool flag);
  KOVCConversionStageEvent(const KOVCConversionStageEvent& other);

  /// Never null; valid as long as the event is.
  const char* GetStageName() const noexcept { return _stage.Get(); }
  int GetNumber() const noexcept { return _number; }
  double GetFraction() const noexcept { return _fraction; }
  bool GetFlag() const noexcept { return _flag; }

  KOVCEvent* Clone() const override;

 private:
  KOVAEventText _stage;
  int _number;
  double _fraction;
  bool _flag;
};
