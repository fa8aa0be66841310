#pragma once

/// The processor below the threads.
namespace kova::platform {

/// Tells the processor that this thread is only waiting for another one, for some ten to a hundred
/// cycles.
void relaxProcessor() noexcept;

}  // namespace kova::platform
