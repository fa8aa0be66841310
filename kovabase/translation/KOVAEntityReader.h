#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVABuffer.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdio>

class KOVASectionReader;

/// Reads one record of a file. A translator derives one for each kind of record; the section that
/// makes it holds it until the entity readers are released.
class KOVABASE_API KOVAEntityReader : public KOVAReferenceCount {
 public:
  /// @param buffer  what is read from; may be empty.
  explicit KOVAEntityReader(const KOVABufferHandle& buffer);
  ~KOVAEntityReader() override;

  /// Reads the record.
  virtual KOVAResult Read() = 0;

  /// For what a record needs of its section, before or after it is read; called by the translator's
  /// own section. Spelled so, and kept. @return Success.
  virtual KOVAResult Proprocess(KOVASectionReader* section);

  /// @return Success, with `id` untouched: a record without an identifier.
  virtual KOVAResult GetEntityId(int& id);
  /// The empty text unless a derived class says otherwise.
  virtual KOVAString GetEntityType();
  /// Whether the record is one from which the model is walked. False here.
  virtual bool IsEntityRoot() const;

  /// Writes the next `bytes` bytes of the buffer, fewer where it ends, as lines of an offset,
  /// sixteen hexadecimal bytes and their characters. The position stays. Ignores a null stream.
  virtual void DumpData(unsigned int bytes, std::FILE* stream);

 protected:
  KOVABufferHandle GetBuffer() const { return _buffer; }

 private:
  KOVABufferHandle _buffer;
};

using KOVAEntityReaderHandle = KOVATypedHandle<KOVAEntityReader>;
