#include "kovabase/translation/KOVASectionWriter.h"

KOVASectionWriter::KOVASectionWriter() = default;

KOVASectionWriter::~KOVASectionWriter() = default;

KOVAResult KOVASectionWriter::PreProcess(KOVAFormatWriter*) { return KOVAResultCode::kSuccess; }

KOVAResult KOVASectionWriter::Write() {
  KOVAResult result = KOVAResultCode::kSuccess;
  while (KOVAEntityWriter* const entity = GetNextKey()) result &= entity->Write();
  return result;
}

KOVAResult KOVASectionWriter::PostProcess() { return KOVAResultCode::kSuccess; }

KOVAEntityWriter* KOVASectionWriter::GetNextKey() {
  return _cursor < _entities.size() ? static_cast<KOVAEntityWriter*>(_entities[_cursor++])
                                    : nullptr;
}

KOVADynamicArray<KOVAEntityWriter*> KOVASectionWriter::GetEntityList() {
  KOVADynamicArray<KOVAEntityWriter*> list;
  for (const KOVAEntityWriterHandle& entity : _entities) list.add(entity);
  return list;
}

void KOVASectionWriter::ReleaseEntityWriters() {
  _entities.clear();
  _cursor = 0;
}

void KOVASectionWriter::AddEntityWriter(KOVAEntityWriter* writer) {
  if (writer != nullptr) _entities.add(writer);
}
