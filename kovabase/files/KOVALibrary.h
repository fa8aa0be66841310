#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

#include <atomic>
#include <string>

/// One shared library: loaded by name on demand, initialised once, asked for functions, finalised
/// and unloaded.
///
/// A bare name such as "Perf" means the file "libPerf.so", which is looked for in the added
/// directories, in the absolute directories of the search path ("PATH", split at ';' and ':'), and
/// by the system's loader, in this order; the first file of that name decides. A name with a
/// separator in it is a path and taken as it is.
///
/// Loading, initialising and unloading belong to one thread, the host's; once a library is
/// initialised, any thread may look functions up. What a library's own functions throw ends there:
/// it is reported as an error event.
class KOVABASE_API KOVALibrary : public KOVAReferenceCount {
 public:
  /// Loads nothing yet.
  /// @param name  a bare name is kept in US-ASCII, '_' for other characters, and cut to 63.
  /// @param initFunctionName  exported by the library, takes nothing; may be empty.
  /// @param finalizeFunctionName  likewise.
  KOVALibrary(const KOVAString& name, const KOVAString& initFunctionName,
              const KOVAString& finalizeFunctionName);
  KOVALibrary(const KOVALibrary&) = delete;
  KOVALibrary& operator=(const KOVALibrary&) = delete;
  /// Does what FinalizeAndUnload does.
  ~KOVALibrary() override;

  unsigned RaiseReference() override;
  unsigned LowerReference() override;

  /// In US-ASCII and cut to 63 characters.
  const char* GetLibraryName() const noexcept { return _name; }
  bool IsLoaded() const noexcept { return _module != nullptr; }
  /// A library that is not unloadable is finalised, but stays mapped until the process ends.
  bool IsUnloadable() const noexcept { return _isUnloadable; }
  void SetUnloadable(bool isUnloadable) noexcept { _isUnloadable = isUnloadable; }

  /// Loads the file, unless the library is loaded or the name empty. Ask IsLoaded for the outcome;
  /// on failure the reason goes to the standard error stream too, and the places to KOVADebug.
  /// @param fileName  a path, or a bare file name ("libPerf.so"), in US-ASCII as above.
  void Load(const KOVAString& fileName);

  /// Loads the library, unless it is loaded, and calls its initialisation function, unless it was
  /// called. Without such a function the library stays uninitialised, and each GetFunction tries
  /// again; that is no failure. While the function runs, calls from inside it do not repeat it.
  /// @param archSpecific  has no effect on this system.
  /// @return Success; Failure when the library cannot be loaded or the function threw; Aborted when
  ///   that was a KOVAAbortException.
  KOVAResult LoadAndInitialize(bool archSpecific);

  /// Looks up an exported function, after LoadAndInitialize where that is due.
  /// @param function  receives the address; null when the library has no such function; untouched
  ///   when the library cannot be had.
  /// @return Success; InvalidArgument for an empty name, with nothing done; Failure, with an error
  ///   event, for a missing function; what LoadAndInitialize said.
  KOVAResult GetFunction(const KOVAString& functionName, void*& function);

  /// Calls the finalisation function if the library was initialised, and unloads it if it is
  /// unloadable. Addresses of its functions are void then.
  /// @return Success; Failure when the function threw.
  KOVAResult FinalizeAndUnload();

  /// What the last Load tried, in this order: the paths of files, then the bare name for the
  /// system's loader. Spelled as the system spells them.
  const KOVADynamicArray<KOVAString>& GetTriedPlaces() const noexcept { return _triedPlaces; }
  /// The system's reason why the last Load failed; empty when it did not.
  const KOVAString& GetLoadError() const noexcept { return _loadError; }

  /// The file name of a library: "lib" + name + ".so" of a bare name in US-ASCII, a path as it is,
  /// and empty for empty.
  /// @return Success; Failure, `actual` untouched, for a bare name of more than 255 characters.
  static KOVAResult GetArchSpecificActualName(const KOVAString& name, bool archSpecific,
                                              KOVAString& actual);

  /// Finds the directory of the search path that holds a program or a library; relative entries
  /// count here.
  /// @param directory  receives the directory with a backslash at its end.
  /// @return Success, or Failure with `directory` untouched.
  static KOVAResult GetDirInPath(const KOVAString& name, bool isLibrary, KOVAString& directory);

  /// Has libraries looked for in this directory too. A relative one is meant from the present
  /// working directory.
  /// @return Failure, always, and kept so; there is nothing to test.
  static KOVAResult AddDirectoryToPath(const KOVAString& directory);

  /// Loads the library and unloads it, calling nothing in it but what the system calls.
  /// @param unloadable  false leaves it mapped.
  /// @return what LoadAndInitialize said.
  static KOVAResult CheckLoadability(const KOVAString& name, bool archSpecific, bool unloadable);

 private:
  static constexpr int kNameBytes = 64;

  struct LoadAttempt;

  void loadPath(const KOVAString& fileName, LoadAttempt& attempt);
  void loadBareName(const std::string& fileName, LoadAttempt& attempt);
  void loadFrom(const std::string& place, LoadAttempt& attempt);

  void* _module = nullptr;
  char _name[kNameBytes];
  std::atomic<bool> _isUnloadable = true;  // each light object sets it, on any thread
  bool _isInitialized = false;
  bool _isInitializing = false;
  KOVAString _initFunctionName;
  KOVAString _finalizeFunctionName;
  KOVAString _fullPath;  // empty for a bare name
  KOVADynamicArray<KOVAString> _triedPlaces;
  KOVAString _loadError;
};

using KOVALibraryHandle = KOVATypedHandle<KOVALibrary>;
