#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/KOVAFile.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVABuffer.h"
#include "kovabase/translation/KOVASectionWriter.h"

/// Owns the sections of one file to be written and hands them out once each, in the order in which
/// they were added. A translator derives one for its format: it opens the file into `_buffer` and
/// fills the sections, at construction or as it goes. Used for one pass.
class KOVABASE_API KOVAFormatWriter : public KOVAReferenceCount {
 public:
  /// Keeps the file; opens nothing.
  explicit KOVAFormatWriter(const KOVAFileHandle& file);
  ~KOVAFormatWriter() override;

  /// The next section of its kind; null when there is no buffer, at the end and ever after.
  virtual KOVASectionWriter* GetNextHeaderSection();
  virtual KOVASectionWriter* GetNextFileInfoSection();
  virtual KOVASectionWriter* GetNextDataSection();

  /// Steps that a format supplies if it has them: before the first data section, to let go of the
  /// entity writers, and to settle references between entities. @return NotImplemented, which a
  /// driver takes as nothing to do.
  virtual KOVAResult PreprocessData();
  virtual KOVAResult ReleaseEntityWriters();
  virtual KOVAResult Resolve();

  /// Moves the buffer to a position in bytes.
  /// @return the buffer's result; InvalidObject when there is no buffer.
  virtual KOVAResult ResetBufferToPosition(unsigned long position);

  /// The entity writers of all sections of a kind, in the order of the sections. Does not look at
  /// the buffer and moves nothing. Owned by their sections.
  KOVADynamicArray<KOVAEntityWriter*> GetHeaderEntityList();
  KOVADynamicArray<KOVAEntityWriter*> GetFileInfoEntityList();
  KOVADynamicArray<KOVAEntityWriter*> GetDataEntityList();

 protected:
  KOVABufferHandle GetBuffer() const { return _buffer; }

  KOVAFileHandle _file;
  /// Empty until the derived class has opened the file.
  KOVABufferHandle _buffer;
  /// Sections are held from the moment that they are added, as `_dataSections.add(section)`.
  KOVADynamicArray<KOVASectionWriterHandle> _headerSections;
  KOVADynamicArray<KOVASectionWriterHandle> _fileInfoSections;
  KOVADynamicArray<KOVASectionWriterHandle> _dataSections;

 private:
  int _headerCursor = 0;
  int _fileInfoCursor = 0;
  int _dataCursor = 0;
};

using KOVAFormatWriterHandle = KOVATypedHandle<KOVAFormatWriter>;
