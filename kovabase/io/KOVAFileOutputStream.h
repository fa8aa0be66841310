#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVAOutputStream.h"

#include <cstddef>
#include <cstdio>

class KOVAString;

/// Writes to a file. Who opened it closes it: a file given as a path is closed by the stream, a
/// `FILE*` or a descriptor that was handed in is not.
///
/// What is held back: for a path up to 64 KiB, until `Flush`, `Close` or destruction; for a
/// descriptor until a write that holds a line end, so that lines appear at once and whole; for a
/// `FILE*` whatever the C library holds back, so that the order with the host's output is kept.
class KOVABASE_API KOVAFileOutputStream : public KOVAOutputStream {
 public:
  /// Writes to the C stream. Null makes a stream that has failed with InvalidArgument.
  explicit KOVAFileOutputStream(std::FILE* file);

  /// Creates or empties the file. `GetResult` is FileOpenError when that fails.
  /// @param path  zero-terminated UTF-8; null fails with InvalidArgument.
  explicit KOVAFileOutputStream(const char* path);
  explicit KOVAFileOutputStream(const KOVAString& path);

  /// Writes to the descriptor, such as 1 for standard output. Negative values fail with
  /// InvalidArgument.
  explicit KOVAFileOutputStream(int descriptor);

  /// Writes what is held back and closes its own file. An error that shows only here is lost:
  /// call `Close` or `Flush` before to see it.
  ~KOVAFileOutputStream() override;

  /// Writes what is held back and closes the file when it is the stream's own. Later writes fail
  /// with FileSaveError; a second call has no effect.
  /// @return Success when every byte has reached the operating system.
  KOVAResult Close();

  const char* GetFailureReason() const override;

 protected:
  KOVAResult WriteBytes(const char* bytes, std::size_t count) override;
  KOVAResult FlushBytes() override;

 private:
  void Open(const char* path);
  bool HasBuffer();
  void SetFill(char* fill);
  KOVAResult Send(const char* bytes, std::size_t count);
  KOVAResult SendBuffer();
  KOVAResult FailWith(KOVAResult failure, int systemError);

  std::FILE* _file = nullptr;
  int _descriptor = -1;
  bool _isOwned = false;
  bool _isClosed = false;
  // Filled up to `GetPut`; null until the first write.
  char* _buffer = nullptr;
  char _reason[96] = "";
};
