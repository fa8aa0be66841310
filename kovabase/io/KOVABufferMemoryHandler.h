#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVABufferManager.h"

/// A window over a block of memory, which it covers whole and does not copy: the block stays the
/// caller's and must outlive the handler.
class KOVABASE_API KOVABufferMemoryHandler : public KOVABufferManager {
 public:
  /// A null or empty block, and one of 4 GiB or more, is not valid: nothing can be read.
  KOVABufferMemoryHandler(unsigned char* block, unsigned long bytes);
  ~KOVABufferMemoryHandler() override;

  KOVAResult AllocateBuffer() override;
  KOVAResult FillBuffer() override;
  KOVAResult GetByte(long position, unsigned char& byte) override;
  KOVAResult GetBytes(long offset, int count, unsigned char* destination) override;
  KOVAResult AdvancePointerPosition(long position) override;
  bool IsBufferValid() const override;

 private:
  unsigned char* _block;
};

using KOVABufferMemoryHandlerHandle = KOVATypedHandle<KOVABufferMemoryHandler>;
