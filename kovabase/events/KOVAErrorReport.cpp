#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/internal/FormattedText.h"
#include "kovabase/foundation/KOVAError.h"

#include <cstdarg>

void KOVAError::Printf(const char* format, ...) {
  if (format == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  const kova::internal::FormattedText text(format, arguments);
  va_end(arguments);
  KOVAErrorEvent::Fire("%s", text.GetText());
}
