#pragma once

#include "kovabase/strings/KOVAString.h"

namespace kova::internal {

/// One part of an option name: a range of the name's units. Parts compare ignoring case.
struct NamePart {
  const unsigned short* units = nullptr;
  int count = 0;

  bool isWildcard() const { return count == 1 && units[0] == '*'; }
  bool equals(const NamePart& other) const;
  /// Of the case-folded units: equal parts have equal hashes.
  unsigned hash() const;
  KOVAString toString() const { return KOVAString::fromUnits(units, count); }
};

/// Walks the parts of a name, which are separated by '.'. The empty name has none, and a name that
/// ends in a separator ends in an empty part. The name must outlive the walk.
class NamePartCursor {
 public:
  explicit NamePartCursor(const KOVAString& name)
      : _next(name.length() > 0 ? name.getUnits() : nullptr),
        _end(name.getUnits() + name.length()) {}

  /// @return whether there was one more part.
  bool next(NamePart& part);

 private:
  const unsigned short* _next;  // null behind the last part
  const unsigned short* _end;
};

/// The parts of a name that can be filed in an option set: at most seven, the last one the option's
/// own name. The name must outlive them.
class NameParts {
 public:
  static constexpr int kMaximum = 7;

  explicit NameParts(const KOVAString& name);

  /// Between one part and seven.
  bool isValid() const { return _count >= 1 && _count <= kMaximum; }
  int contexts() const { return _count - 1; }
  const NamePart& context(int level) const { return _parts[level]; }
  const NamePart& leaf() const { return _parts[_count - 1]; }

 private:
  NamePart _parts[kMaximum];
  int _count = 0;  // more than seven count as eight
};

}  // namespace kova::internal
