#include "kovabase/files/KOVAVexilLibrary.h"

#include "kovabase/files/KOVALibraryManager.h"

KOVAVexilLibrary::KOVAVexilLibrary(const KOVAString& name, const KOVAString& initFunctionName,
                                   const KOVAString& finalizeFunctionName)
    : _name(name),
      _initFunctionName(initFunctionName),
      _finalizeFunctionName(finalizeFunctionName) {}

KOVAVexilLibrary::~KOVAVexilLibrary() = default;

KOVAResult KOVAVexilLibrary::Load() {
  KOVAResult result = KOVAResultCode::kSuccess;
  if (!_library.IsValid()) {
    KOVALibraryHandle library;
    result &=
        KOVALibraryManager::CreateLibrary(_name, _initFunctionName, _finalizeFunctionName, library);
    if (library.IsValid()) {
      library->SetUnloadable(_isUnloadable);
      result &= library->LoadAndInitialize(true);
    }
    _library = library;
  } else if (!_library->IsLoaded()) {
    result &= _library->LoadAndInitialize(true);
  }
  return result;
}

KOVAResult KOVAVexilLibrary::GetFunction(const KOVAString& functionName, void*& function) {
  KOVAResult result = Load();
  if (result.IsSuccess() && _library.IsValid()) {
    result &= _library->GetFunction(functionName, function);
  }
  return result;
}
