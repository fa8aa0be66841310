#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"

#include <cstdio>

/// A file that is gone when this object is. Its name is unique; the file itself is made by the
/// first opening for writing, for its owner alone and never through a link or in place of another
/// file. One thread at a time.
///
/// The file lies in the directory that the environment variable "TMPDIR" names, else in the working
/// directory. When neither exists the name is one of "KOVATemp_1" to "KOVATemp_25", or the path is
/// invalid when all are taken.
class KOVABASE_API KOVATemporaryFile {
 public:
  KOVATemporaryFile();
  /// @param base  takes no part in the name; kept for its callers.
  /// @param name  its last part is appended to the name; null or empty for none.
  /// @param number  is appended behind `name` unless 0.
  KOVATemporaryFile(const KOVAFilePath& base, const char* name, unsigned int number);
  KOVATemporaryFile(const KOVATemporaryFile&) = delete;
  KOVATemporaryFile& operator=(const KOVATemporaryFile&) = delete;
  /// Does what Terminate does.
  ~KOVATemporaryFile();

  /// Where the file is, or will be when it is first opened.
  void GetPath(KOVAFilePath& path) const;

  /// Closes an open stream and opens the file.
  /// @param mode  as for KOVAFilePath::OpenFile; the first one must write.
  /// @return the stream, which stays this object's own, or null.
  std::FILE* Open(const char* mode);
  /// @return false when the last of the data could not be written.
  bool Close();
  /// @return whether the file was there and is gone. A later opening for writing makes it anew.
  bool Remove();
  /// Closes and removes.
  void Terminate();

 private:
  void InitializeName(const KOVAFilePath& base, const char* name, unsigned int number);

  std::FILE* _stream = nullptr;
  KOVAFilePath _path;
  bool _isCreated = false;
};
