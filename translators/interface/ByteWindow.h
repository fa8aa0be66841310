#pragma once

#include "translators/interface/Source.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace kova::translators {

/// A sliding piece of a source in memory: what parsers look at. It refills itself when more bytes
/// are required than it holds, and never needs more memory than its capacity.
class ByteWindow {
 public:
  /// @param source  not owned; must live as long as the window.
  /// @param capacity  the most bytes that can be looked at in one piece.
  ByteWindow(Source& source, std::size_t capacity);

  /// The bytes at hand; good until the next call of `Require`.
  const char* begin() const { return _begin; }
  const char* end() const { return _end; }
  std::size_t size() const { return static_cast<std::size_t>(_end - _begin); }

  /// The position of `begin` in the source.
  std::uint64_t GetOffset() const { return _offset; }

  /// Tries to have `count` bytes at hand, at most the capacity.
  /// @return false when the source has fewer left; those are at hand.
  bool Require(std::size_t count) { return size() >= count || Refill(count); }

  /// Steps over `count` of the bytes at hand.
  void Skip(std::size_t count) {
    _begin += count;
    _offset += count;
  }

  /// True once the source could not be read; it then looks as if it ended there.
  bool HasFailed() const { return _hasFailed; }

  Source& GetSource() const { return _source; }

 private:
  bool Refill(std::size_t count);

  Source& _source;
  std::unique_ptr<char[]> _bytes;
  std::size_t _capacity;
  const char* _begin;
  const char* _end;
  std::uint64_t _offset = 0;
  bool _isAtEnd = false;
  bool _hasFailed = false;
};

}  // namespace kova::translators
