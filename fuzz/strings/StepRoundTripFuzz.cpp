// Encoding of any units as a STEP string against the plain recursive wording, and back.

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringISO1030321Reader.h"
#include "kovabase/strings/KOVAStringISO1030321Writer.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t kModelUnits = 4096;

std::string modelEncode(const std::u16string& text) {
  const auto isAscii = [](char16_t unit) { return unit < 128; };
  std::size_t start = 0;
  while (start < text.size() && isAscii(text[start])) ++start;
  std::string encoded(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(start));
  if (start == text.size()) return encoded;
  encoded += "\\X2\\";
  std::size_t end = start;
  for (; end < text.size() && !isAscii(text[end]); ++end) {
    char digits[5];
    std::snprintf(digits, sizeof(digits), "%04X", static_cast<unsigned>(text[end]));
    encoded += digits;
  }
  return encoded + "\\X0\\" + modelEncode(text.substr(end));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Every other unit is a byte, so that ASCII text is frequent.
  std::u16string text;
  for (std::size_t i = 0; i + 1 < size; ++i) {
    unsigned unit = data[i];
    if (unit % 2 == 0) unit = (unit << 8) | data[++i];
    // A zero ends the text, and a backslash may spell an escape that was never encoded.
    text += static_cast<char16_t>(unit == 0 || unit == '\\' ? '/' : unit);
  }
  const KOVAString string(text.c_str());
  KOVAStringISO1030321Writer writer;
  const char* encoded = nullptr;
  if (writer.ConvertToASCII(string, encoded).IsFailure()) std::abort();
  if ((encoded == nullptr) != text.empty()) std::abort();
  if (encoded != nullptr && text.size() <= kModelUnits && modelEncode(text) != encoded)
    std::abort();
  KOVAString decoded;
  if (KOVAStringISO1030321Reader().ConvertFromASCII(encoded, decoded).IsFailure()) std::abort();
  if (decoded != string) std::abort();
  return 0;
}
