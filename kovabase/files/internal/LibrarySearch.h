#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// How shared libraries are called here, and where they are looked for. Any thread.
namespace kova::internal {

inline constexpr const char* kLibraryPrefix = "lib";
inline constexpr const char* kLibraryExtension = ".so";

/// Whether the name is a path, which is taken as it is.
bool isLibraryPath(const KOVAString& name);

/// Adds a directory, behind those that were added before; a relative one is meant from the present
/// working directory. Ignores the empty text and what is there already.
void addLibraryDirectory(const KOVAString& directory);

/// The directories of the search-path variable in their order, without empty entries.
/// @return what the look-up of the variable gave.
KOVAResult searchPathDirectories(KOVADynamicArray<KOVAFilePath>& directories);

/// The places where a file with a bare name may be, in the order in which they are tried: the added
/// directories, then the absolute ones of the search path.
KOVADynamicArray<KOVAFilePath> libraryPlaces(const KOVAString& fileName);

}  // namespace kova::internal
