#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// Finds a file by its name in a directory and below it, nearest first: the directory itself, then
/// the directories in it in the order of their names, then those in them. Links to directories are
/// not followed. Without a directory the name is looked for in the working directory alone.
///
/// Derived classes say how a name is spelled in the file system.
class KOVABASE_API KOVAFileFinder {
 public:
  KOVAFileFinder() = default;
  explicit KOVAFileFinder(const KOVAFilePath& directory);
  virtual ~KOVAFileFinder();

  const KOVAFilePath& GetDirectory() const noexcept { return _directory; }
  void SetDirectory(const KOVAFilePath& directory) { _directory = directory; }

  /// The name of the file that is looked for: the last part of `name`, adjusted.
  /// @return Success; Failure, `exactName` untouched, when that is empty or cannot be made.
  virtual KOVAResult GetExactName(const KOVAString& name, KOVAString& exactName);

  /// @param path  receives the path of the file, untouched when there is none.
  /// @return Success, FileNotFound, or what GetExactName says.
  virtual KOVAResult Find(const KOVAString& name, KOVAFilePath& path);

 protected:
  /// A derived class's own change to a name; none here.
  virtual KOVAResult AdjustName(KOVAString& name);

 private:
  KOVAFilePath _directory;
};
