#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/translation/KOVAEntityWriter.h"

class KOVAFormatWriter;

/// One section of a file, with the entity writers of its records. A translator derives one for each
/// kind of section and fills it with `AddEntityWriter`.
class KOVABASE_API KOVASectionWriter : public KOVAReferenceCount {
 public:
  KOVASectionWriter();
  ~KOVASectionWriter() override;

  /// The steps of a data section, in this order; the format writer that owns the section is handed
  /// to the first. @return Success.
  virtual KOVAResult PreProcess(KOVAFormatWriter* formatWriter);
  /// Writes every entity that `GetNextKey` still hands out. @return their results, combined by
  /// `&=`.
  virtual KOVAResult Write();
  virtual KOVAResult PostProcess();

  /// The next entity writer, each once; null at the end and ever after. Owned by the section.
  virtual KOVAEntityWriter* GetNextKey();

  /// All entity writers; does not move what `GetNextKey` hands out. Owned by the section.
  virtual KOVADynamicArray<KOVAEntityWriter*> GetEntityList();

  /// Lets go of the entity writers.
  void ReleaseEntityWriters();

 protected:
  /// Holds the writer from here on; ignores null.
  void AddEntityWriter(KOVAEntityWriter* writer);

 private:
  KOVADynamicArray<KOVAEntityWriterHandle> _entities;
  int _cursor = 0;
};

using KOVASectionWriterHandle = KOVATypedHandle<KOVASectionWriter>;
