#include "kovabase/events/KOVATrace.h"

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/strings/Gk_String.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

constinit std::atomic<int> _KOVATraceTab{0};

namespace {

constexpr std::size_t kTextBytes = 1024;
constexpr std::size_t kBlanksPerLevel = 3;

std::size_t indentation() {
  const int depth = std::max(_KOVATraceTab.load(std::memory_order_relaxed), 0);
  return std::min(static_cast<std::size_t>(depth) * kBlanksPerLevel, kTextBytes - 1);
}

}  // namespace

KOVATrace::KOVATrace(const char* name) {
  KOVAString enabled;
  _isEnabled = name != nullptr &&
               KOVAEnvironment::GetVariable("KOVALoggers", enabled).IsSuccess() &&
               std::strstr(Gk_String(enabled).getText(), name) != nullptr;
}

void KOVATrace::Printf(KOVATraceLevel level, const char* format, ...) const {
  if (!_isEnabled || format == nullptr) return;
  char text[kTextBytes] = {};
  const std::size_t blanks = indentation();
  std::memset(text, ' ', blanks);
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text + blanks, sizeof text - blanks, format, arguments);
  va_end(arguments);
  switch (level) {
    case kKOVATraceDebug: KOVADebugEvent::Fire("%s", text); break;
    case kKOVATraceMessage: KOVAMessageEvent::Fire("%s", text); break;
    case kKOVATraceError: KOVAErrorEvent::Fire("%s", text); break;
  }
}
