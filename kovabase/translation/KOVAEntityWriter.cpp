#include "kovabase/translation/KOVAEntityWriter.h"

KOVAEntityWriter::KOVAEntityWriter(const KOVABufferHandle& buffer) : _buffer(buffer) {}

KOVAEntityWriter::~KOVAEntityWriter() = default;

KOVAResult KOVAEntityWriter::Proprocess(KOVASectionWriter*) { return KOVAResultCode::kSuccess; }
