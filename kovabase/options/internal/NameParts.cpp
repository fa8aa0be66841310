#include "kovabase/options/internal/NameParts.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/strings/internal/CaseFolding.h"
#include "kovabase/strings/internal/UnicodeServices.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kova::internal {

namespace {

// Four units side by side in a word, the missing ones zero.
using Block = std::uint64_t;
constexpr int kBlockUnits = 4;
constexpr Block kEachUnit = 0x0001000100010001U;

Block loadBlock(const unsigned short* units, int count) {
  Block block = 0;
  if (count >= kBlockUnits) {
    std::memcpy(&block, units, sizeof block);
    return block;
  }
  for (int i = 0; i < count; ++i) block |= static_cast<Block>(units[i]) << (16 * i);
  return block;
}

// Whether one of the units is a separator: its difference is zero, and borrows into the top bit.
bool holdsSeparator(Block block) {
  const Block difference = block ^ kEachUnit * '.';
  return ((difference - kEachUnit) & ~difference & kEachUnit * 0x8000U) != 0;
}

bool isASCII(Block block) { return (block & kEachUnit * 0xFF80U) == 0; }

// Of ASCII units. The sums raise bit 7 of a unit from 'A' on, respectively behind 'Z'.
Block foldASCII(Block block) {
  const Block fromA = block + kEachUnit * (0x80 - 'A');
  const Block behindZ = block + kEachUnit * (0x80 - 'Z' - 1);
  return block | ((fromA & ~behindZ & kEachUnit * 0x80U) >> 2);
}

Block mixIn(Block hash, Block block) {
  hash = (hash ^ block) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 32);
}

// The count is left out: zeros do not occur in names but as text of their own, which may collide.
unsigned finish(Block hash) { return static_cast<unsigned>(hash ^ (hash >> 15)); }

unsigned hashFolded(const unsigned short* units, int count) {
  // A unit folds to three at the most.
  unsigned short inside[96];
  const bool isShort = count <= 32;
  const int room = isShort ? 96 : 3 * count;
  unsigned short* const folded = isShort
                                     ? inside
                                     : static_cast<unsigned short*>(allocateZeroed(
                                           static_cast<std::size_t>(room), sizeof(unsigned short)));
  const int length = std::min(fold(units, count, folded, room), room);
  Block hash = 0;
  for (int i = 0; i < length; i += kBlockUnits)
    hash = mixIn(hash, loadBlock(folded + i, length - i));
  if (!isShort) release(folded);
  return finish(hash);
}

}  // namespace

bool NamePart::equals(const NamePart& other) const {
  if (count == other.count) {
    bool areASCII = true;
    int i = 0;
    for (; i < count; i += kBlockUnits) {
      const Block mine = loadBlock(units + i, count - i);
      const Block others = loadBlock(other.units + i, count - i);
      if (mine == others) {
        areASCII = areASCII && isASCII(mine);
        continue;
      }
      areASCII = areASCII && isASCII(mine | others);
      if (!isASCII(mine | others) || foldASCII(mine) != foldASCII(others)) break;
    }
    if (i >= count) return true;
    // Different up to here; what is beyond ASCII may still fold to the same text.
    if (areASCII) return false;
  }
  // Nothing folds to the empty text, whose units may be null.
  if (count == 0 || other.count == 0) return false;
  return compareIgnoringCase(units, static_cast<std::size_t>(count), other.units,
                             static_cast<std::size_t>(other.count)) == 0;
}

unsigned NamePart::hash() const {
  Block hash = 0;
  for (int i = 0; i < count; i += kBlockUnits) {
    const Block block = loadBlock(units + i, count - i);
    if (!isASCII(block)) return hashFolded(units, count);
    hash = mixIn(hash, foldASCII(block));
  }
  return finish(hash);
}

bool NamePartCursor::next(NamePart& part) {
  if (_next == nullptr) return false;
  const unsigned short* stop = _next;
  while (_end - stop >= kBlockUnits && !holdsSeparator(loadBlock(stop, kBlockUnits))) {
    stop += kBlockUnits;
  }
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
