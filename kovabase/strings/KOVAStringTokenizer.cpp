#include "kovabase/strings/KOVAStringTokenizer.h"

#include <algorithm>

KOVAStringTokenizer::KOVAStringTokenizer(const KOVAString& text, unsigned short delimiter) {
  if (text.length() == 0) return;
  const unsigned short* start = text.getUnits();
  const unsigned short* const end = start + text.length();
  while (true) {
    const unsigned short* const tokenEnd = std::find(start, end, delimiter);
    _tokens.add(KOVAString::fromUnits(start, static_cast<int>(tokenEnd - start)));
    if (tokenEnd == end) return;
    start = tokenEnd + 1;
  }
}

KOVAStringTokenizer::KOVAStringTokenizer(const char* text, unsigned short delimiter)
    : KOVAStringTokenizer(KOVAString(text), delimiter) {}

KOVAStringTokenizer::~KOVAStringTokenizer() = default;

int KOVAStringTokenizer::GetTokenCount() const noexcept { return _tokens.size(); }

KOVAResult KOVAStringTokenizer::GetToken(int index, KOVAString& token) const {
  if (index < 0 || index >= _tokens.size()) return KOVAResultCode::kFailure;
  token = _tokens[index];
  return KOVAResultCode::kSuccess;
}
