#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"

#include <cstdint>

/// A window of bytes over data that is longer than it: the base of the handlers over files and
/// memory. Positions are bytes from the beginning of the data and below 4 GiB. A negative position
/// and one behind the data are never in the window. One thread at a time.
class KOVABASE_API KOVABufferManager : public KOVAReferenceCount {
 public:
  KOVABufferManager(const KOVABufferManager&) = delete;
  KOVABufferManager& operator=(const KOVABufferManager&) = delete;
  ~KOVABufferManager() override;

  /// Makes the window of the buffer size.
  /// @return WindowSizeUndefined for a size of 0, WindowNotAllocated when there is no memory; both
  ///   say so on standard output.
  virtual KOVAResult AllocateBuffer() = 0;

  /// Fills the window from the place where it begins if it is empty, otherwise from the one behind
  /// its end.
  /// @return NotInitialized without data; WindowReadFailed at the end of the data and for a failed
  ///   read; WindowReadNothing when nothing came though neither is the case.
  virtual KOVAResult FillBuffer() = 0;

  /// The byte at a position; the window moves there if need be.
  /// @return the result of the refill. A position outside the data fires an error event and throws
  ///   a Gk_Exception, "End of Buffer.".
  virtual KOVAResult GetByte(long position, unsigned char& byte) = 0;

  /// The `count` bytes from `offset` on, across as many windows as it takes.
  /// @return Failure, nothing touched, for a null destination or a negative count; otherwise as
  ///   GetByte.
  virtual KOVAResult GetBytes(long offset, int count, unsigned char* destination) = 0;

  /// Moves the window to a position and leaves it empty: the next FillBuffer fills it from there.
  /// @return Failure, nothing changed, unless 0 <= position < size of the data.
  virtual KOVAResult AdvancePointerPosition(long position) = 0;

  /// Whether the byte at the position is in the window.
  bool IsPointerPositionValid(long position) const noexcept {
    return position >= _windowStart && position < _windowEnd;
  }
  /// Whether there is a window with data to read into it.
  virtual bool IsBufferValid() const = 0;

  /// The size of the data in bytes.
  std::uint32_t GetSize() const noexcept { return _size; }
  std::uint32_t GetBufferSize() const noexcept { return _bufferSize; }
  /// What the last fill brought.
  std::uint32_t GetBytesRead() const noexcept { return _bytesRead; }

  /// The position of the first byte in the window and of the one behind the last.
  long GetWindowStart() const noexcept { return _windowStart; }
  long GetWindowEnd() const noexcept { return _windowEnd; }
  /// The first byte of the window. Changes with every fill.
  const unsigned char* GetWindow() const noexcept { return _window; }

 protected:
  KOVABufferManager();

  /// Makes `position` lie in the window, or throws; see GetByte.
  KOVAResult MoveWindowTo(long position, const char* message);
  KOVAResult CopyBytes(long offset, int count, unsigned char* destination, const char* message);
  /// The window's memory at the buffer size; the messages are printed as they stand.
  KOVAResult AllocateWindow(const char* sizeMessage, const char* memoryMessage);

  /// Bytes that the window has room for: the buffer size when it was allocated.
  std::uint32_t GetCapacity() const noexcept { return static_cast<std::uint32_t>(_bytes.size()); }

  KOVADynamicArray<unsigned char> _bytes;
  unsigned char* _window = nullptr;
  std::uint32_t _size = 0;
  std::uint32_t _bufferSize = 0;
  std::uint32_t _bytesRead = 0;
  long _windowStart = 0;
  long _windowEnd = 0;
};

using KOVABufferManagerHandle = KOVATypedHandle<KOVABufferManager>;
