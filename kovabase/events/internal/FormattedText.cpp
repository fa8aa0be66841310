#include "kovabase/events/internal/FormattedText.h"

#include "kovabase/platform/DecimalPoint.h"

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace kova::internal {

namespace {

// Writes into a buffer as long as there is room for more than the terminator.
class PlainWriter {
 public:
  PlainWriter(char* buffer, std::size_t size)
      : _begin(buffer), _next(buffer), _end(buffer + size - 1) {}

  std::size_t getLength() const { return static_cast<std::size_t>(_next - _begin); }

  bool writeBytes(const char* bytes, std::size_t count) {
    if (static_cast<std::size_t>(_end - _next) < count) return false;
    std::memcpy(_next, bytes, count);
    _next += count;
    return true;
  }

  // An integer, or a double with its format and precision.
  template <typename... Values>
  bool writeNumber(Values... values) {
    const auto [stop, error] = std::to_chars(_next, _end, values...);
    if (error != std::errc()) return false;
    _next = stop;
    return true;
  }

  void terminate() { *_next = '\0'; }

 private:
  char* _begin;
  char* _next;
  char* _end;
};

// Formats what consists of plain conversions only. False, with the buffer in any state, for
// anything else and for what does not fit.
bool formatPlain(PlainWriter& writer, const char* format, va_list arguments) {
  for (;;) {
    const char* const percent = std::strchr(format, '%');
    if (percent == nullptr) return writer.writeBytes(format, std::strlen(format));
    if (!writer.writeBytes(format, static_cast<std::size_t>(percent - format))) return false;
    format = percent + 1;
    bool isWritten = false;
    switch (*format++) {
      case '%': isWritten = writer.writeBytes("%", 1); break;
      case 'd':
      case 'i': isWritten = writer.writeNumber(va_arg(arguments, int)); break;
      case 'u': isWritten = writer.writeNumber(va_arg(arguments, unsigned)); break;
      case 'c': {
        const char character = static_cast<char>(va_arg(arguments, int));
        isWritten = writer.writeBytes(&character, 1);
        break;
      }
      case 's': {
        const char* const text = va_arg(arguments, const char*);
        isWritten = text != nullptr && writer.writeBytes(text, std::strlen(text));
        break;
      }
      case '.': {
        // One digit of precision, round to nearest and a decimal point: all else is not plain.
        const int precision = *format++ - '0';
        if (precision < 0 || precision > 9 || *format++ != 'f') return false;
        const double value = va_arg(arguments, double);
        isWritten = std::isfinite(value) && std::fegetround() == FE_TONEAREST &&
                    platform::isDecimalPointPlain() &&
                    writer.writeNumber(value, std::chars_format::fixed, precision);
        break;
      }
      default: return false;
    }
    if (!isWritten) return false;
  }
}

// The bytes before the terminator; `size` - 1 when there is none.
std::size_t lengthWithin(const char* buffer, std::size_t size) {
  const void* const end = std::memchr(buffer, '\0', size);
  return end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - buffer)
                        : size - 1;
}

}  // namespace

std::size_t formatText(char* buffer, std::size_t size, const char* format, va_list arguments) {
  if (format == nullptr) {
    buffer[0] = '\0';
    return 0;
  }
  va_list copy;
  va_copy(copy, arguments);
  PlainWriter writer(buffer, size);
  const bool isPlain = formatPlain(writer, format, copy);
  va_end(copy);
  if (isPlain) {
    writer.terminate();
    return writer.getLength();
  }

  va_copy(copy, arguments);
  const int length = std::vsnprintf(buffer, size, format, copy);
  va_end(copy);
  if (length >= 0) return static_cast<std::size_t>(length);

  // An error: once more over zeros, so that what was written ends where it ends.
  std::memset(buffer, 0, size);
  va_copy(copy, arguments);
  std::vsnprintf(buffer, size, format, copy);
  va_end(copy);
  buffer[size - 1] = '\0';
  return lengthWithin(buffer, size);
}

FormattedText::FormattedText(const char* format, va_list arguments, std::size_t limit) {
  if (format == nullptr) format = "";
  const std::size_t formatLength = std::strlen(format);
  if (formatLength <= limit && std::strchr(format, '%') == nullptr) {
    _text = format;
    _length = formatLength;
    return;
  }
  const std::size_t size = std::min(limit + 1, kMessageBytes);
  const std::size_t needed = formatText(_buffer, size, format, arguments);
  if (needed >= size && limit >= kMessageBytes) {
    const std::size_t blockSize = std::min(needed, limit) + 1;
    _block = std::make_unique<char[]>(blockSize);
    formatText(_block.get(), blockSize, format, arguments);
    _text = _block.get();
  }
  // Not what formatText says: %c may have written a zero in the middle.
  _length = std::strlen(_text);
}

}  // namespace kova::internal
