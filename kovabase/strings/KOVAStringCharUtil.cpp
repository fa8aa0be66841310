#include "kovabase/strings/KOVAStringCharUtil.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/internal/CharBuffer.h"

using namespace kova::internal;

KOVAStringCharUtil::~KOVAStringCharUtil() = default;

KOVAStringAsciiCharUtil::KOVAStringAsciiCharUtil(const KOVAString& text, bool useSubstitute,
                                                 char substitute) {
  const int size = text.getConvertToMBCSSize("US-ASCII");
  if (size < 1) return;
  auto buffer = makeCharBuffer<char>(static_cast<std::size_t>(size));
  if (text.convertToMBCS(buffer.get(), size, "US-ASCII", useSubstitute, substitute).IsSuccess()) {
    _buffer = buffer.release();
  }
}

KOVAStringAsciiCharUtil::~KOVAStringAsciiCharUtil() { release(_buffer); }

KOVAStringUnicodeWCharUtil::KOVAStringUnicodeWCharUtil(const KOVAString& text) {
  const int size = text.getConvertToWideCharacterSize();
  if (size < 1) return;
  auto buffer = makeCharBuffer<unsigned short>(static_cast<std::size_t>(size));
  if (text.convertToWideCharacter(buffer.get(), size).IsSuccess()) _buffer = buffer.release();
}

KOVAStringUnicodeWCharUtil::~KOVAStringUnicodeWCharUtil() { release(_buffer); }
