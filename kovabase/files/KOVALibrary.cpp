#include "kovabase/files/KOVALibrary.h"

#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/files/KOVATarnSystem.h"
#include "kovabase/files/internal/LibrarySearch.h"
#include "kovabase/foundation/KOVAAbortException.h"
#include "kovabase/foundation/KOVAAllocException.h"
#include "kovabase/platform/FileSystem.h"
#include "kovabase/platform/Module.h"
#include "kovabase/platform/NativePath.h"
#include "kovabase/strings/KOVAStringCharUtil.h"

#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

using kova::platform::NativePath;

namespace {

constexpr int kMostNameCharacters = 255;
constexpr std::size_t kCautionBytes = 512;

#ifdef NDEBUG
constexpr bool kTracesLibraries = false;
#else
constexpr bool kTracesLibraries = true;
#endif

std::string toAscii(const KOVAString& text) try {
  const KOVAStringAsciiCharUtil ascii(text, true, '_');
  return ascii.GetBuffer() != nullptr ? ascii.GetBuffer() : "";
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

KOVAString fromNative(const std::string& text) { return KOVAString(text.c_str(), "UTF-8"); }

/// True for as long as it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : _flag(flag) { _flag = true; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;
  ~Raised() { _flag = false; }

 private:
  bool& _flag;
};

// Calls a library's function and lets nothing out of it but the outcome.
KOVAResult call(void* address, const std::string& functionName, const char* libraryName) {
  const auto report = [&](const char* what) {
    KOVAErrorEvent::Fire("KOVALibrary: The function %s of the %s library threw an exception: %s\n",
                         functionName.c_str(), libraryName, what);
  };
  try {
    reinterpret_cast<void (*)()>(address)();
    return KOVAResultCode::kSuccess;
  } catch (const KOVAAbortException&) {
    return KOVAResultCode::kAborted;
  } catch (const KOVAAllocException&) {
    report("out of memory");
  } catch (const std::exception& exception) {
    report(exception.what());
  } catch (...) {
    report("of a type that is not known here");
  }
  return KOVAResultCode::kFailure;
}

}  // namespace

/// One try to load, as the system spells things.
struct KOVALibrary::LoadAttempt {
  std::string name;
  std::vector<std::string> places;
  std::string reason;
  int systemError = 0;
};

KOVALibrary::KOVALibrary(const KOVAString& name, const KOVAString& initFunctionName,
                         const KOVAString& finalizeFunctionName)
    : _initFunctionName(initFunctionName), _finalizeFunctionName(finalizeFunctionName) {
  const std::string fullName = toAscii(name);
  std::snprintf(_name, sizeof _name, "%s", fullName.c_str());
  if (kova::internal::isLibraryPath(name)) _fullPath = name;
  if (kTracesLibraries && fullName.size() >= sizeof _name) {
    KOVADebug::Printf("%s library name is too long and was truncated to %s.\n", fullName.c_str(),
                      _name);
    // It is loaded under the cut name all the same; the text is kept.
    KOVADebug::Printf("%s library will not be loaded.\n", fullName.c_str());
  }
}

KOVALibrary::~KOVALibrary() {
  try {
    FinalizeAndUnload();
  } catch (...) {
    // Without memory for an event there is nobody left to tell.
  }
}

unsigned KOVALibrary::RaiseReference() { return KOVAReferenceCount::RaiseReference(); }

unsigned KOVALibrary::LowerReference() { return KOVAReferenceCount::LowerReference(); }

void KOVALibrary::Load(const KOVAString& fileName) try {
  if (IsLoaded() || fileName.isEmpty()) return;
  _triedPlaces.purge();
  _loadError.clear();

  LoadAttempt attempt;
  if (kova::internal::isLibraryPath(fileName)) {
    loadPath(fileName, attempt);
  } else {
    loadBareName(toAscii(fileName), attempt);
  }
  for (const std::string& place : attempt.places) _triedPlaces.add(fromNative(place));
  if (IsLoaded()) return;

  _loadError = fromNative(attempt.reason);
  char caution[kCautionBytes];
  std::snprintf(caution, sizeof caution,
                "\nNORVEX CAUTION : KOVALibrary::Load failed for %s with error",
                attempt.name.c_str());
  std::fprintf(stderr, "%s code = %d \n%s\n", caution, attempt.systemError, attempt.reason.c_str());
  for (const std::string& place : attempt.places) {
    KOVADebug::Printf("KOVALibrary::Load: Tried %s", place.c_str());
  }
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

void KOVALibrary::loadPath(const KOVAString& fileName, LoadAttempt& attempt) {
  const KOVAString stored = KOVAFilePath(fileName).GetPath();
  const NativePath native(stored.getUnits(), stored.length());
  attempt.name = native.isValid() ? native.text() : toAscii(fileName);
  if (native.isValid()) {
    loadFrom(native.text(), attempt);
  } else {
    attempt.reason = "the path is too long or has a character in it that no path can have";
  }
}

void KOVALibrary::loadBareName(const std::string& fileName, LoadAttempt& attempt) {
  attempt.name = fileName;
  for (const KOVAFilePath& place : kova::internal::libraryPlaces(fileName.c_str())) {
    const KOVAString stored = place.GetPath();
    const NativePath native(stored.getUnits(), stored.length());
    if (!native.isValid()) continue;
    // The first file of that name decides: going on would load another library in silence.
    if (kova::platform::canOpenFile(native.text())) return loadFrom(native.text(), attempt);
    attempt.places.emplace_back(native.text());
  }
  loadFrom(fileName, attempt);
}

void KOVALibrary::loadFrom(const std::string& place, LoadAttempt& attempt) {
  attempt.places.push_back(place);
  _module = kova::platform::openModule(place, attempt.reason, &attempt.systemError);
}

KOVAResult KOVALibrary::LoadAndInitialize(bool archSpecific) {
  KOVAResult result = KOVAResultCode::kSuccess;
  if (!IsLoaded()) {
    const KOVATarnSystem::LocaleGuard_t locale;
    KOVAString fileName;
    GetArchSpecificActualName(_fullPath.isEmpty() ? KOVAString(_name) : _fullPath, archSpecific,
                              fileName);
    Load(fileName);
    KOVATarnSystem::RefreshACPLocale();
    if (!IsLoaded()) {
      KOVAWarning::Printf("%s library not loaded.", _name);
      result = KOVAResultCode::kFailure;
    }
  }
  if (IsLoaded() && !_isInitialized && !_isInitializing) {
    // Set until the function is back, so that what it asks this library for finds it at work.
    const Raised isInitializing(_isInitializing);
    void* function = nullptr;
    GetFunction(_initFunctionName, function);
    if (function != nullptr) {
      result = call(function, toAscii(_initFunctionName), _name);
      _isInitialized = result.IsSuccess();
    }
  }
  return result;
}

KOVAResult KOVALibrary::GetFunction(const KOVAString& functionName, void*& function) {
  const std::string name = toAscii(functionName);
  if (name.empty()) return KOVAResultCode::kInvalidArgument;
  KOVAResult result = KOVAResultCode::kSuccess;
  if (!IsLoaded() || !_isInitialized) result &= LoadAndInitialize(true);
  if (result.IsFailure()) return result;
  function = kova::platform::findSymbol(_module, name);
  if (function == nullptr) {
    KOVAErrorEvent::Fire("No %s function in %s library.\n", name.c_str(), _name);
    result = KOVAResultCode::kFailure;
  }
  return result;
}

KOVAResult KOVALibrary::FinalizeAndUnload() {
  KOVAResult result = KOVAResultCode::kSuccess;
  if (!IsLoaded()) return result;
  const KOVATarnSystem::LocaleGuard_t locale;
  if (_isInitialized) {
    void* function = nullptr;
    GetFunction(_finalizeFunctionName, function);
    if (function != nullptr) result = call(function, toAscii(_finalizeFunctionName), _name);
    _isInitialized = false;
  }
  if (IsLoaded() && _isUnloadable) {
    KOVATarnSystem::RefreshACPLocale();
    kova::platform::closeModule(_module);
    _module = nullptr;
  }
  KOVATarnSystem::RefreshLocale();
  return result;
}

KOVAResult KOVALibrary::GetArchSpecificActualName(const KOVAString& name, bool /*archSpecific*/,
                                                  KOVAString& actual) {
  if (kova::internal::isLibraryPath(name)) {
    actual = name;
    return KOVAResultCode::kSuccess;
  }
  const std::string ascii = toAscii(name);
  if (ascii.size() > kMostNameCharacters) return KOVAResultCode::kFailure;
  KOVAString fileName(ascii.c_str(), "US-ASCII");
  if (!fileName.isEmpty()) {
    fileName = kova::internal::kLibraryPrefix + fileName + kova::internal::kLibraryExtension;
  }
  actual = fileName;
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVALibrary::GetDirInPath(const KOVAString& name, bool isLibrary,
                                     KOVAString& directory) {
  // Programs have no extension here.
  KOVAString fileName = name;
  if (isLibrary) {
    const KOVAResult result = GetArchSpecificActualName(name, true, fileName);
    if (result.IsFailure()) return result;
  }
  KOVADynamicArray<KOVAFilePath> directories;
  const KOVAResult result = kova::internal::searchPathDirectories(directories);
  if (result.IsFailure()) return result;
  for (const KOVAFilePath& candidate : directories) {
    if (!KOVAFilePath(candidate.GetPath(), fileName).DoesFileExist()) continue;
    directory = candidate.GetPath();
    if (!directory.endsWith("\\")) directory.append("\\");
    if (kTracesLibraries) {
      KOVADebug::Printf("%s has %s.\n", toAscii(directory).c_str(), toAscii(fileName).c_str());
    }
    return KOVAResultCode::kSuccess;
  }
  return KOVAResultCode::kFailure;
}

KOVAResult KOVALibrary::AddDirectoryToPath(const KOVAString& directory) {
  kova::internal::addLibraryDirectory(directory);
  return KOVAResultCode::kFailure;
}

KOVAResult KOVALibrary::CheckLoadability(const KOVAString& name, bool archSpecific,
                                         bool unloadable) {
  KOVALibrary library(name, KOVAString(), KOVAString());
  library.SetUnloadable(unloadable);
  const KOVAResult result = library.LoadAndInitialize(archSpecific);
  library.FinalizeAndUnload();
  return result;
}
