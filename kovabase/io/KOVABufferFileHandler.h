#pragma once

#include "kovabase/files/KOVAFile.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVABufferManager.h"

#include <cstdio>

/// A window over a file. The constructors of the derived classes open the stream; whether that went
/// well is what `IsOpen` says.
class KOVABASE_API KOVABufferFileHandler : public KOVABufferManager {
 public:
  ~KOVABufferFileHandler() override;

  /// Asks for the file's size: the window takes it, but 2,048 bytes for an empty or unknown one and
  /// 4 MiB at the most. @return Success.
  KOVAResult DecideFileBufferSize();

  KOVAResult AllocateBuffer() override;
  bool IsBufferValid() const override;
  bool IsOpen() const noexcept { return _stream != nullptr; }

 protected:
  explicit KOVABufferFileHandler(const KOVAFileHandle& file);

  KOVAFileHandle _file;
  std::FILE* _stream = nullptr;
};

/// Reads a regular file of less than 4 GiB. Others are not opened, without waiting for anybody at
/// the other end of a pipe.
class KOVABASE_API KOVABufferInputFileHandler : public KOVABufferFileHandler {
 public:
  explicit KOVABufferInputFileHandler(const KOVAFileHandle& file);
  ~KOVABufferInputFileHandler() override;

  KOVAResult FillBuffer() override;
  KOVAResult GetByte(long position, unsigned char& byte) override;
  /// 64 KiB and more that are not in the window are read past it, and it stays where it is.
  KOVAResult GetBytes(long offset, int count, unsigned char* destination) override;
  KOVAResult AdvancePointerPosition(long position) override;
};

/// Writes a file, which is created or made empty, through the window. What was written can be read
/// back by position.
class KOVABASE_API KOVABufferOutputFileHandler : public KOVABufferFileHandler {
 public:
  explicit KOVABufferOutputFileHandler(const KOVAFileHandle& file);
  /// Writes out what the window holds; call `Flush` before, to know whether it arrived.
  ~KOVABufferOutputFileHandler() override;

  /// Writes out what the window holds before it is changed.
  KOVAResult AllocateBuffer() override;
  KOVAResult FillBuffer() override;
  KOVAResult GetByte(long position, unsigned char& byte) override;
  KOVAResult GetBytes(long offset, int count, unsigned char* destination) override;
  KOVAResult AdvancePointerPosition(long position) override;

  /// Writes `count` bytes at a position from 0 to the size of the data, over what is there.
  /// @return NotInitialized without a stream; InvalidArgument for null, a negative count or another
  ///   position; FileSaveError when the system refuses, now and from then on.
  KOVAResult PutBytes(long position, int count, const unsigned char* bytes);
  /// Hands everything written to the system. @return as PutBytes.
  KOVAResult Flush();

 private:
  KOVAResult _result = KOVAResultCode::kSuccess;
  /// Bytes in the window that the file does not have yet; they begin the window.
  std::uint32_t _pending = 0;
};

using KOVABufferFileHandlerHandle = KOVATypedHandle<KOVABufferFileHandler>;
using KOVABufferInputFileHandlerHandle = KOVATypedHandle<KOVABufferInputFileHandler>;
using KOVABufferOutputFileHandlerHandle = KOVATypedHandle<KOVABufferOutputFileHandler>;
