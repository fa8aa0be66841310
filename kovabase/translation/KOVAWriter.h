#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/translation/KOVAFormatWriter.h"

/// The driver's face of a format writer. One pass calls WriteHeaderSection, WriteFileInfoSection
/// and WriteDataSection, takes the entity lists, and ends with Resolve and ReleaseEntityWriters.
///
/// Every section's steps are run whatever the others gave; the results are combined by `&=`. Over
/// an empty handle, and without a buffer, the write steps do nothing and succeed.
class KOVABASE_API KOVAWriter : public KOVAReferenceCount {
 public:
  explicit KOVAWriter(const KOVAFormatWriterHandle& formatWriter);
  ~KOVAWriter() override;

  /// Writes every entity of every section of the kind.
  KOVAResult WriteHeaderSection();
  KOVAResult WriteFileInfoSection();
  /// Preprocesses the data, then runs each section's PreProcess, Write and PostProcess.
  KOVAResult WriteDataSection();

  /// Empty over an empty handle. Owned by their sections.
  KOVADynamicArray<KOVAEntityWriter*> GetHeaderEntityList();
  KOVADynamicArray<KOVAEntityWriter*> GetFileInfoEntityList();
  KOVADynamicArray<KOVAEntityWriter*> GetDataEntityList();

  /// The format writer's answer; NotImplemented from one that does not supply it, InvalidObject
  /// over an empty handle.
  KOVAResult Resolve();
  /// @return Success, always.
  KOVAResult ReleaseEntityWriters();

 private:
  KOVAFormatWriterHandle _formatWriter;
};
