#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVAOutputStream.h"

#include <cstddef>

/// A growing block of bytes in memory that is written at its end and read back from a position of
/// its own, at first 0. Shared through `KOVAMemStreamHandle`; one thread at a time. Memory
/// exhausted throws KOVAAllocException, with the bytes intact.
class KOVABASE_API KOVAMemStream : public KOVAReferenceCount, public KOVAOutputStream {
 public:
  KOVAMemStream() = default;
  ~KOVAMemStream() override;

  /// "KOVAMemStream".
  const char* GetName() override;

  /// Copies the next bytes to `bytes`, which has room for `count`, and moves the position.
  /// @return the bytes copied: fewer than `count` only at the end; 0 for a null target.
  std::size_t Read(void* bytes, std::size_t count);

  /// The offset of the next byte to read.
  std::size_t GetPosition() const { return _position; }
  /// @return Success; InvalidArgument, with the position as it was, beyond `GetByteCount`.
  KOVAResult SetPosition(std::size_t position);

  /// All bytes from the first on; null while there are none. Valid until the next write or `Clear`.
  const char* GetBytes() const { return _begin; }
  std::size_t GetByteCount() const { return static_cast<std::size_t>(GetPut() - _begin); }

  /// Drops all bytes and sets the position to 0; the memory is kept for the next.
  void Clear();

 protected:
  KOVAResult WriteBytes(const char* bytes, std::size_t count) override;

 private:
  char* _begin = nullptr;
  std::size_t _capacity = 0;
  std::size_t _position = 0;
};

using KOVAMemStreamHandle = KOVATypedHandle<KOVAMemStream>;
