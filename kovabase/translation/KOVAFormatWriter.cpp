#include "kovabase/translation/KOVAFormatWriter.h"

#include "kovabase/translation/internal/Sections.h"

using namespace kova::internal;

KOVAFormatWriter::KOVAFormatWriter(const KOVAFileHandle& file) : _file(file) {}

KOVAFormatWriter::~KOVAFormatWriter() = default;

KOVASectionWriter* KOVAFormatWriter::GetNextHeaderSection() {
  return nextSection(_buffer, _headerSections, _headerCursor);
}

KOVASectionWriter* KOVAFormatWriter::GetNextFileInfoSection() {
  return nextSection(_buffer, _fileInfoSections, _fileInfoCursor);
}

KOVASectionWriter* KOVAFormatWriter::GetNextDataSection() {
  return nextSection(_buffer, _dataSections, _dataCursor);
}

KOVAResult KOVAFormatWriter::PreprocessData() { return KOVAResultCode::kNotImplemented; }

KOVAResult KOVAFormatWriter::ReleaseEntityWriters() { return KOVAResultCode::kNotImplemented; }

KOVAResult KOVAFormatWriter::Resolve() { return KOVAResultCode::kNotImplemented; }

KOVAResult KOVAFormatWriter::ResetBufferToPosition(unsigned long position) {
  return resetBuffer(_buffer, position);
}

KOVADynamicArray<KOVAEntityWriter*> KOVAFormatWriter::GetHeaderEntityList() {
  return entitiesOf<KOVAEntityWriter>(_headerSections);
}

KOVADynamicArray<KOVAEntityWriter*> KOVAFormatWriter::GetFileInfoEntityList() {
  return entitiesOf<KOVAEntityWriter>(_fileInfoSections);
}

KOVADynamicArray<KOVAEntityWriter*> KOVAFormatWriter::GetDataEntityList() {
  return entitiesOf<KOVAEntityWriter>(_dataSections);
}
