#pragma once

#include "kovabase/events/KOVAEventLevel.h"
#include "kovabase/events/KOVAEventText.h"
#include "kovabase/foundation/KOVAExport.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

class KOVAOutputStream;

/// The base of everything that is reported: a task that starts or ends, a message, an error.
///
/// Events are built, sent and destroyed on one thread. The bus hands a listener either the sender's
/// own object or, after a parallel phase, a clone that belongs to the bus; a listener keeps neither
/// and clones what it needs later.
class KOVABASE_API KOVCEvent {
 public:
  /// @param name  copied; null is the empty text.
  KOVCEvent(const char* name, KOVAEventLevel level);
  KOVCEvent(const KOVCEvent& other) = default;
  KOVCEvent& operator=(const KOVCEvent&) = delete;

  /// Writes the text that a person reads, lines with their ends. The base writes nothing; a null
  /// stream is ignored.
  virtual void GetFormattedDescription(KOVAOutputStream* stream);
  virtual ~KOVCEvent() = default;
  /// Whether the bus stamps the event with clock and time when it queues it.
  virtual bool IsTimed();
  /// @return a copy of the same class on the heap, the caller's to `delete`, on any thread.
  virtual KOVCEvent* Clone() const;

  void SetEventName(const char* name);
  /// Never null; valid as long as the event is, or until it is renamed.
  const char* GetEventName() const noexcept { return _name.Get(); }

  KOVAEventLevel GetLevel() const noexcept { return _level; }

  /// Seconds since 1970-01-01 UTC; 0 when the event was not stamped.
  void SetTime(const std::int64_t& time) noexcept { _time = time; }
  void GetTime(std::int64_t& time) const noexcept { time = _time; }

  /// The processor time of the process in units of 1 / CLOCKS_PER_SEC seconds; 0 when the event was
  /// not stamped.
  void SetClock(const long& clock) noexcept { _clock = clock; }
  void GetClock(long& clock) const noexcept { clock = _clock; }

  /// Reads a level from the text of an option or environment value: a decimal number, or, in any
  /// case, debug, test, verbose, message, info, warning, error or assert.
  /// @return `defaultLevel` when the text is null or is neither.
  static KOVAEventLevel GetLevel(const char* text, KOVAEventLevel defaultLevel);

  /// Events are made on one thread and, once queued, freed on another: their memory comes from
  /// chunks of the making thread.
  static void* operator new(std::size_t bytes);
  static void* operator new(std::size_t bytes, std::align_val_t alignment);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* event, std::size_t bytes) noexcept;
  static void operator delete(void* event, std::size_t bytes, std::align_val_t alignment) noexcept;
  static void operator delete(void*, void*) noexcept {}

 protected:
  KOVCEvent(KOVAEventText name, KOVAEventLevel level) noexcept
      : _name(std::move(name)), _level(level) {}
  void SetEventName(KOVAEventText name) noexcept;

 private:
  // Ordered for size: a million events may be queued.
  KOVAEventText _name;
  std::int64_t _time = 0;
  long _clock = 0;
  KOVAEventLevel _level;
};
