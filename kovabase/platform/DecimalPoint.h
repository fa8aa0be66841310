#pragma once

/// How `printf` writes numbers on this thread.
namespace kova::platform {

/// Whether the calling thread's locale separates decimals with ".".
bool isDecimalPointPlain() noexcept;

}  // namespace kova::platform
