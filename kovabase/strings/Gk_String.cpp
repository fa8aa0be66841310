#include "kovabase/strings/Gk_String.h"

#include "kovabase/strings/KOVAString.h"

#include <cstdio>

Gk_String::Gk_String(const KOVAString& text) {
  const int size = text.getConvertToUTF8Size();
  reserveBytes(size);
  if (text.convertToUTF8(_text, size).IsSuccess()) _length = size - 1;
}

KOVAString Gk_String::toKOVAString() const {
  return KOVAString::fromBytes(getText(), length(), "UTF-8");
}

Gk_String Gk_String::format(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Gk_String result = formatList(format, arguments);
  va_end(arguments);
  return result;
}

Gk_String Gk_String::formatList(const char* format, va_list arguments) {
  Gk_String result;
  if (format == nullptr) return result;
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  if (length > 0) {
    result.reserveBytes(length);
    std::vsnprintf(result._text, static_cast<std::size_t>(length) + 1, format, again);
    result._length = length;
  }
  va_end(again);
  return result;
}

Gk_String operator+(const Gk_ROString& left, const Gk_ROString& right) {
  Gk_String result;
  result.reserve(left.length() + right.length());
  result.append(left).append(right);
  return result;
}
