#pragma once

#include <string>

/// Loading of shared libraries: thin functions over the system's dynamic loader.
namespace kova::platform {

/// Loads the library with all its symbols resolved and visible to nobody else.
/// @param path  UTF-8; a name without a separator is looked for by the loader's own rules.
/// @param error  receives the loader's own reason on failure, otherwise untouched.
/// @param systemError  receives the system's last error number on failure, 0 when there was none.
/// @return the module, or null.
void* openModule(const std::string& path, std::string& error, int* systemError = nullptr);

/// @return the address of the exported symbol, or null when the module has none of that name.
void* findSymbol(void* module, const std::string& name);

/// Gives the module back; the loader unmaps it when nobody else holds it. Ignores null.
void closeModule(void* module);

}  // namespace kova::platform
