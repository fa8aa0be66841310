#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

#include <memory>

namespace kova::platform {
class DirectoryEntries;
}

/// Reads the names in a directory one by one, in the order of the file system and without "." and
/// "..". One thread at a time.
class KOVABASE_API KOVADirReader {
 public:
  explicit KOVADirReader(const KOVAFilePath& directory);
  KOVADirReader(const KOVADirReader&) = delete;
  KOVADirReader& operator=(const KOVADirReader&) = delete;
  ~KOVADirReader();

  /// Starts from the first name, also when the directory was open.
  /// @return Success; InvalidArgument for the invalid path; FileNotFound when there is nothing of
  ///   that name; FileOpenError when it is no directory or may not be read.
  KOVAResult Open();
  void Close();

  /// @param name  receives the name alone, in the stored form (see KOVAFilePath).
  /// @param isDirectory  true for a link to a directory too.
  /// @return false, with the outputs untouched, at the end and when nothing is open.
  bool GetNext(KOVAString& name, bool& isDirectory, bool& isLink);

 private:
  KOVAFilePath _directory;
  std::unique_ptr<kova::platform::DirectoryEntries> _entries;
};
