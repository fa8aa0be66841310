#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/options/KOVAProperties.h"
#include "kovabase/strings/KOVAString.h"

/// The environment of the process. The one object is a snapshot of it, each variable a property;
/// the static operations work on the live environment.
///
/// Names and values are in the default code page, with '_' for characters that it lacks. A name
/// that is empty or has an equals sign in it fails, and so does U+0000 anywhere.
///
/// The operations of this class may be used on any thread: one lock orders them, and they hand out
/// copies. Other code that changes the environment is not held back by it.
class KOVABASE_API KOVAEnvironment : public KOVAProperties {
 public:
  /// The snapshot, taken at the first call and kept until the process ends. Its properties are in
  /// the order of the environment block.
  static KOVAEnvironment& GetEnv();

  /// @return Success, also for a variable that is set to the empty text; Failure, `value`
  ///   untouched, when it is not set.
  static KOVAResult GetVariable(const KOVAString& name, KOVAString& value);
  /// Reads the text by the rules of KOVAStringToInteger and KOVAStringToDouble: "12abc" is 12.
  /// @return Failure, `value` untouched, when the variable is not set or no number.
  static KOVAResult GetVariable(const KOVAString& name, int& value);
  static KOVAResult GetVariable(const KOVAString& name, double& value);
  /// True for "true" in any case, false for everything else and when the variable is not set.
  /// @return whether the variable is set; a text that is no boolean is Success too, and kept so.
  static KOVAResult GetVariable(const KOVAString& name, bool& value);

  /// An empty value removes the variable.
  /// @return Success or Failure.
  static KOVAResult PutVariable(const KOVAString& name, const KOVAString& value);
  /// @return Success also when there was no such variable.
  static KOVAResult RemoveVariable(const KOVAString& name);

  /// The name of the variable with the search path: "PATH".
  static KOVAResult GetPathEnvName(KOVAString& name);
  /// The directory that "ADL_IMAGE_DOS_DIR" names or, without it, the one that holds what is named
  /// by "ADL_ODT_IN" less its last 24 units.
  /// @return Failure, `directory` untouched, when neither is set, or the second is too short or
  ///   leaves no separator.
  static KOVAResult GetWorkspaceDirectory(KOVAString& directory);
  /// Looks for a shared library with KOVASharedLibFileFinder, and is defined with it.
  /// @param path  receives the stored form of the path.
  /// @return Failure, `path` untouched, when there is none.
  static KOVAResult FindSharedExternalLibrary(const KOVAString& name, KOVAString& path);

 private:
  KOVAEnvironment();
};
