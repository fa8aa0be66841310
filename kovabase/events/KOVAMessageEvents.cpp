#include "kovabase/events/KOVAMessageEvents.h"

#include "kovabase/events/KOVCEventBus.h"
#include "kovabase/events/internal/FormattedText.h"
#include "kovabase/foundation/KOVAError.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/strings/KOVAString.h"

#include <algorithm>
#include <utility>

using kova::internal::FormattedText;

namespace {

std::size_t limitFromLength(int length) { return static_cast<std::size_t>(std::max(length, 0)); }

// The text for an event that does not outlive it.
KOVAEventText borrow(const FormattedText& text) {
  if (text.GetLength() == 0) return {};
  return KOVAEventText::Borrowed(text.GetText(), text.GetLength());
}

KOVAEventText borrow(const char* text) {
  if (text == nullptr || *text == '\0') return {};
  return KOVAEventText::Borrowed(text, std::strlen(text));
}

}  // namespace

// KOVATextEvent

KOVATextEvent::KOVATextEvent(KOVAEventText name, KOVAEventLevel level, KOVAEventText message,
                             bool isLabelShown) noexcept
    : KOVCEvent(std::move(name), level),
      _isLabelShown(isLabelShown),
      _message(std::move(message)) {}

KOVATextEvent::KOVATextEvent(const KOVATextEvent& other) = default;

void KOVATextEvent::FormatMessage(const char* format, va_list arguments, int limit) {
  const FormattedText text(format, arguments, limitFromLength(limit));
  _message =
      text.GetLength() != 0 ? KOVAEventText(text.GetText(), text.GetLength()) : KOVAEventText();
}

void KOVATextEvent::WriteLine(KOVAOutputStream* stream, const char* label) const {
  KOVAStreamFormatter formatter(stream);
  formatter << label << GetMessage() << KOVAEndLine;
}

// KOVAMessageEvent

KOVAMessageEvent::KOVAMessageEvent(KOVAEventText message, bool isLabelShown) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVAMessageEvent"), KOVAEventLevels::kMessage,
                    std::move(message), isLabelShown) {}

KOVAMessageEvent::KOVAMessageEvent(const char* format, ...)
    : KOVAMessageEvent(KOVAEventText(), true) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVAMessageEvent::KOVAMessageEvent(const char* format, KOVAEventLabel label, ...)
    : KOVAMessageEvent(KOVAEventText(), label.IsShown()) {
  va_list arguments;
  va_start(arguments, label);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVAMessageEvent::KOVAMessageEvent(const char* text, KOVAEventLabel label,
                                   KOVAEventLabel /*unformatted*/)
    : KOVAMessageEvent(text != nullptr && *text != '\0' ? KOVAEventText(text) : KOVAEventText(),
                       label.IsShown()) {}

KOVAMessageEvent::KOVAMessageEvent(va_list arguments, const char* format)
    : KOVAMessageEvent(KOVAEventText(), true) {
  FormatMessage(format, arguments);
}

KOVAMessageEvent::KOVAMessageEvent(const KOVAMessageEvent& other) = default;

void KOVAMessageEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVAMessageEvent event(borrow(text), true);
  KOVCEventBus::Fire(event);
}

void KOVAMessageEvent::Fire(const char* format, KOVAEventLabel label, ...) {
  va_list arguments;
  va_start(arguments, label);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVAMessageEvent event(borrow(text), label.IsShown());
  KOVCEventBus::Fire(event);
}

void KOVAMessageEvent::Fire(const char* text, KOVAEventLabel label,
                            KOVAEventLabel /*unformatted*/) {
  KOVAMessageEvent event(borrow(text), label.IsShown());
  KOVCEventBus::Fire(event);
}

void KOVAMessageEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  WriteLine(stream, IsLabelShown() ? "Message : " : nullptr);
}

KOVCEvent* KOVAMessageEvent::Clone() const { return new KOVAMessageEvent(*this); }

// KOVAWarningEvent

KOVAWarningEvent::KOVAWarningEvent(KOVAEventText message) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVAWarningEvent"), KOVAEventLevels::kWarning,
                    std::move(message)) {}

KOVAWarningEvent::KOVAWarningEvent(const char* format, ...) : KOVAWarningEvent(KOVAEventText()) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVAWarningEvent::KOVAWarningEvent(va_list arguments, const char* format)
    : KOVAWarningEvent(KOVAEventText()) {
  FormatMessage(format, arguments);
}

KOVAWarningEvent::KOVAWarningEvent(va_list arguments, const char* format, int length)
    : KOVAWarningEvent(KOVAEventText()) {
  FormatMessage(format, arguments, length);
}

KOVAWarningEvent::KOVAWarningEvent(const KOVAWarningEvent& other) = default;

void KOVAWarningEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVAWarningEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVAWarningEvent::Fire(int length, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments, limitFromLength(length));
  va_end(arguments);
  KOVAWarningEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVAWarningEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  WriteLine(stream, "Warning : ");
}

KOVCEvent* KOVAWarningEvent::Clone() const { return new KOVAWarningEvent(*this); }

// KOVAErrorEvent

KOVAErrorEvent::KOVAErrorEvent(KOVAEventText message) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVAErrorEvent"), KOVAEventLevels::kError,
                    std::move(message)) {}

KOVAErrorEvent::KOVAErrorEvent(const char* format, ...) : KOVAErrorEvent(KOVAEventText()) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVAErrorEvent::KOVAErrorEvent(va_list arguments, const char* format)
    : KOVAErrorEvent(KOVAEventText()) {
  FormatMessage(format, arguments);
}

KOVAErrorEvent::KOVAErrorEvent(const KOVAError& error) : KOVAErrorEvent(KOVAEventText()) {
  _error = std::make_unique<KOVAError>(error);
  // A class derived from the error may make its description up when it is asked.
  KOVAString description;
  if (error.GetDescription(description).IsSuccess()) _error->SetDescription(description);
}

KOVAErrorEvent::KOVAErrorEvent(const KOVAErrorEvent& other)
    : KOVATextEvent(other),
      _error(other._error != nullptr ? std::make_unique<KOVAError>(*other._error) : nullptr) {}

KOVAErrorEvent::~KOVAErrorEvent() = default;

void KOVAErrorEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVAErrorEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVAErrorEvent::Fire(const KOVAError& error) {
  KOVAErrorEvent event(error);
  KOVCEventBus::Fire(event);
}

KOVAResult KOVAErrorEvent::Fire(KOVAError& error, const char* file, int line) {
  error.SetSourceFileInfo(file, line);
  Fire(error);
  return error.GetErrorType();
}

void KOVAErrorEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  if (GetMessage() != nullptr) {
    WriteLine(stream, "Error : ");
  } else if (_error != nullptr) {
    _error->GetFormattedDescription(stream);
  }
}

KOVCEvent* KOVAErrorEvent::Clone() const { return new KOVAErrorEvent(*this); }

// KOVADebugEvent

KOVADebugEvent::KOVADebugEvent(KOVAEventText message) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVADebugEvent"), KOVAEventLevels::kDebug,
                    std::move(message)) {}

KOVADebugEvent::KOVADebugEvent(const char* format, ...) : KOVADebugEvent(KOVAEventText()) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVADebugEvent::KOVADebugEvent(va_list arguments, const char* format)
    : KOVADebugEvent(KOVAEventText()) {
  FormatMessage(format, arguments);
}

KOVADebugEvent::KOVADebugEvent(const KOVADebugEvent& other) = default;

void KOVADebugEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVADebugEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVADebugEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  WriteLine(stream, nullptr);
}

KOVCEvent* KOVADebugEvent::Clone() const { return new KOVADebugEvent(*this); }

// KOVADebugDumpEvent

KOVADebugDumpEvent::KOVADebugDumpEvent(dumpType type, int index)
    : KOVADebugEvent(KOVAEventText()), _type(type), _index(index) {
  SetEventName(KOVAEventText::Static("Debug Dump"));
}

KOVADebugDumpEvent::KOVADebugDumpEvent(const KOVADebugDumpEvent& other) = default;

void KOVADebugDumpEvent::Fire(dumpType type, int index) {
  KOVADebugDumpEvent event(type, index);
  KOVCEventBus::Fire(event);
}

void KOVADebugDumpEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  KOVAStreamFormatter formatter(stream);
  formatter << GetEventName() << (_type == kRepLinkerMap ? " RepLinkerMap " : " unknown ") << _index
            << KOVAEndLine;
}

KOVCEvent* KOVADebugDumpEvent::Clone() const { return new KOVADebugDumpEvent(*this); }

// KOVAVerboseEvent

KOVAVerboseEvent::KOVAVerboseEvent(KOVAEventText message) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVAVerboseEvent"), KOVAEventLevels::kVerbose,
                    std::move(message)) {}

KOVAVerboseEvent::KOVAVerboseEvent(const char* format, ...) : KOVAVerboseEvent(KOVAEventText()) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVAVerboseEvent::KOVAVerboseEvent(va_list arguments, const char* format)
    : KOVAVerboseEvent(KOVAEventText()) {
  FormatMessage(format, arguments);
}

KOVAVerboseEvent::KOVAVerboseEvent(const KOVAVerboseEvent& other) = default;

void KOVAVerboseEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVAVerboseEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVAVerboseEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  WriteLine(stream, nullptr);
}

KOVCEvent* KOVAVerboseEvent::Clone() const { return new KOVAVerboseEvent(*this); }

// KOVATestEvent

KOVATestEvent::KOVATestEvent(KOVAEventText message) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVATestEvent"), KOVAEventLevels::kTest,
                    std::move(message)) {}

KOVATestEvent::KOVATestEvent(const char* format, ...) : KOVATestEvent(KOVAEventText()) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVATestEvent::KOVATestEvent(va_list arguments, const char* format)
    : KOVATestEvent(KOVAEventText()) {
  FormatMessage(format, arguments);
}

KOVATestEvent::KOVATestEvent(const KOVATestEvent& other) = default;

void KOVATestEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVATestEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVATestEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  WriteLine(stream, nullptr);
}

KOVCEvent* KOVATestEvent::Clone() const { return new KOVATestEvent(*this); }

// KOVAAssertEvent

KOVAAssertEvent::KOVAAssertEvent(KOVAEventText message) noexcept
    : KOVATextEvent(KOVAEventText::Static("KOVAAssertEvent"), KOVAEventLevels::kAssert,
                    std::move(message)) {}

KOVAAssertEvent::KOVAAssertEvent(const char* format, ...) : KOVAAssertEvent(KOVAEventText()) {
  va_list arguments;
  va_start(arguments, format);
  FormatMessage(format, arguments);
  va_end(arguments);
}

KOVAAssertEvent::KOVAAssertEvent(va_list arguments, const char* format)
    : KOVATextEvent(KOVAEventText::Static("KOVAAssertEvent"), KOVAEventLevels::kVerbose) {
  FormatMessage(format, arguments);
}

KOVAAssertEvent::KOVAAssertEvent(const KOVAAssertEvent& other) = default;

void KOVAAssertEvent::Fire(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const FormattedText text(format, arguments);
  va_end(arguments);
  KOVAAssertEvent event(borrow(text));
  KOVCEventBus::Fire(event);
}

void KOVAAssertEvent::GetFormattedDescription(KOVAOutputStream* stream) {
  WriteLine(stream, "Assert : ");
}

KOVCEvent* KOVAAssertEvent::Clone() const { return new KOVAAssertEvent(*this); }
