#pragma once

/// How severe an event is; larger is more severe. Any number is a level: those with a meaning of
/// their own are in `KOVAEventLevels`.
typedef int KOVAEventLevel;

namespace KOVAEventLevels {

/// For developers, for tests that look for a text, and for progress in detail.
inline constexpr KOVAEventLevel kDebug = 10;
inline constexpr KOVAEventLevel kTest = 20;
inline constexpr KOVAEventLevel kVerbose = 30;
/// Also tasks, stages and progress.
inline constexpr KOVAEventLevel kMessage = 50;
inline constexpr KOVAEventLevel kWarning = 70;
inline constexpr KOVAEventLevel kError = 80;
inline constexpr KOVAEventLevel kAssert = 90;

}  // namespace KOVAEventLevels
