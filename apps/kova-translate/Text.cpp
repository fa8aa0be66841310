#include "apps/kova-translate/Text.h"

#include "kovabase/io/KOVAStringOutputStream.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace kova::translate {

namespace {

// Bytes of the well-formed UTF-8 character that `text` begins with; 0 when it begins with none.
std::size_t getCharacterBytes(std::string_view text) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byteAt(0);
  const std::size_t count = lead < 0x80   ? 1
                            : lead < 0xC2 ? 0
                            : lead < 0xE0 ? 2
                            : lead < 0xF0 ? 3
                                          : 4;
  if (count > text.size() || lead > 0xF4) return 0;
  for (std::size_t i = 1; i < count; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80) return 0;
  }
  // No overlong forms, halves of surrogate pairs, or numbers beyond the last.
  const bool isWrong = (lead == 0xE0 && byteAt(1) < 0xA0) || (lead == 0xED && byteAt(1) > 0x9F) ||
                       (lead == 0xF0 && byteAt(1) < 0x90) || (lead == 0xF4 && byteAt(1) > 0x8F);
  return isWrong ? 0 : count;
}

// Changes of one letter that turn one word into the other; a swap of neighbours is one.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> table(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) table[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) table[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      table[i][j] =
          std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, table[i - 1][j - 1] + change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
      }
    }
  }
  return table[a.size()][b.size()];
}

}  // namespace

std::string quoteText(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F) {
      quoted += c;
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", unsigned{byte});
      quoted += escape;
    }
  }
  return quoted + "'";
}

std::string quoteJson(std::string_view text) {
  std::string json = "\"";
  for (const char c : toUtf8(fromUtf8(text))) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", unsigned{static_cast<unsigned char>(c)});
      json += escape;
    } else {
      json += c;
    }
  }
  return json + "\"";
}

std::string toLower(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  return text;
}

std::string toUtf8(const KOVAString& text) {
  KOVAStringOutputStream bytes;
  bytes.Write(text);
  return {bytes.GetBytes(), bytes.GetByteCount()};
}

KOVAString fromUtf8(std::string_view text) {
  return KOVAString::fromBytes(text.data(), static_cast<int>(text.size()), "UTF-8");
}

KOVAString toPathText(std::string_view path) {
  constexpr unsigned short kByteUnits = 0xDC00;
  KOVAString text;
  for (std::size_t i = 0; i < path.size();) {
    const std::size_t count = path[i] == '\\' ? 0 : getCharacterBytes(path.substr(i));
    if (count == 0) {
      const auto byte = static_cast<unsigned char>(path[i]);
      text += KOVAString(static_cast<unsigned short>(kByteUnits + byte));
    } else {
      text += fromUtf8(path.substr(i, count));
    }
    i += std::max<std::size_t>(count, 1);
  }
  return text;
}

std::string suggest(const std::string& word, const std::vector<std::string>& words) {
  const std::string asked = toLower(word);
  std::string best;
  constexpr std::size_t kLongestWord = 100;
  if (word.size() > kLongestWord) return best;
  std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
  for (const std::string& candidate : words) {
    const std::string known = toLower(candidate);
    // A word that is begun and not finished counts as near.
    const bool isBeginning = asked.size() >= 2 && known.compare(0, asked.size(), asked) == 0;
    const std::size_t changes = isBeginning ? 1 : distance(asked, known);
    if (changes < least) {
      least = changes;
      best = candidate;
    }
  }
  return best;
}

std::string suggestInWords(const std::string& word, const std::vector<std::string>& words) {
  const std::string name = suggest(word, words);
  return name.empty() ? name : "; did you mean '" + name + "'?";
}

}  // namespace kova::translate
