#pragma once

#include "kovabase/files/KOVAFileFinder.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// Finds the file of a shared library: "name" is "libname.so" here. A name with a separator in it
/// is a path and taken as it is. Without a search directory the file is looked for where
/// KOVALibrary does: in the added directories, then in the absolute ones of the search path.
class KOVABASE_API KOVASharedLibFileFinder : public KOVAFileFinder {
 public:
  KOVASharedLibFileFinder() = default;
  explicit KOVASharedLibFileFinder(const KOVAFilePath& directory);
  ~KOVASharedLibFileFinder() override;

  /// Both leave the empty name empty. @return Success.
  virtual KOVAResult AddPrefix(KOVAString& name);
  virtual KOVAResult AddExtension(KOVAString& name);

  KOVAResult GetExactName(const KOVAString& name, KOVAString& exactName) override;
  KOVAResult Find(const KOVAString& name, KOVAFilePath& path) override;
};
