#pragma once

#include "kovabase/options/KOVAOption.h"
#include "kovabase/options/internal/NameParts.h"

/// A node of an option set's tree: one part of filed names. Options hang on the seventh level below
/// the root: the option's own name, then six contexts, filled up with wildcards.
class KOVAOptionToken {
 public:
  static constexpr int kLevels = kova::internal::NameParts::kMaximum;

  KOVAOptionToken() = default;
  ~KOVAOptionToken();
  KOVAOptionToken(const KOVAOptionToken&) = delete;
  KOVAOptionToken& operator=(const KOVAOptionToken&) = delete;

  /// The named child, or the wildcard child for "*"; null when there is none.
  KOVAOptionToken* findChild(const kova::internal::NamePart& part) const;
  KOVAOptionToken* wildcardChild() const { return _wildcard; }
  /// The same, made when there is none. The part is not empty.
  KOVAOptionToken* findOrAddChild(const kova::internal::NamePart& part);
  KOVAOptionToken* findOrAddWildcard();

  KOVAOption* option() const { return _option; }
  /// The option at the end of the wildcards below this node, or its own; null when there is none.
  KOVAOption* optionOfWildcards() const { return _wildcardOption; }
  /// Assigns to the option of this node, or makes it. The node is on the last level.
  void setOption(const KOVAOption& option);

  /// The next node that holds an option, below this one and behind it, or null. Named children come
  /// in the order of their making, the wildcard child after them.
  const KOVAOptionToken* next() const;

  void removeChildren() noexcept;

 private:
  struct ChildTable;

  // Few children are found by walking them; the table is made when there are more.
  static constexpr int kWalkedChildren = 4;

  KOVAOptionToken(KOVAOptionToken* parent, const kova::internal::NamePart& part, unsigned hash);

  bool isPart(const kova::internal::NamePart& part, unsigned hash) const;
  void addToTable(KOVAOptionToken* child);

  KOVAString _part;
  unsigned _hash = 0;
  int _children = 0;
  KOVAOptionToken* _parent = nullptr;
  KOVAOptionToken* _firstChild = nullptr;
  KOVAOptionToken* _lastChild = nullptr;
  KOVAOptionToken* _sibling = nullptr;
  KOVAOptionToken* _wildcard = nullptr;
  ChildTable* _table = nullptr;
  KOVAOption* _option = nullptr;
  // Saves look-ups the way down.
  KOVAOption* _wildcardOption = nullptr;
};
