#pragma once

#include "kovabase/files/KOVALibrary.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// The process's shared libraries, one KOVALibrary for each name. Client code asks for them through
/// KOVAVexilLibrary. The table is guarded, so that any thread may ask; what happens to a library
/// itself is KOVALibrary's business.
class KOVABASE_API KOVALibraryManager {
 public:
  KOVALibraryManager() = delete;

  /// Lets all libraries go, the last created first. Each is finalised and unloaded with the last
  /// handle to it; a later request creates a fresh one.
  /// @return Success, always.
  static KOVAResult FreeLibraries();

  /// The same at the end of the process, and only when the environment variable
  /// "KOVA_FORCE_UNLOAD_DLLS" is exactly "TRUE": libraries that are not unloadable go too then.
  /// Otherwise nothing is freed, since other objects may still need them.
  /// @return Success, always.
  static KOVAResult FreeLibrariesOnTerminate();

 private:
  friend class KOVAVexilLibrary;

  /// The stored library of that name, whatever its functions, or a new one.
  static KOVAResult CreateLibrary(const KOVAString& name, const KOVAString& initFunctionName,
                                  const KOVAString& finalizeFunctionName,
                                  KOVALibraryHandle& library);
  /// @return Success, or InvalidArgument for null.
  static KOVAResult AddLibrary(const KOVAString& name, KOVALibrary* library);
  static KOVAResult FreeLibrariesInternal(bool onTerminate);
};
