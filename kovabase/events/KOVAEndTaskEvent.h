#pragma once

#include "kovabase/events/KOVCTaskEvent.h"
#include "kovabase/foundation/KOVAResult.h"

class KOVAStreamFormatter;

/// The end of a task, with its result.
class KOVABASE_API KOVAEndTaskEvent : public KOVCTaskEvent {
 public:
  /// @param identifier  that of the task's start event.
  /// @param isQuiet  a quiet event writes no description.
  KOVAEndTaskEvent(KOVAResult result, const char* name, const char* identifier,
                   KOVAEventLevel level = KOVAEventLevels::kMessage, bool isQuiet = false);
  /// @param resultCode  a `KOVAResult` code; its low 32 bits are kept.
  KOVAEndTaskEvent(long resultCode, const char* name, const char* identifier,
                   KOVAEventLevel level = KOVAEventLevels::kMessage, bool isQuiet = false);
  KOVAEndTaskEvent(const KOVAEndTaskEvent& other);

  static void Fire(const KOVAResult& result, const char* name, const char* identifier,
                   KOVAEventLevel level = KOVAEventLevels::kMessage, bool isQuiet = false);

  KOVAResult getTaskResult() const noexcept { return _result; }
  void setTaskResult(const KOVAResult& result) noexcept { _result = result; }
  bool IsQuiet() const noexcept { return _isQuiet; }

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;
  KOVATaskEventKind GetKind() override;

 protected:
  /// Writes the name and the text of the result between two separators; nothing when quiet.
  void WriteResult(KOVAStreamFormatter& formatter) const;
  /// Writes 80 hyphens and the end of the line.
  static void WriteSeparator(KOVAStreamFormatter& formatter);

 private:
  KOVAResult _result;
  bool _isQuiet;
};
