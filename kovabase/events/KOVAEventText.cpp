#include "kovabase/events/KOVAEventText.h"

#include "kovabase/events/internal/ChunkMemory.h"

#include <cstring>
#include <utility>

namespace {

const char* copyText(const char* text, std::size_t length) {
  char* const copy = static_cast<char*>(kova::internal::allocateBlock(length + 1));
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

}  // namespace

KOVAEventText::KOVAEventText(const char* text) {
  if (text != nullptr) *this = KOVAEventText(text, std::strlen(text));
}

KOVAEventText::KOVAEventText(const char* text, std::size_t length)
    : KOVAEventText(length != 0 ? copyText(text, length) : "", length,
                    length != 0 ? Kind::kOwned : Kind::kStatic) {}

void KOVAEventText::Own() {
  const std::size_t length = GetLength();
  _text = copyText(_text, length);
  _lengthAndKind = Pack(length, Kind::kOwned);
}

KOVAEventText& KOVAEventText::operator=(KOVAEventText other) noexcept {
  std::swap(_text, other._text);
  std::swap(_lengthAndKind, other._lengthAndKind);
  return *this;
}

void KOVAEventText::Release() noexcept {
  kova::internal::freeBlock(const_cast<char*>(_text), GetLength() + 1);
}
