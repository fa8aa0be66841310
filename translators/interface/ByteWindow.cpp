#include "translators/interface/ByteWindow.h"

#include <algorithm>
#include <cstring>

namespace kova::translators {

ByteWindow::ByteWindow(const KOVABufferHandle& buffer, std::size_t capacity)
    : _buffer(buffer),
      _bytes(new char[capacity]),
      _capacity(capacity),
      _begin(_bytes.get()),
      _end(_begin),
      _byteCount(static_cast<std::uint64_t>(std::max(_buffer->GetSize(), 0L))) {}

bool ByteWindow::Refill(std::size_t count) {
  if (_hasFailed || count > _capacity) return false;
  const std::size_t kept = size();
  std::memmove(_bytes.get(), _begin, kept);
  _begin = _bytes.get();
  _end = _begin + kept;
  const std::uint64_t next = _offset + kept;
  const std::size_t added =
      static_cast<std::size_t>(std::min<std::uint64_t>(_capacity - kept, _byteCount - next));
  if (added != 0) {
    unsigned char* const to = reinterpret_cast<unsigned char*>(_bytes.get()) + kept;
    const KOVAResult result =
        _buffer->PeekBytes(static_cast<long>(next), static_cast<int>(added), to);
    _hasFailed = result.IsFailure();
    if (!_hasFailed) _end += added;
  }
  return size() >= count;
}

}  // namespace kova::translators
