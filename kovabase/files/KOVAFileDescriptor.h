#pragma once

#include "kovabase/files/KOVAFile.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"

#include <cstddef>
#include <cstdint>

/// What a file descriptor may do.
enum class KOVAFileIOMode { kRead, kWrite, kReadAndWrite };

/// An open file whose bytes are read and written at given offsets. There is no current position, so
/// that several threads may read and write at once; opening and closing is for one thread.
class KOVABASE_API KOVAFileDescriptor : public KOVAReferenceCount {
 public:
  KOVAFileDescriptor(const KOVAFileHandle& file, KOVAFileIOMode mode);
  KOVAFileDescriptor(const KOVAFileDescriptor&) = delete;
  KOVAFileDescriptor& operator=(const KOVAFileDescriptor&) = delete;
  /// Closes the file.
  ~KOVAFileDescriptor() override;

  const KOVAFileHandle& GetFile() const noexcept { return _file; }
  KOVAFileIOMode GetIOMode() const noexcept { return _mode; }

  /// Opens the file, unless it is open. The modes that write create a missing file and keep the
  /// content of an existing one. Directories are refused.
  /// @return Success; FileOpenError; InvalidArgument without a file.
  KOVAResult Open();
  /// @return Success, also when nothing was open; FileSaveError when data was lost.
  KOVAResult Close();
  bool IsOpen() const noexcept { return _descriptor >= 0; }

  /// @return Success; Failure, `bytes` untouched, when the file is not open.
  KOVAResult GetSize(std::uint64_t& bytes) const;

  /// @param offset  the first byte, from 0.
  /// @param bytesRead  receives the bytes read: fewer than `count` at the end of the file, 0 behind
  ///   it and on failure.
  /// @return Success; InvalidArgument for null; Failure when the file is not open for reading or
  /// the
  ///   system reports an error.
  KOVAResult ReadBytes(std::uint64_t offset, std::size_t count, unsigned char* destination,
                       std::size_t& bytesRead) const;
  /// Writes all `count` bytes; what is behind the end of the file before `offset` becomes zero.
  /// @return as ReadBytes; Failure also when only a part could be written.
  KOVAResult WriteBytes(std::uint64_t offset, std::size_t count, const unsigned char* source);

 private:
  KOVAFileHandle _file;
  KOVAFileIOMode _mode;
  int _descriptor = -1;
};

using KOVAFileDescriptorHandle = KOVATypedHandle<KOVAFileDescriptor>;
