#pragma once

#include "kovabase/events/KOVCEvent.h"

/// Which end of a task an event reports.
enum KOVATaskEventKind : int { kKOVATaskStart, kKOVATaskEnd };

/// The base of the events that report the start and the end of a task. The identifier pairs the
/// two; the name is what is shown. Task events are timed.
class KOVABASE_API KOVCTaskEvent : public KOVCEvent {
 public:
  /// @param name  the event's name, and the task's as long as nothing else is set.
  KOVCTaskEvent(const char* name, const char* identifier, KOVAEventLevel level);

  bool IsTimed() override;

  /// Hands out the identifier, never null, valid as long as the event is and not to be written to.
  /// @return its length in bytes.
  virtual int GetTaskIdentifier(char*& identifier);
  virtual KOVATaskEventKind GetKind() = 0;

  /// Never null.
  const char* GetTaskName() const noexcept { return _taskName.Get(); }

 protected:
  KOVCTaskEvent(const KOVCTaskEvent& other);
  void SetTaskName(const char* name);
  void SetTaskIdentifier(const char* identifier);

 private:
  KOVAEventText _taskName;
  KOVAEventText _taskIdentifier;
};

/// The start of a task.
class KOVABASE_API KOVCStartTaskEvent : public KOVCTaskEvent {
 public:
  KOVCStartTaskEvent(const char* name, const char* identifier, KOVAEventLevel level);
  KOVCStartTaskEvent(const KOVCStartTaskEvent& other);

  KOVCEvent* Clone() const override;
  KOVATaskEventKind GetKind() override;
};
