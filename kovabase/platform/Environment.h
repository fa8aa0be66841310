#pragma once

#include <string>
#include <vector>

/// The environment of the process. One private lock orders all of these functions, so that they may
/// be called from any thread; it does not protect against other code that calls `setenv` itself.
/// Names are taken as they are and must be neither empty nor contain '='.
namespace kova::platform {

/// @param name  zero-terminated, not null.
/// @param value  receives a copy of the variable's bytes when it is set, otherwise untouched.
/// @return whether the variable is set, if only to the empty text.
bool readVariable(const char* name, std::string& value);

/// Sets or replaces the variable; an empty value is kept as an empty variable.
/// @return false, with nothing changed, when the system refuses the name or has no memory.
bool writeVariable(const char* name, const char* value) noexcept;

/// @return false when the system refuses the name; true also when no such variable was set.
bool removeVariable(const char* name) noexcept;

/// The entries of the environment block ("NAME=value") in block order.
std::vector<std::string> environmentBlock();

}  // namespace kova::platform
