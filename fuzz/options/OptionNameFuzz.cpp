// Declared names and an asked one, a line each: the score of each match and whether the asked name
// is valid, against the rules as they are told.

#include "kovabase/options/KOVAOptionName.h"
#include "kovabase/strings/KOVAStringTokenizer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

constexpr long long kNoMatch = 65535;

std::vector<KOVAString> partsOf(const KOVAString& name) {
  KOVAStringTokenizer tokenizer(name, '.');
  std::vector<KOVAString> parts;
  KOVAString part;
  for (int i = 0; tokenizer.GetToken(i, part).IsSuccess(); ++i) parts.push_back(part);
  return parts;
}

// The score, or -1 where its bits do not fit.
long long scoreOf(const KOVAString& declared, const KOVAString& asked) {
  if (declared.equalsIgnoreCase(asked)) return 0;
  const std::vector<KOVAString> known = partsOf(declared);
  const std::vector<KOVAString> parts = partsOf(asked);
  if (known.size() != parts.size()) return kNoMatch;
  bool isFitting = true;
  long long score = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i] == KOVAString("*")) {
      if (i >= 31) {
        isFitting = false;
      } else {
        score += 1LL << i;
      }
    } else if (!known[i].equalsIgnoreCase(parts[i])) {
      // A wildcard that does not fit ends the comparison.
      return isFitting ? kNoMatch : -1;
    }
  }
  return isFitting ? score : -1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  std::vector<KOVAString> lines(1);
  std::string line;
  for (std::size_t i = 0; i <= size; ++i) {
    if (i < size && data[i] != '\n') {
      line += static_cast<char>(data[i]);
      continue;
    }
    lines.back() = KOVAString::fromBytes(line.data(), static_cast<int>(line.size()), "UTF-8");
    line.clear();
    if (i < size) lines.emplace_back();
  }
  const KOVAString& asked = lines[0];

  // Each input has a registry of its own. An assignment makes what was known of the last one stale.
  KOVAOptionName::_optionNames.clear();
  std::vector<std::unique_ptr<KOVAOptionName>> names;
  long long best = kNoMatch;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    names.push_back(std::make_unique<KOVAOptionName>(lines[i]));
    const long long wanted = scoreOf(lines[i], asked);
    int score = -7;
    const bool isScored = KOVAOptionName::Match(lines[i], asked, score).IsSuccess();
    require(isScored == (wanted >= 0));
    require(score == (wanted >= 0 ? wanted : -7));
    if (wanted >= 0 && wanted < best) best = wanted;
  }
  require(KOVAOptionName::_optionNames.size() == static_cast<int>(names.size()));
  if (!names.empty()) {
    const KOVAOptionName same(*names[0]);
    *names[0] = same;
    require(KOVAOptionName::IsValid(asked).IsSuccess() == (best < kNoMatch));
  }
  KOVAOptionName::_optionNames.clear();
  return 0;
}
