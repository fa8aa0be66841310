#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"

/// The data that a translator reads or writes, with a position in it; what the reader frame knows
/// of a buffer. Counted; one thread at a time.
class KOVABASE_API KOVABuffer : public KOVAReferenceCount {
 public:
  ~KOVABuffer() override;

  /// Where the next read or write takes place, in bytes from the beginning.
  virtual long GetOffset() const = 0;
  /// Moves there; the end of the data, `GetSize`, is allowed.
  /// @return Failure, with the offset unchanged and an error event, for any other place.
  virtual KOVAResult SetOffset(long offset) = 0;
  /// The size of the data in bytes.
  virtual long GetSize() const = 0;

  /// Copies `count` bytes from `offset` on, which leaves the position alone.
  /// @return Failure, nothing touched, for null or a negative count; InvalidArgument when not all
  ///   of them lie in the data; the failure of the read.
  virtual KOVAResult PeekBytes(long offset, int count, unsigned char* destination) = 0;
};

using KOVABufferHandle = KOVATypedHandle<KOVABuffer>;
