#pragma once

#include "kovabase/foundation/KOVAExport.h"

#include <cstdarg>
#include <cstddef>
#include <memory>

namespace kova::internal {

/// Bytes of the buffers that messages are formatted into, terminator included.
inline constexpr std::size_t kMessageBytes = 1024;

/// Formats like `vsnprintf`, with the same result to the byte in the calling thread's locale; plain
/// %d, %i, %u, %s, %c and %.Nf are written directly.
/// @param buffer  `size` > 0 bytes, always zero-terminated afterwards.
/// @param format  null is the empty text.
/// @return the bytes that the whole text has, which is `size` or more when it was cut; when the
///   format or an argument is invalid, the bytes that were written until then.
std::size_t formatText(char* buffer, std::size_t size, const char* format, va_list arguments)
    KOVABASE_PRINTF(3, 0);

/// A message formatted on the stack, or on the heap when it is long and may be. A format without a
/// percent sign is the message itself: then nothing is copied, and the format must outlive this
/// object.
class FormattedText {
 public:
  /// @param limit  the most bytes to keep, terminator excluded.
  FormattedText(const char* format, va_list arguments, std::size_t limit = kMessageBytes - 1)
      KOVABASE_PRINTF(2, 0);
  FormattedText(const FormattedText&) = delete;
  FormattedText& operator=(const FormattedText&) = delete;

  const char* GetText() const noexcept { return _text; }
  std::size_t GetLength() const noexcept { return _length; }

 private:
  const char* _text = _buffer;
  std::size_t _length = 0;
  std::unique_ptr<char[]> _block;
  char _buffer[kMessageBytes];
};

}  // namespace kova::internal
