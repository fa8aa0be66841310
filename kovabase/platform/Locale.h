#pragma once

/// Number texts that do not depend on the process's locale.
namespace kova::platform {

/// `strtod` in the "C" locale: leading white space, a sign, decimal and hexadecimal numbers,
/// "inf" and "nan".
/// @param text  zero-terminated, not null.
/// @param end  receives the first character after the number, `text` when there is none.
/// @return 0.0 when there is no number, plus or minus infinity when it is too large.
double readDouble(const char* text, const char*& end) noexcept;

/// Gives the calling thread a locale whose numeric category is "C"; the other categories stay.
/// @return what `popNumericLocale` takes back, or null when the system has no memory for it and
///   nothing has changed.
void* pushCNumericLocale() noexcept;

/// Puts back the locale of the calling thread from before the push. Pushes of one thread end in
/// reverse order, on that thread. Ignores null.
void popNumericLocale(void* pushed) noexcept;

}  // namespace kova::platform
