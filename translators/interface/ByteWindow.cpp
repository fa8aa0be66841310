#include "translators/interface/ByteWindow.h"

#include <cstring>

namespace kova::translators {

ByteWindow::ByteWindow(Source& source, std::size_t capacity)
    : _source(source),
      _bytes(new char[capacity]),
      _capacity(capacity),
      _begin(_bytes.get()),
      _end(_begin) {}

bool ByteWindow::Refill(std::size_t count) {
  if (_isAtEnd || count > _capacity) return false;
  const std::size_t kept = size();
  std::memmove(_bytes.get(), _begin, kept);
  _begin = _bytes.get();
  _end = _begin + kept;
  while (size() < count) {
    const std::int64_t read = _source.Read(_bytes.get() + size(), _capacity - size());
    if (read <= 0) {
      _hasFailed = read < 0;
      _isAtEnd = true;
      return false;
    }
    _end += read;
  }
  return true;
}

}  // namespace kova::translators
