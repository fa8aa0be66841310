#pragma once

#include <cstddef>
#include <cstdint>

namespace kova::translators {

/// Where a reader gets its bytes from, front to back. The caller of the reader owns it.
class Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;

  /// Copies up to `capacity` > 0 bytes to `bytes`.
  /// @return the bytes copied, at least one before the end; 0 at the end; -1 when the source cannot
  ///   be read any further.
  virtual std::int64_t Read(char* bytes, std::size_t capacity) = 0;

  /// All bytes that there are from the first to the last, read or not; -1 when only reading can
  /// tell. A file may still turn out shorter.
  virtual std::int64_t GetByteCount() const = 0;

  /// Why `Read` has returned -1, in words.
  virtual const char* GetFailureReason() const { return ""; }
};

}  // namespace kova::translators
