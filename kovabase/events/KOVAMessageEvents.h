#pragma once

#include "kovabase/events/KOVCEvent.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

#include <atomic>
#include <concepts>
#include <cstdarg>
#include <memory>

class KOVAError;
template <typename Event, std::atomic<int>& Depth>
class KOVAMessageChannel;

/// The events that report one text. All of them format alike: printf-style, in the process's
/// locale, cut at 1023 bytes; a null format is the empty text. A finished text is never used as a
/// format again. `Fire` builds the event on the stack and sends it to the process's bus.

/// Exactly a `bool`, so that a call with a number as first argument means the number.
class KOVAEventLabel {
 public:
  template <std::same_as<bool> Bool>
  constexpr KOVAEventLabel(Bool isShown) noexcept : _isShown(isShown) {}

  constexpr bool IsShown() const noexcept { return _isShown; }

 private:
  bool _isShown;
};

/// What the message events share: one text.
class KOVABASE_API KOVATextEvent : public KOVCEvent {
 public:
  /// Null when the formatted text is empty; valid as long as the event is.
  const char* GetMessage() const noexcept { return _message.Get(); }

 protected:
  KOVATextEvent(KOVAEventText name, KOVAEventLevel level, KOVAEventText message = {},
                bool isLabelShown = true) noexcept;
  KOVATextEvent(const KOVATextEvent& other);

  /// Formats and keeps the message; null when it is empty.
  /// @param limit  the most bytes to keep; negative counts as 0.
  void FormatMessage(const char* format, va_list arguments, int limit = 1023) KOVABASE_PRINTF(2, 0);

  /// Writes the label, the message and the end of the line.
  void WriteLine(KOVAOutputStream* stream, const char* label) const;

  bool IsLabelShown() const noexcept { return _isLabelShown; }

 private:
  // Here, where the base leaves room, instead of in the class that needs it.
  bool _isLabelShown;
  KOVAEventText _message;
};

/// A message for the user, level 50. Its description starts with "Message : " unless the label is
/// switched off.
class KOVABASE_API KOVAMessageEvent : public KOVATextEvent {
 public:
  explicit KOVAMessageEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  KOVAMessageEvent(const char* format, KOVAEventLabel label, ...) KOVABASE_PRINTF(2, 4);
  /// Takes the text as it stands, unformatted and of any length. The last parameter only selects
  /// this constructor.
  KOVAMessageEvent(const char* text, KOVAEventLabel label, KOVAEventLabel unformatted);
  KOVAMessageEvent(const KOVAMessageEvent& other);

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);
  static void Fire(const char* format, KOVAEventLabel label, ...) KOVABASE_PRINTF(1, 3);
  static void Fire(const char* text, KOVAEventLabel label, KOVAEventLabel unformatted);

  bool HasLabel() const noexcept { return IsLabelShown(); }

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVAMessageEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);

 private:
  template <typename Event, std::atomic<int>& Depth>
  friend class KOVAMessageChannel;
  friend class KOVAInfo;
  explicit KOVAMessageEvent(KOVAEventText message, bool isLabelShown = true) noexcept;
};

/// A warning, level 70.
class KOVABASE_API KOVAWarningEvent : public KOVATextEvent {
 public:
  explicit KOVAWarningEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  KOVAWarningEvent(const KOVAWarningEvent& other);

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);
  /// @param length  the most bytes of text to keep, in place of 1023; negative counts as 0.
  static void Fire(int length, const char* format, ...) KOVABASE_PRINTF(2, 3);

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVAWarningEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);
  KOVAWarningEvent(va_list arguments, const char* format, int length) KOVABASE_PRINTF(3, 0);

 private:
  template <typename Event, std::atomic<int>& Depth>
  friend class KOVAMessageChannel;
  explicit KOVAWarningEvent(KOVAEventText message) noexcept;
};

/// An error, level 80: a text or a `KOVAError`, whose description is then the event's.
class KOVABASE_API KOVAErrorEvent : public KOVATextEvent {
 public:
  explicit KOVAErrorEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  /// Keeps a copy of the error.
  explicit KOVAErrorEvent(const KOVAError& error);
  KOVAErrorEvent(const KOVAErrorEvent& other);
  ~KOVAErrorEvent() override;

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);
  static void Fire(const KOVAError& error);
  /// Records the place in the error, fires it and returns its result.
  /// @param file  the source file, null for none.
  static KOVAResult Fire(KOVAError& error, const char* file, int line);

  /// Null when the event was built from a text; the event's own otherwise.
  KOVAError* GetError() const noexcept { return _error.get(); }

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVAErrorEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);

 private:
  explicit KOVAErrorEvent(KOVAEventText message) noexcept;

  std::unique_ptr<KOVAError> _error;
};

/// Output for developers, level 10.
class KOVABASE_API KOVADebugEvent : public KOVATextEvent {
 public:
  explicit KOVADebugEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  KOVADebugEvent(const KOVADebugEvent& other);

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVADebugEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);
  explicit KOVADebugEvent(KOVAEventText message) noexcept;

 private:
  template <typename Event, std::atomic<int>& Depth>
  friend class KOVAMessageChannel;
};

/// Asks for a dump of internal state by its kind and index.
class KOVABASE_API KOVADebugDumpEvent : public KOVADebugEvent {
 public:
  /// The kinds that have no name here are the translators' own.
  enum dumpType : int { kRepLinkerMap = 256 };

  KOVADebugDumpEvent(dumpType type, int index);
  KOVADebugDumpEvent(const KOVADebugDumpEvent& other);

  static void Fire(dumpType type, int index);

  dumpType GetDumpType() const noexcept { return _type; }
  int GetIndex() const noexcept { return _index; }

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 private:
  dumpType _type;
  int _index;
};

/// Detailed progress, level 30.
class KOVABASE_API KOVAVerboseEvent : public KOVATextEvent {
 public:
  explicit KOVAVerboseEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  KOVAVerboseEvent(const KOVAVerboseEvent& other);

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVAVerboseEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);

 private:
  template <typename Event, std::atomic<int>& Depth>
  friend class KOVAMessageChannel;
  explicit KOVAVerboseEvent(KOVAEventText message) noexcept;
};

/// Output that tests look for, level 20.
class KOVABASE_API KOVATestEvent : public KOVATextEvent {
 public:
  explicit KOVATestEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  KOVATestEvent(const KOVATestEvent& other);

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVATestEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);

 private:
  template <typename Event, std::atomic<int>& Depth>
  friend class KOVAMessageChannel;
  explicit KOVATestEvent(KOVAEventText message) noexcept;
};

/// A broken assumption. Level 90, but 30 when built from an argument list, as the channel
/// `KOVAAssert` does; both are kept.
class KOVABASE_API KOVAAssertEvent : public KOVATextEvent {
 public:
  explicit KOVAAssertEvent(const char* format, ...) KOVABASE_PRINTF(2, 3);
  KOVAAssertEvent(const KOVAAssertEvent& other);

  static void Fire(const char* format, ...) KOVABASE_PRINTF(1, 2);

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 protected:
  KOVAAssertEvent(va_list arguments, const char* format) KOVABASE_PRINTF(3, 0);

 private:
  friend class KOVAAssert;
  explicit KOVAAssertEvent(KOVAEventText message) noexcept;
};
