// Decoding of STEP strings against the plain recursive wording, and alone where that would need
// too much stack.

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCharUtil.h"
#include "kovabase/strings/KOVAStringISO1030321Reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

constexpr std::size_t kModelBytes = 4096;

// Bytes below their number stand for these, so that short inputs are dense with escapes.
constexpr const char* kPieces[] = {"\\X2\\", "\\X0\\", "\\S\\",  "00E9",       "D83DDE00", "\\",
                                   "X2",     "X0",     "\u00E9", "\U0001F600", "\u200B",   "0x1"};
constexpr std::size_t kPieceCount = sizeof(kPieces) / sizeof(kPieces[0]);

std::string expand(const std::uint8_t* data, std::size_t size) {
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] < kPieceCount) {
      text += kPieces[data[i]];
    } else {
      text += static_cast<char>(data[i]);
    }
  }
  return text;
}

std::u16string units(const KOVAString& text) {
  return {text.getUnits(), text.getUnits() + text.length()};
}

std::string asciiForm(const std::u16string& text) {
  const std::basic_string<unsigned short> copy(text.begin(), text.end());
  const KOVAString string = KOVAString::fromUnits(copy.data(), static_cast<int>(copy.size()));
  const KOVAStringAsciiCharUtil ascii(string, true, '_');
  return ascii.GetBuffer() != nullptr ? ascii.GetBuffer() : "";
}

std::optional<std::u16string> modelShift(const std::string& escape) {
  if (escape.size() < 4 || escape.compare(0, 3, "\\S\\") != 0) return std::nullopt;
  return std::u16string(1, static_cast<char16_t>((escape[3] + 256 - 128) % 256));
}

std::optional<std::u16string> modelQuadruplets(const std::string& escape) {
  if (!escape.starts_with("\\X2\\") || !escape.ends_with("\\X0\\")) return std::nullopt;
  if (escape.size() <= 8 || (escape.size() - 8) % 4 != 0) return std::nullopt;
  std::u16string result;
  for (std::size_t i = 4; i < escape.size() - 4; i += 4) {
    const std::string group = escape.substr(i, 4);
    const std::string digits = group.substr(0, group.find_first_not_of("0123456789abcdefABCDEF"));
    result += static_cast<char16_t>(std::strtoul(("0" + digits).c_str(), nullptr, 16));
  }
  return result;
}

bool modelDecode(const std::u16string& text, std::u16string& out) {
  out = text;
  const std::size_t shift = text.find(u"\\S\\");
  const std::size_t begin = text.find(u"\\X2\\");
  if (shift == text.npos && begin == text.npos) return true;
  std::optional<std::u16string> decoded;
  std::size_t start = 0;
  std::size_t end = 0;
  if (shift < begin) {
    start = shift;
    end = std::min(shift + 4, text.size());
    decoded = modelShift(asciiForm(text.substr(start, end - start)));
  } else {
    const std::size_t endMarker = text.find(u"\\X0\\");
    if (endMarker == text.npos || endMarker < begin) return false;
    start = begin;
    end = endMarker + 4;
    decoded = modelQuadruplets(asciiForm(text.substr(start, end - start)));
  }
  if (!decoded) return false;
  std::u16string rest;
  const bool result = modelDecode(text.substr(end), rest);
  out = text.substr(0, start) + *decoded + rest;
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int isSet = setenv("LC_ALL", "C.UTF-8", 1);
  const std::string text = expand(data, size);
  KOVAString decoded;
  const KOVAResult result = KOVAStringISO1030321Reader().ConvertFromASCII(text.c_str(), decoded);
  if (isSet != 0 || text.size() > kModelBytes) return 0;
  std::u16string wanted;
  const bool isDecoded = modelDecode(units(KOVAString(text.c_str())), wanted);
  if (isDecoded != (result == KOVAResultCode::kSuccess)) std::abort();
  if (!isDecoded && result != KOVAResultCode::kFailure) std::abort();
  if (units(decoded) != wanted) std::abort();
  return 0;
}
