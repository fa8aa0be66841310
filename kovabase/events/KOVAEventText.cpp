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

KOVAEventText::KOVAEventText(const KOVAEventText& other)
    : KOVAEventText(other._text, other._length, other._kind) {
  if (_kind == Kind::kStatic) return;
  // Static until there is a copy to release: an allocation may fail.
  _kind = Kind::kStatic;
  _text = copyText(other._text, _length);
  _kind = Kind::kOwned;
}

KOVAEventText& KOVAEventText::operator=(KOVAEventText other) noexcept {
  std::swap(_text, other._text);
  std::swap(_length, other._length);
  std::swap(_kind, other._kind);
  return *this;
}

void KOVAEventText::Release() noexcept {
  kova::internal::freeBlock(const_cast<char*>(_text), _length + 1);
}
