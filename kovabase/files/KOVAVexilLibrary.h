#pragma once

#include "kovabase/files/KOVALibrary.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// What client code holds of a shared library: its name, its two entry points and, from the first
/// use on, the process's one KOVALibrary of that name. Objects that name the same library share it;
/// the entry points are those of whoever came first. Copies share it too.
class KOVABASE_API KOVAVexilLibrary {
 public:
  /// The arguments are KOVALibrary's. Loads nothing yet; the library is unloadable.
  KOVAVexilLibrary(const KOVAString& name, const KOVAString& initFunctionName,
                   const KOVAString& finalizeFunctionName);
  KOVAVexilLibrary(const KOVAVexilLibrary& other) = default;
  KOVAVexilLibrary& operator=(const KOVAVexilLibrary& other) = default;
  /// Lets the library go; the manager still holds it.
  ~KOVAVexilLibrary();

  /// Loads and initialises the library, unless this object has done so.
  /// @return as KOVALibrary::LoadAndInitialize. After a failure the next call tries again.
  KOVAResult Load();
  /// @return as KOVALibrary::GetFunction.
  KOVAResult GetFunction(const KOVAString& functionName, void*& function);
  /// Takes effect when this object first asks for the library.
  void SetUnloadable(bool isUnloadable) noexcept { _isUnloadable = isUnloadable; }

  /// Null before the first use.
  KOVALibraryHandle GetLibrary() const { return _library; }

 private:
  KOVAString _name;
  KOVAString _initFunctionName;
  KOVAString _finalizeFunctionName;
  KOVALibraryHandle _library;
  bool _isUnloadable = true;
};
