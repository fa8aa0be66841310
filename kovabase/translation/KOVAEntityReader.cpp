#include "kovabase/translation/KOVAEntityReader.h"

#include <algorithm>

namespace {

constexpr int kRowBytes = 16;

void dumpRow(long offset, const unsigned char* bytes, int count, std::FILE* stream) {
  char row[3 * kRowBytes + 1];
  char characters[kRowBytes + 1];
  for (int i = 0; i < kRowBytes; ++i) {
    const unsigned byte = i < count ? bytes[i] : 0;
    std::snprintf(row + 3 * i, 4, i < count ? " %02X" : "   ", byte);
    characters[i] = byte >= 32 && byte < 127 ? static_cast<char>(byte) : '.';
  }
  characters[count] = '\0';
  std::fprintf(stream, "%08lX %s  %s\n", static_cast<unsigned long>(offset), row, characters);
}

}  // namespace

KOVAEntityReader::KOVAEntityReader(const KOVABufferHandle& buffer) : _buffer(buffer) {}

KOVAEntityReader::~KOVAEntityReader() = default;

KOVAResult KOVAEntityReader::Proprocess(KOVASectionReader*) { return KOVAResultCode::kSuccess; }

KOVAResult KOVAEntityReader::GetEntityId(int&) { return KOVAResultCode::kSuccess; }

KOVAString KOVAEntityReader::GetEntityType() { return KOVAString(); }

bool KOVAEntityReader::IsEntityRoot() const { return false; }

void KOVAEntityReader::DumpData(unsigned int bytes, std::FILE* stream) {
  if (stream == nullptr || !_buffer.IsValid()) return;
  const long begin = _buffer->GetOffset();
  const long end = std::min(_buffer->GetSize(), begin + static_cast<long>(bytes));
  for (long offset = begin; offset < end; offset += kRowBytes) {
    unsigned char row[kRowBytes];
    const int count = static_cast<int>(std::min<long>(kRowBytes, end - offset));
    if (_buffer->PeekBytes(offset, count, row).IsFailure()) return;
    dumpRow(offset, row, count, stream);
  }
}
