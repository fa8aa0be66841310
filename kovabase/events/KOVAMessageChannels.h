#pragma once

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/foundation/KOVAExport.h"

#include <atomic>

/// The channels through which code reports text: each formats printf-style, in the process's
/// locale, and fires its own kind of event on the process's bus. A null format does nothing. Any
/// thread may use them; the indentation of a channel is shared by all threads.

/// How deep each channel is indented, in levels of three blanks. Below zero there are no blanks.
/// The reserved form of the names is kept.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern KOVABASE_API std::atomic<int> _KOVAInfoTab;
extern KOVABASE_API std::atomic<int> _KOVAWarningTab;
extern KOVABASE_API std::atomic<int> _KOVADebugTab;
extern KOVABASE_API std::atomic<int> _KOVAVerboseTab;
extern KOVABASE_API std::atomic<int> _KOVATestTab;
// NOLINTEND(bugprone-reserved-identifier)

/// What the channels have in common. Texts are cut at 1023 bytes, the indentation included.
template <typename Event, std::atomic<int>& Depth>
class KOVAMessageChannel {
 public:
  KOVAMessageChannel() = delete;

  /// Fires the indented text.
  static void Printf(const char* format, ...) KOVABASE_PRINTF(1, 2);
  /// Fires the text without indentation.
  static void NoTabPrintf(const char* format, ...) KOVABASE_PRINTF(1, 2);

  /// One level deeper, one level back.
  static void Tab() noexcept { Depth.fetch_add(1, std::memory_order_relaxed); }
  static void Untab() noexcept { Depth.fetch_sub(1, std::memory_order_relaxed); }
};

extern template class KOVABASE_API KOVAMessageChannel<KOVAMessageEvent, _KOVAInfoTab>;
extern template class KOVABASE_API KOVAMessageChannel<KOVAWarningEvent, _KOVAWarningTab>;
extern template class KOVABASE_API KOVAMessageChannel<KOVADebugEvent, _KOVADebugTab>;
extern template class KOVABASE_API KOVAMessageChannel<KOVAVerboseEvent, _KOVAVerboseTab>;
extern template class KOVABASE_API KOVAMessageChannel<KOVATestEvent, _KOVATestTab>;

/// Messages for the user.
class KOVABASE_API KOVAInfo : public KOVAMessageChannel<KOVAMessageEvent, _KOVAInfoTab> {
 public:
  /// Fires the indented text after a second pass, which turns each doubled percent sign of the
  /// finished text into one: a percent sign in the output takes four in the format. Kept. A
  /// message about the truncation comes before a text that was cut.
  static void Printf(const char* format, ...) KOVABASE_PRINTF(1, 2);
  /// Fires the indented text without the label "Message : ".
  static void PrintfAsItIs(const char* format, ...) KOVABASE_PRINTF(1, 2);
  /// Fires the text unformatted, unindented, of any length and without the label.
  static void PrintfRaw(const char* text);

  /// Prints row by row, each row as a message of its own; null prints nothing. The values lie row
  /// after row.
  static void Print3x3Matrix(const float* values);
  /// Three rows of four.
  static void Print3x4Matrix(const double* values);
  static void Print4x4Matrix(const float* values);
  /// @param coordinates  x, y, z of each point.
  static void PrintPointArray(const float* coordinates, int pointCount);
};

/// Warnings for the user.
class KOVABASE_API KOVAWarning : public KOVAMessageChannel<KOVAWarningEvent, _KOVAWarningTab> {};

/// Output for developers.
class KOVABASE_API KOVADebug : public KOVAMessageChannel<KOVADebugEvent, _KOVADebugTab> {
 public:
  /// @return a handle for one `StopTimer`, which frees it.
  static void* StartTimer();
  /// @return the milliseconds of wall clock time since the start; 0 for null.
  static float StopTimer(void* timer);
};

/// Detailed progress.
class KOVABASE_API KOVAVerbose : public KOVAMessageChannel<KOVAVerboseEvent, _KOVAVerboseTab> {};

/// Output that tests look for.
class KOVABASE_API KOVATest : public KOVAMessageChannel<KOVATestEvent, _KOVATestTab> {};

/// Broken assumptions. Never indented.
class KOVABASE_API KOVAAssert {
 public:
  KOVAAssert() = delete;

  /// Fires an assertion event of level 30, cut at 1023 bytes.
  static void Printf(const char* format, ...) KOVABASE_PRINTF(1, 2);
};
