#pragma once

/// Marks what the shared library exports; everything else in it is hidden.
#define KOVABASE_API __attribute__((visibility("default")))

/// Lets the compiler check a printf-style format against its arguments. Positions count from 1
/// and include the hidden `this` of a member function.
#define KOVABASE_PRINTF(formatPosition, firstArgument) \
  __attribute__((format(printf, formatPosition, firstArgument)))
