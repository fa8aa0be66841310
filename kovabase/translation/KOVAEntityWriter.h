#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVABuffer.h"

class KOVASectionWriter;

/// Writes one record of a file. A translator derives one for each kind of record; the section that
/// makes it holds it until the entity writers are released.
class KOVABASE_API KOVAEntityWriter : public KOVAReferenceCount {
 public:
  /// @param buffer  what is written to; may be empty.
  explicit KOVAEntityWriter(const KOVABufferHandle& buffer);
  ~KOVAEntityWriter() override;

  /// Writes the record.
  virtual KOVAResult Write() = 0;

  /// For what a record needs of its section; called by the translator's own section. Spelled as its
  /// reading counterpart. @return Success.
  virtual KOVAResult Proprocess(KOVASectionWriter* section);

 protected:
  KOVABufferHandle GetBuffer() const { return _buffer; }

 private:
  KOVABufferHandle _buffer;
};

using KOVAEntityWriterHandle = KOVATypedHandle<KOVAEntityWriter>;
