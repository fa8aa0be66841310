// Path patterns against a matcher that tries everything. The first zero byte parts path and
// pattern.

#include "kovabase/strings/Gk_ROString.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t kModelBytes = 12;

bool isSeparator(char c) { return c == '/' || c == '\\'; }

std::size_t characterLength(std::string_view text) {
  std::size_t length = 1;
  if (static_cast<unsigned char>(text[0]) < 0xC0) return length;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
    ++length;
  return length;
}

bool modelMatches(std::string_view path, std::string_view pattern) {
  if (pattern.empty()) return path.empty();
  if (pattern[0] == '*' && modelMatches(path, pattern.substr(1))) return true;
  if (path.empty()) return false;
  if (pattern[0] == '*') {
    return !isSeparator(path[0]) && modelMatches(path.substr(characterLength(path)), pattern);
  }
  if (pattern[0] == '?') {
    return !isSeparator(path[0]) &&
           modelMatches(path.substr(characterLength(path)), pattern.substr(1));
  }
  const std::string_view wanted = pattern.substr(0, characterLength(pattern));
  const std::string_view character = path.substr(0, characterLength(path));
  const bool isSame = isSeparator(wanted[0]) ? isSeparator(character[0]) : wanted == character;
  return isSame && modelMatches(path.substr(character.size()), pattern.substr(wanted.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const std::string path(text.c_str());
  const std::string pattern(text.c_str() + std::min(path.size() + 1, text.size()));
  const bool matches = Gk_ROString(path.c_str()).matchesPath(pattern.c_str());
  if (path.size() > kModelBytes || pattern.size() > kModelBytes) return 0;
  if (matches != modelMatches(path, pattern)) std::abort();
  return 0;
}
