#pragma once

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

/// The directories of a translation run: relative inputs are found from the working directory,
/// relative outputs land in the output directory. While a test is running (see
/// KOVACurrentlyRunningTest), outputs land in a subdirectory of its name.
///
/// A plain value: the host makes one for a run and hands it on. Nothing is created on disk.
class KOVABASE_API KOVARuntimeContext {
 public:
  /// The process's current directory, for both.
  KOVARuntimeContext();

  /// A relative directory is taken from the process's current one.
  /// @return InvalidArgument, nothing changed, for an invalid path.
  KOVAResult SetWorkingDirectory(const KOVAFilePath& directory);
  /// A relative directory is taken from the working directory, whatever that is later.
  /// @return InvalidArgument, nothing changed, for an invalid path.
  KOVAResult SetOutputDirectory(const KOVAFilePath& directory);

  /// Absolute.
  KOVAFilePath GetWorkingDirectory() const;
  /// Absolute; the working directory when no other was set.
  KOVAFilePath GetOutputDirectory() const;

  /// The absolute path of an input, respectively an output, file. Absolute paths stay as they are
  /// and invalid ones stay invalid.
  KOVAFilePath ResolveInput(const KOVAFilePath& path) const;
  KOVAFilePath ResolveOutput(const KOVAFilePath& path) const;

 private:
  KOVAFilePath _working;
  KOVAFilePath _output;
};
