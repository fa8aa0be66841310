#include "kovabase/foundation/KOVAError.h"

#include <cstdarg>
#include <cstdio>

void KOVAError::Printf(const char* format, ...) {
  if (format == nullptr) return;
  char text[1024];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (length >= 0) std::fprintf(stderr, "Error : %s\n", text);
}
