#include "kovabase/translation/KOVASectionReader.h"

KOVASectionReader::KOVASectionReader() = default;

KOVASectionReader::~KOVASectionReader() = default;

KOVAResult KOVASectionReader::PreProcess(KOVAFormatReader*) { return KOVAResultCode::kSuccess; }

KOVAResult KOVASectionReader::Read() {
  KOVAResult result = KOVAResultCode::kSuccess;
  while (KOVAEntityReader* const entity = GetNextKey()) result &= entity->Read();
  return result;
}

KOVAResult KOVASectionReader::PostProcess() { return KOVAResultCode::kSuccess; }

KOVAEntityReader* KOVASectionReader::GetNextKey() {
  return _cursor < _entities.size() ? static_cast<KOVAEntityReader*>(_entities[_cursor++])
                                    : nullptr;
}

KOVADynamicArray<KOVAEntityReader*> KOVASectionReader::GetEntityList() {
  KOVADynamicArray<KOVAEntityReader*> list;
  for (const KOVAEntityReaderHandle& entity : _entities) list.add(entity);
  return list;
}

void KOVASectionReader::ReleaseEntityReaders() {
  _entities.clear();
  _cursor = 0;
}

void KOVASectionReader::AddEntityReader(KOVAEntityReader* reader) {
  if (reader != nullptr) _entities.add(reader);
}
