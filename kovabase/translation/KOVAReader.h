#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/translation/KOVAFormatReader.h"

/// The driver's face of a format reader. One pass calls ReadHeaderSection, ReadFileInfoSection and
/// ReadDataSection, takes the entity lists, and ends with Resolve and ReleaseEntityReaders.
///
/// Every section's steps are run whatever the others gave; the results are combined by `&=`. Over
/// an empty handle, and without a buffer, the read steps do nothing and succeed.
class KOVABASE_API KOVAReader : public KOVAReferenceCount {
 public:
  explicit KOVAReader(const KOVAFormatReaderHandle& formatReader);
  ~KOVAReader() override;

  /// Reads every entity of every section of the kind.
  KOVAResult ReadHeaderSection();
  KOVAResult ReadFileInfoSection();
  /// Preprocesses the data, then runs each section's PreProcess, Read and PostProcess.
  KOVAResult ReadDataSection();

  /// Empty over an empty handle. Owned by their sections.
  KOVADynamicArray<KOVAEntityReader*> GetHeaderEntityList();
  KOVADynamicArray<KOVAEntityReader*> GetFileInfoEntityList();
  KOVADynamicArray<KOVAEntityReader*> GetDataEntityList();

  /// The format reader's answer; NotImplemented from one that does not supply it, InvalidObject
  /// over an empty handle.
  KOVAResult Resolve();
  /// @return Success, always.
  KOVAResult ReleaseEntityReaders();

 private:
  KOVAFormatReaderHandle _formatReader;
};
