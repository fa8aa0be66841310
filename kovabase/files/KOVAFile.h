#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"

#include <cstdint>
#include <cstdio>

/// A file that several holders share: its path and what is asked through it. It keeps nothing open,
/// and there need be no such file.
class KOVABASE_API KOVAFile : public KOVAReferenceCount {
 public:
  explicit KOVAFile(const KOVAFilePath& path);
  ~KOVAFile() override;

  const KOVAFilePath& GetPath() const noexcept { return _path; }

  /// Whether a file can be opened for reading; see KOVAFilePath::DoesFileExist.
  bool DoesExist() const { return _path.DoesFileExist(); }
  /// Whether there is a file that is no directory, pipe, socket or device. Nobody waits.
  bool IsRegular() const;
  /// @return a stream that the caller closes, or null; see KOVAFilePath::OpenFile.
  std::FILE* OpenStream(const char* mode) const { return _path.OpenFile(mode); }
  /// The whole size, unlike KOVAFilePath::GetFileSize.
  /// @return Success; FileNotFound, `bytes` untouched, when there is no such file.
  KOVAResult GetSize(std::uint64_t& bytes) const;

 private:
  KOVAFilePath _path;
};

using KOVAFileHandle = KOVATypedHandle<KOVAFile>;
