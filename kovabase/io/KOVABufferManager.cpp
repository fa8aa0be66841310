#include "kovabase/io/KOVABufferManager.h"

#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/foundation/KOVAAllocException.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

KOVABufferManager::KOVABufferManager() = default;

KOVABufferManager::~KOVABufferManager() = default;

KOVAResult KOVABufferManager::MoveWindowTo(long position, const char* message) {
  if (IsPointerPositionValid(position)) return KOVAResultCode::kSuccess;
  const KOVAResult moved = AdvancePointerPosition(position);
  if (moved.IsFailure()) {
    KOVAErrorEvent::Fire("%s", message);
    throw Gk_Exception("End of Buffer.", moved);
  }
  const KOVAResult filled = FillBuffer();
  // The data has become shorter than it was, or cannot be read any more.
  if (filled.IsFailure()) KOVAErrorEvent::Fire("%s", message);
  return filled;
}

KOVAResult KOVABufferManager::CopyBytes(long offset, int count, unsigned char* destination,
                                        const char* message) {
  if (destination == nullptr || count < 0) return KOVAResultCode::kFailure;
  while (count > 0) {
    const KOVAResult moved = MoveWindowTo(offset, message);
    if (moved.IsFailure()) return moved;
    const int there = static_cast<int>(std::min<long>(count, _windowEnd - offset));
    std::memcpy(destination, _window + (offset - _windowStart), static_cast<std::size_t>(there));
    destination += there;
    offset += there;
    count -= there;
  }
  return KOVAResultCode::kSuccess;
}

KOVAResult KOVABufferManager::AllocateWindow(const char* sizeMessage, const char* memoryMessage) {
  if (_bufferSize == 0) {
    std::fputs(sizeMessage, stdout);
    return KOVAResultCode::kWindowSizeUndefined;
  }
  // What the window held is read again; a new size may not have room for it.
  _windowEnd = _windowStart;
  try {
    _bytes.resize(static_cast<int>(std::min<std::uint32_t>(_bufferSize, INT_MAX)));
  } catch (const KOVAAllocException&) {
    _bytes.clear();
    _window = nullptr;
    std::fputs(memoryMessage, stdout);
    return KOVAResultCode::kWindowNotAllocated;
  }
  _window = _bytes.getArray();
  return KOVAResultCode::kSuccess;
}
