#pragma once

#include "kovabase/io/KOVABuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace kova::translators {

/// A sliding piece of a buffer in one stretch of memory: what parsers look at. It refills itself
/// when more bytes are required than it holds, and never needs more memory than its capacity. The
/// position of the buffer stays where it is.
class ByteWindow {
 public:
  /// The window begins at the start of the data.
  /// @param capacity  the most bytes that can be looked at in one piece, at most 2^30.
  ByteWindow(const KOVABufferHandle& buffer, std::size_t capacity);

  /// The bytes at hand; good until the next call of `Require`.
  const char* begin() const { return _begin; }
  const char* end() const { return _end; }
  std::size_t size() const { return static_cast<std::size_t>(_end - _begin); }

  /// The position of `begin` in the data.
  std::uint64_t GetOffset() const { return _offset; }
  /// All bytes of the data.
  std::uint64_t GetByteCount() const { return _byteCount; }

  /// Tries to have `count` bytes at hand, at most the capacity.
  /// @return false when fewer are left; those are at hand.
  bool Require(std::size_t count) { return size() >= count || Refill(count); }

  /// Steps over `count` of the bytes at hand.
  void Skip(std::size_t count) {
    _begin += count;
    _offset += count;
  }

  /// True once the data could not be read, as of a file that has become shorter; it then looks as
  /// if it ended there.
  bool HasFailed() const { return _hasFailed; }

 private:
  bool Refill(std::size_t count);

  KOVABufferHandle _buffer;
  std::unique_ptr<char[]> _bytes;
  std::size_t _capacity;
  const char* _begin;
  const char* _end;
  std::uint64_t _offset = 0;
  std::uint64_t _byteCount;
  bool _hasFailed = false;
};

}  // namespace kova::translators
