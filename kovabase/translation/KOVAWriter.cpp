#include "kovabase/translation/KOVAWriter.h"

#include "kovabase/translation/internal/Sections.h"

using namespace kova::internal;

namespace {

KOVAResult writeEntity(KOVAEntityWriter& entity) { return entity.Write(); }

}  // namespace

KOVAWriter::KOVAWriter(const KOVAFormatWriterHandle& formatWriter) : _formatWriter(formatWriter) {}

KOVAWriter::~KOVAWriter() = default;

KOVAResult KOVAWriter::WriteHeaderSection() {
  if (!_formatWriter.IsValid()) return KOVAResultCode::kSuccess;
  return forEachEntity([this] { return _formatWriter->GetNextHeaderSection(); }, writeEntity);
}

KOVAResult KOVAWriter::WriteFileInfoSection() {
  if (!_formatWriter.IsValid()) return KOVAResultCode::kSuccess;
  return forEachEntity([this] { return _formatWriter->GetNextFileInfoSection(); }, writeEntity);
}

KOVAResult KOVAWriter::WriteDataSection() {
  KOVAResult result = KOVAResultCode::kSuccess;
  if (!_formatWriter.IsValid()) return result;
  result &= unlessNotImplemented(_formatWriter->PreprocessData());
  while (KOVASectionWriter* const section = _formatWriter->GetNextDataSection()) {
    result &= section->PreProcess(_formatWriter);
    result &= section->Write();
    result &= section->PostProcess();
  }
  return result;
}

KOVADynamicArray<KOVAEntityWriter*> KOVAWriter::GetHeaderEntityList() {
  if (!_formatWriter.IsValid()) return {};
  return _formatWriter->GetHeaderEntityList();
}

KOVADynamicArray<KOVAEntityWriter*> KOVAWriter::GetFileInfoEntityList() {
  if (!_formatWriter.IsValid()) return {};
  return _formatWriter->GetFileInfoEntityList();
}

KOVADynamicArray<KOVAEntityWriter*> KOVAWriter::GetDataEntityList() {
  if (!_formatWriter.IsValid()) return {};
  return _formatWriter->GetDataEntityList();
}

KOVAResult KOVAWriter::Resolve() {
  return _formatWriter.IsValid() ? _formatWriter->Resolve()
                                 : KOVAResult(KOVAResultCode::kInvalidObject);
}

KOVAResult KOVAWriter::ReleaseEntityWriters() {
  if (_formatWriter.IsValid()) _formatWriter->ReleaseEntityWriters();
  return KOVAResultCode::kSuccess;
}
