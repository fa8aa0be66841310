#include "kovabase/translation/KOVAFormatReader.h"

#include "kovabase/translation/internal/Sections.h"

using namespace kova::internal;

KOVAFormatReader::KOVAFormatReader(const KOVAFileHandle& file) : _file(file) {}

KOVAFormatReader::~KOVAFormatReader() = default;

KOVASectionReader* KOVAFormatReader::GetNextHeaderSection() {
  return nextSection(_buffer, _headerSections, _headerCursor);
}

KOVASectionReader* KOVAFormatReader::GetNextFileInfoSection() {
  return nextSection(_buffer, _fileInfoSections, _fileInfoCursor);
}

KOVASectionReader* KOVAFormatReader::GetNextDataSection() {
  return nextSection(_buffer, _dataSections, _dataCursor);
}

KOVAResult KOVAFormatReader::PreprocessData() { return KOVAResultCode::kNotImplemented; }

KOVAResult KOVAFormatReader::ReleaseEntityReaders() { return KOVAResultCode::kNotImplemented; }

KOVAResult KOVAFormatReader::Resolve() { return KOVAResultCode::kNotImplemented; }

KOVAResult KOVAFormatReader::ResetBufferToPosition(unsigned long position) {
  return resetBuffer(_buffer, position);
}

KOVADynamicArray<KOVAEntityReader*> KOVAFormatReader::GetHeaderEntityList() {
  return entitiesOf<KOVAEntityReader>(_headerSections);
}

KOVADynamicArray<KOVAEntityReader*> KOVAFormatReader::GetFileInfoEntityList() {
  return entitiesOf<KOVAEntityReader>(_fileInfoSections);
}

KOVADynamicArray<KOVAEntityReader*> KOVAFormatReader::GetDataEntityList() {
  return entitiesOf<KOVAEntityReader>(_dataSections);
}
