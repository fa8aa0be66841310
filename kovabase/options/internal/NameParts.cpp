#include "kovabase/options/internal/NameParts.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/strings/internal/CaseFolding.h"
#include "kovabase/strings/internal/UnicodeServices.h"

namespace kova::internal {

namespace {

unsigned foldASCII(unsigned unit) { return unit - 'A' < 26U ? unit + ('a' - 'A') : unit; }

// FNV-1a, a unit at a time.
constexpr unsigned kHashStart = 2166136261U;
unsigned mixIn(unsigned hash, unsigned unit) { return (hash ^ unit) * 16777619U; }

unsigned hashFolded(const unsigned short* units, int count) {
  // A unit folds to three at the most.
  unsigned short inside[96];
  const bool isShort = count <= 32;
  const int room = isShort ? 96 : 3 * count;
  unsigned short* const folded = isShort
                                     ? inside
                                     : static_cast<unsigned short*>(allocateZeroed(
                                           static_cast<std::size_t>(room), sizeof(unsigned short)));
  const int length = fold(units, count, folded, room);
  unsigned hash = kHashStart;
  for (int i = 0; i < length && i < room; ++i) hash = mixIn(hash, folded[i]);
  if (!isShort) release(folded);
  return hash;
}

}  // namespace

bool NamePart::equals(const NamePart& other) const {
  unsigned all = 0;
  if (count == other.count) {
    int i = 0;
    for (; i < count; ++i) {
      all |= static_cast<unsigned>(units[i]) | other.units[i];
      if (foldASCII(units[i]) != foldASCII(other.units[i])) break;
    }
    if (i == count) return true;
    if (all < 128) return false;
  }
  return compareIgnoringCase(units, static_cast<std::size_t>(count), other.units,
                             static_cast<std::size_t>(other.count)) == 0;
}

unsigned NamePart::hash() const {
  unsigned hash = kHashStart;
  for (int i = 0; i < count; ++i) {
    if (units[i] > 127) {
      return hashFolded(units, count);
    }
    hash = mixIn(hash, foldASCII(units[i]));
  }
  return hash;
}

bool NamePartCursor::next(NamePart& part) {
  if (_next == nullptr) return false;
  const unsigned short* stop = _next;
  while (stop < _end && *stop != '.') ++stop;
  part.units = _next;
  part.count = static_cast<int>(stop - _next);
  _next = stop < _end ? stop + 1 : nullptr;
  return true;
}

NameParts::NameParts(const KOVAString& name) {
  NamePartCursor cursor(name);
  NamePart part;
  while (_count <= kMaximum && cursor.next(part)) {
    if (_count < kMaximum) _parts[_count] = part;
    ++_count;
  }
}

}  // namespace kova::internal
