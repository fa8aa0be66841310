#include "kovabase/translation/KOVAReader.h"

#include "kovabase/translation/internal/Sections.h"

using namespace kova::internal;

namespace {

KOVAResult readEntity(KOVAEntityReader& entity) { return entity.Read(); }

}  // namespace

KOVAReader::KOVAReader(const KOVAFormatReaderHandle& formatReader) : _formatReader(formatReader) {}

KOVAReader::~KOVAReader() = default;

KOVAResult KOVAReader::ReadHeaderSection() {
  if (!_formatReader.IsValid()) return KOVAResultCode::kSuccess;
  return forEachEntity([this] { return _formatReader->GetNextHeaderSection(); }, readEntity);
}

KOVAResult KOVAReader::ReadFileInfoSection() {
  if (!_formatReader.IsValid()) return KOVAResultCode::kSuccess;
  return forEachEntity([this] { return _formatReader->GetNextFileInfoSection(); }, readEntity);
}

KOVAResult KOVAReader::ReadDataSection() {
  KOVAResult result = KOVAResultCode::kSuccess;
  if (!_formatReader.IsValid()) return result;
  result &= unlessNotImplemented(_formatReader->PreprocessData());
  while (KOVASectionReader* const section = _formatReader->GetNextDataSection()) {
    result &= section->PreProcess(_formatReader);
    result &= section->Read();
    result &= section->PostProcess();
  }
  return result;
}

KOVADynamicArray<KOVAEntityReader*> KOVAReader::GetHeaderEntityList() {
  if (!_formatReader.IsValid()) return {};
  return _formatReader->GetHeaderEntityList();
}

KOVADynamicArray<KOVAEntityReader*> KOVAReader::GetFileInfoEntityList() {
  if (!_formatReader.IsValid()) return {};
  return _formatReader->GetFileInfoEntityList();
}

KOVADynamicArray<KOVAEntityReader*> KOVAReader::GetDataEntityList() {
  if (!_formatReader.IsValid()) return {};
  return _formatReader->GetDataEntityList();
}

KOVAResult KOVAReader::Resolve() {
  return _formatReader.IsValid() ? _formatReader->Resolve()
                                 : KOVAResult(KOVAResultCode::kInvalidObject);
}

KOVAResult KOVAReader::ReleaseEntityReaders() {
  if (_formatReader.IsValid()) _formatReader->ReleaseEntityReaders();
  return KOVAResultCode::kSuccess;
}
