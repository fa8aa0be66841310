#include "kovabase/strings/internal/CaseFolding.h"

#include "kovabase/strings/internal/CodeUnits.h"
#include "kovabase/strings/internal/UnicodeServices.h"

namespace kova::internal {

namespace {

unsigned foldASCII(unsigned unit) { return unit - 'A' < 26U ? unit + ('a' - 'A') : unit; }

}  // namespace

int compareIgnoringCase(const unsigned short* a, std::size_t countA, const unsigned short* b,
                        std::size_t countB) noexcept {
  const std::size_t shorter = countA < countB ? countA : countB;
  std::size_t i = 0;
  while (i < shorter && foldASCII(a[i]) == foldASCII(b[i])) ++i;
  if (i == countA && i == countB) return 0;
  // Full folding looks at one code point at a time, so what is equal so far counts no more.
  if (i > 0 && isLeadSurrogate(a[i - 1])) --i;
  return compareFolded(a + i, static_cast<int>(countA - i), b + i, static_cast<int>(countB - i));
}

}  // namespace kova::internal
