#pragma once

#include "kovabase/files/KOVAFile.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVABuffer.h"
#include "kovabase/io/KOVABufferManager.h"

#include <cstddef>
#include <cstring>

/// A buffer over a file or a block of memory: chooses the handler and keeps the position. The typed
/// reads and writes are in the binary and the text buffer.
///
/// Reading past the data fires an error event and throws a Gk_Exception, "End of Buffer."; the
/// position then stays where it was. One thread at a time.
class KOVABASE_API KOVADefaultBuffer : public KOVABuffer {
 public:
  /// @param mode  1 writes the file, which is created or made empty; any other reads it. A file
  /// that
  ///   cannot be had fires an error event, after which nothing can be read or written.
  KOVADefaultBuffer(const KOVAFileHandle& file, int mode);
  /// Reads the block, which stays the caller's. A null or empty one fires an error event.
  KOVADefaultBuffer(unsigned char* block, unsigned long bytes);
  KOVADefaultBuffer(const KOVADefaultBuffer&) = delete;
  KOVADefaultBuffer& operator=(const KOVADefaultBuffer&) = delete;
  ~KOVADefaultBuffer() override;

  long GetOffset() const override { return _windowEnd - (_end - _cursor); }
  KOVAResult SetOffset(long offset) override;
  long GetSize() const override;
  KOVAResult PeekBytes(long offset, int count, unsigned char* destination) override;

  /// Whether the byte at the position is in the window.
  bool IsPointerPositionValid(long position) const;
  bool IsBufferValid() const;

  /// Hands what was written to the system. @return FileSaveError when it refused, now or before;
  ///   NotSupported for a buffer that reads.
  KOVAResult Flush();

 protected:
  /// Takes the next `count` bytes.
  /// @return NotInitialized when there is no data; otherwise as the handler says.
  KOVAResult ReadBytes(void* destination, int count) {
    if (count > 0 && count <= _end - _cursor) {
      std::memcpy(destination, _cursor, static_cast<std::size_t>(count));
      _cursor += count;
      return KOVAResultCode::kSuccess;
    }
    return ReadAcross(destination, count);
  }
  KOVAResult WriteBytes(const void* bytes, int count);

  /// What a read gives that wants more than there is: the event and the exception. Nothing moves.
  /// @return NotInitialized when there is no data at all.
  KOVAResult FailAtEnd();

  /// Brings the next bytes into the window. @return false at the end of the data, silently; a read
  ///   that fails is a Failure in `result`.
  bool Refill(KOVAResult& result);

  /// The part of the window that is still to be read.
  const unsigned char* _cursor = nullptr;
  const unsigned char* _end = nullptr;

 private:
  KOVAResult ReadAcross(void* destination, int count);
  void ShowWindow(long offset);

  KOVABufferManagerHandle _handler;
  bool _isOutput = false;
  /// The position of `_end`; the offset when nothing is left in the window.
  long _windowEnd = 0;
};

using KOVADefaultBufferHandle = KOVATypedHandle<KOVADefaultBuffer>;
