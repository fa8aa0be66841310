#include "kovabase/strings/internal/CaseFolding.h"

#include "kovabase/strings/internal/CodeUnits.h"
#include "kovabase/strings/internal/UnicodeServices.h"

#include <cstdint>
#include <cstring>

namespace kova::internal {

namespace {

using Units8 = unsigned short __attribute__((vector_size(16)));

// Latin, Greek, Cyrillic and Armenian: below this, folding to one unit is looked up.
constexpr unsigned kTableEnd = 0x590;

// What a unit folds to; 0 when that is not one unit.
struct FoldingTable {
  FoldingTable() {
    for (unsigned i = 0; i < kTableEnd; ++i) {
      const unsigned short unit = static_cast<unsigned short>(i);
      unsigned short folded[4];
      units[i] = fold(&unit, 1, folded, 4) == 1 ? folded[0] : static_cast<unsigned short>(0);
    }
  }
  unsigned short units[kTableEnd];
};

unsigned foldByTable(unsigned unit) {
  static const FoldingTable table;
  return unit < kTableEnd ? table.units[unit] : 0;
}

unsigned foldASCII(unsigned unit) { return unit - 'A' < 26U ? unit + ('a' - 'A') : unit; }

Units8 foldASCII(const unsigned short* units) {
  Units8 block;
  std::memcpy(&block, units, sizeof block);
  const Units8 isCapital = reinterpret_cast<Units8>(block - 'A' < 26);
  return block + (isCapital & ('a' - 'A'));
}

bool isEqualFoldedASCII(const unsigned short* a, const unsigned short* b) {
  const Units8 difference = foldASCII(a) ^ foldASCII(b);
  std::uint64_t words[2];
  std::memcpy(words, &difference, sizeof words);
  return (words[0] | words[1]) == 0;
}

}  // namespace

int compareIgnoringCase(const unsigned short* a, std::size_t countA, const unsigned short* b,
                        std::size_t countB) noexcept {
  const std::size_t shorter = countA < countB ? countA : countB;
  std::size_t i = 0;
  for (;;) {
    while (i + 8 <= shorter && isEqualFoldedASCII(a + i, b + i)) i += 8;
    while (i < shorter && foldASCII(a[i]) == foldASCII(b[i])) ++i;
    if (i == shorter) break;
    const unsigned foldedA = foldByTable(a[i]);
    const unsigned foldedB = foldByTable(b[i]);
    if (foldedA == 0 || foldedB == 0) break;
    if (foldedA != foldedB) return foldedA < foldedB ? -1 : 1;
    ++i;
  }
  if (i == countA && i == countB) return 0;
  // Full folding takes one code point at a time, so what is equal so far counts no more; but a
  // difference in the second half of a pair is one of the whole.
  if (i > 0 && isLeadSurrogate(a[i - 1])) --i;
  return compareFolded(a + i, static_cast<int>(countA - i), b + i, static_cast<int>(countB - i));
}

}  // namespace kova::internal
