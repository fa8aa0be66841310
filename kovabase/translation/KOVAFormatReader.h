#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/KOVAFile.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"
#include "kovabase/foundation/KOVAReferenceHandle.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVABuffer.h"
#include "kovabase/translation/KOVASectionReader.h"

/// Owns the sections of one file and hands them out once each, in the order in which they were
/// added. A translator derives one for its format: it opens the file into `_buffer` and fills the
/// sections, at construction or as it goes. Used for one pass.
class KOVABASE_API KOVAFormatReader : public KOVAReferenceCount {
 public:
  /// Keeps the file; opens nothing.
  explicit KOVAFormatReader(const KOVAFileHandle& file);
  ~KOVAFormatReader() override;

  /// The next section of its kind; null when there is no buffer, at the end and ever after.
  virtual KOVASectionReader* GetNextHeaderSection();
  virtual KOVASectionReader* GetNextFileInfoSection();
  virtual KOVASectionReader* GetNextDataSection();

  /// Steps that a format supplies if it has them: before the first data section, to let go of the
  /// entity readers, and to settle references between entities. @return NotImplemented, which a
  /// driver takes as nothing to do.
  virtual KOVAResult PreprocessData();
  virtual KOVAResult ReleaseEntityReaders();
  virtual KOVAResult Resolve();

  /// Moves the buffer to a position in bytes.
  /// @return the buffer's result; InvalidObject when there is no buffer.
  virtual KOVAResult ResetBufferToPosition(unsigned long position);

  /// The entity readers of all sections of a kind, in the order of the sections. Does not look at
  /// the buffer and moves nothing. Owned by their sections.
  KOVADynamicArray<KOVAEntityReader*> GetHeaderEntityList();
  KOVADynamicArray<KOVAEntityReader*> GetFileInfoEntityList();
  KOVADynamicArray<KOVAEntityReader*> GetDataEntityList();

 protected:
  KOVABufferHandle GetBuffer() const { return _buffer; }

  KOVAFileHandle _file;
  /// Empty until the derived class has opened the file.
  KOVABufferHandle _buffer;
  /// Sections are held from the moment that they are added, as `_dataSections.add(section)`.
  KOVADynamicArray<KOVASectionReaderHandle> _headerSections;
  KOVADynamicArray<KOVASectionReaderHandle> _fileInfoSections;
  KOVADynamicArray<KOVASectionReaderHandle> _dataSections;

 private:
  int _headerCursor = 0;
  int _fileInfoCursor = 0;
  int _dataCursor = 0;
};

using KOVAFormatReaderHandle = KOVATypedHandle<KOVAFormatReader>;
