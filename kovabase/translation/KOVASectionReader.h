#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/translation/KOVAEntityReader.h"

class KOVAFormatReader;

/// One section of a file, with the entity readers of its records. A translator derives one for each
/// kind of section and fills it with `AddEntityReader`.
class KOVABASE_API KOVASectionReader : public KOVAReferenceCount {
 public:
  KOVASectionReader();
  ~KOVASectionReader() override;

  /// The steps of a data section, in this order; the format reader that owns the section is handed
  /// to the first. @return Success.
  virtual KOVAResult PreProcess(KOVAFormatReader* formatReader);
  /// Reads every entity that `GetNextKey` still hands out. @return their results, combined by `&=`.
  virtual KOVAResult Read();
  virtual KOVAResult PostProcess();

  /// The next entity reader, each once; null at the end and ever after. Owned by the section.
  virtual KOVAEntityReader* GetNextKey();

  /// All entity readers; does not move what `GetNextKey` hands out. Owned by the section.
  virtual KOVADynamicArray<KOVAEntityReader*> GetEntityList();

  /// Lets go of the entity readers.
  void ReleaseEntityReaders();

 protected:
  /// Holds the reader from here on; ignores null.
  void AddEntityReader(KOVAEntityReader* reader);

 private:
  KOVADynamicArray<KOVAEntityReaderHandle> _entities;
  int _cursor = 0;
};

using KOVASectionReaderHandle = KOVATypedHandle<KOVASectionReader>;
