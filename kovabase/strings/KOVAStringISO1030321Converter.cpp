#include "kovabase/strings/KOVAStringISO1030321Converter.h"

#include "kovabase/strings/internal/CharBuffer.h"

#include <cstring>

using namespace kova::internal;

KOVAStringISO1030321Converter::~KOVAStringISO1030321Converter() { ReleaseUSAsciiString(); }

void KOVAStringISO1030321Converter::ReleaseUSAsciiString() noexcept {
  release(_usAsciiString);
  _usAsciiString = nullptr;
}

void KOVAStringISO1030321Converter::ResetUSAsciiString(const char* text) {
  CharBuffer<char> copy;
  if (text != nullptr) {
    const std::size_t bytes = std::strlen(text) + 1;
    copy = makeCharBuffer<char>(bytes);
    std::memcpy(copy.get(), text, bytes);
  }
  ReleaseUSAsciiString();
  _usAsciiString = copy.release();
}
