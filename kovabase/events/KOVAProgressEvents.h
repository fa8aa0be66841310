#pragma once

#include "kovabase/events/KOVCConversionStageEvent.h"
#include "kovabase/events/KOVCEvent.h"
#include "kovabase/events/KOVCTaskEvent.h"

/// The events that tell how far a translation has come. Their thread index is the pool's id of the
/// thread that made them, 0 for the main thread.

/// The repair of an entity starts; task "Repair".
class KOVABASE_API KOVAStartTranslateRepairEvent : public KOVCStartTaskEvent {
 public:
  /// Copies the two texts, of which the second one is shown first. Null texts are kept as null.
  KOVAStartTranslateRepairEvent(const char* firstText, const char* secondText, int entityNumber,
                                KOVAEventLevel level);
  KOVAStartTranslateRepairEvent(const KOVAStartTranslateRepairEvent& other);

  /// Level 50.
  static void Fire(const char* firstText, const char* secondText, int entityNumber);

  const char* GetFirstText() const noexcept { return _firstText.Get(); }
  const char* GetSecondText() const noexcept { return _secondText.Get(); }
  int GetEntityNumber() const noexcept { return _entityNumber; }
  int GetThreadID() const noexcept { return _threadId; }

  /// Writes nothing unless both texts are set.
  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 private:
  KOVAEventText _firstText;
  KOVAEventText _secondText;
  int _entityNumber;
  int _threadId;
};

/// A stage of a conversion, with the thread that has reached it.
class KOVABASE_API KOVAConversionStageEvent : public KOVCConversionStageEvent {
 public:
  KOVAConversionStageEvent(const char* stage, int number, double fraction, bool flag);
  KOVAConversionStageEvent(const KOVAConversionStageEvent& other);

  static void Fire(const char* stage, int number, double fraction, bool flag);

  int GetThreadID() const noexcept { return _threadId; }

  KOVCEvent* Clone() const override;

 private:
  int _threadId;
};

/// The progress of a component of someone else's, level 50.
class KOVABASE_API KOVAThirdPartyProgressEvent : public KOVCEvent {
 public:
  /// @param progress  in the component's own scale.
  explicit KOVAThirdPartyProgressEvent(double progress);
  KOVAThirdPartyProgressEvent(const KOVAThirdPartyProgressEvent& other);

  static void Fire(double progress);

  /// In the component's own scale.
  void GetProgress(double& progress) const noexcept { progress = _progress; }

  KOVCEvent* Clone() const override;

 private:
  double _progress;
};
