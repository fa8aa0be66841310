#include "kovabase/events/KOVAMessageChannels.h"

#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/internal/FormattedText.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>

using kova::internal::FormattedText;
using kova::internal::formatText;
using kova::internal::kMessageBytes;

constinit std::atomic<int> _KOVAInfoTab{0};
constinit std::atomic<int> _KOVAWarningTab{0};
constinit std::atomic<int> _KOVADebugTab{0};
constinit std::atomic<int> _KOVAVerboseTab{0};
constinit std::atomic<int> _KOVATestTab{0};

namespace {

constexpr int kBlanksPerLevel = 3;

// A text with its indentation, cut to a message.
class IndentedText {
 public:
  IndentedText(int depth, const char* format, va_list arguments) KOVABASE_PRINTF(3, 0) {
    constexpr int kDeepest = static_cast<int>(kMessageBytes) / kBlanksPerLevel;
    const auto blanks = static_cast<std::size_t>(std::clamp(depth, 0, kDeepest) * kBlanksPerLevel);
    std::memset(_buffer, ' ', blanks);
    const std::size_t needed =
        formatText(_buffer + blanks, kMessageBytes - blanks, format, arguments);
    _isCut = blanks + needed >= kMessageBytes;
    // Not what formatText says: %c may have written a zero in the middle.
    _length = blanks + std::strlen(_buffer + blanks);
  }

  // Turns each doubled percent sign into one.
  void undoublePercentSigns() {
    char* const first = static_cast<char*>(std::memchr(_buffer, '%', _length));
    if (first == nullptr) return;
    char* out = first;
    for (const char* in = first; *in != '\0'; ++in) {
      *out++ = *in;
      if (in[0] == '%' && in[1] == '%') ++in;
    }
    *out = '\0';
    _length = static_cast<std::size_t>(out - _buffer);
  }

  bool isCut() const { return _isCut; }
  KOVAEventText borrow() const {
    return _length != 0 ? KOVAEventText::Borrowed(_buffer, _length) : KOVAEventText();
  }

 private:
  char _buffer[kMessageBytes];
  std::size_t _length;
  bool _isCut;
};

using Clock = std::chrono::steady_clock;

}  // namespace

template <typename Event, std::atomic<int>& Depth>
void KOVAMessageChannel<Event, Depth>::Printf(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  const IndentedText text(Depth.load(std::memory_order_relaxed), format, arguments);
  va_end(arguments);
  Event event(text.borrow());
  KOVCEventBus::Fire(event);
}

template <typename Event, std::atomic<int>& Depth>
void KOVAMessageChannel<Event, Depth>::NoTabPrintf(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  const IndentedText text(0, format, arguments);
  va_end(arguments);
  Event event(text.borrow());
  KOVCEventBus::Fire(event);
}

template class KOVAMessageChannel<KOVAMessageEvent, _KOVAInfoTab>;
template class KOVAMessageChannel<KOVAWarningEvent, _KOVAWarningTab>;
template class KOVAMessageChannel<KOVADebugEvent, _KOVADebugTab>;
template class KOVAMessageChannel<KOVAVerboseEvent, _KOVAVerboseTab>;
template class KOVAMessageChannel<KOVATestEvent, _KOVATestTab>;

void KOVAInfo::Printf(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  IndentedText text(_KOVAInfoTab.load(std::memory_order_relaxed), format, arguments);
  va_end(arguments);
  if (text.isCut()) {
    KOVAMessageEvent::Fire("Warning: The following option has been truncated to 1023 characters!");
  }
  text.undoublePercentSigns();
  KOVAMessageEvent event(text.borrow());
  KOVCEventBus::Fire(event);
}

void KOVAInfo::PrintfAsItIs(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  const IndentedText text(_KOVAInfoTab.load(std::memory_order_relaxed), format, arguments);
  va_end(arguments);
  KOVAMessageEvent event(text.borrow(), false);
  KOVCEventBus::Fire(event);
}

void KOVAInfo::PrintfRaw(const char* text) {
  if (text != nullptr) KOVAMessageEvent::Fire(text, false, true);
}

void KOVAInfo::Print3x3Matrix(const float* values) {
  if (values == nullptr) return;
  for (const float* row = values; row != values + 9; row += 3) {
    Printf("[%05.3f, %05.3f, %05.3f]\n", static_cast<double>(row[0]), static_cast<double>(row[1]),
           static_cast<double>(row[2]));
  }
}

void KOVAInfo::Print3x4Matrix(const double* values) {
  if (values == nullptr) return;
  for (const double* row = values; row != values + 12; row += 4) {
    Printf("[%05.3f, %05.3f, %05.3f, %05.3f]\n", row[0], row[1], row[2], row[3]);
  }
}

void KOVAInfo::Print4x4Matrix(const float* values) {
  if (values == nullptr) return;
  for (const float* row = values; row != values + 16; row += 4) {
    Printf("[%6.3f, %6.3f, %6.3f, %6.3f]\n", static_cast<double>(row[0]),
           static_cast<double>(row[1]), static_cast<double>(row[2]), static_cast<double>(row[3]));
  }
}

void KOVAInfo::PrintPointArray(const float* coordinates, int pointCount) {
  if (coordinates == nullptr) return;
  for (int i = 0; i < pointCount; ++i) {
    const float* const point = coordinates + 3 * static_cast<std::ptrdiff_t>(i);
    Printf("{%6.3f, %6.3f, %6.3f}\n", static_cast<double>(point[0]), static_cast<double>(point[1]),
           static_cast<double>(point[2]));
  }
}

void* KOVADebug::StartTimer() { return new Clock::time_point(Clock::now()); }

float KOVADebug::StopTimer(void* timer) {
  if (timer == nullptr) return 0.0F;
  const auto now = Clock::now();
  const std::unique_ptr<Clock::time_point> start(static_cast<Clock::time_point*>(timer));
  return std::chrono::duration<float, std::milli>(now - *start).count();
}

void KOVAAssert::Printf(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  KOVAAssertEvent event(arguments, format);
  va_end(arguments);
  KOVCEventBus::Fire(event);
}
