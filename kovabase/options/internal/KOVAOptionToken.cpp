#include "kovabase/options/internal/KOVAOptionToken.h"

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/containers/internal/HashIndex.h"

using kova::internal::NamePart;

struct KOVAOptionToken::ChildTable {
  KOVADynamicArray<KOVAOptionToken*> children;
  kova::internal::HashIndex index;
};

KOVAOptionToken::KOVAOptionToken(KOVAOptionToken* parent, const NamePart& part, unsigned hash)
    : _part(part.toString()), _hash(hash), _parent(parent) {}

KOVAOptionToken::~KOVAOptionToken() {
  removeChildren();
  delete _option;
}

KOVAOptionToken* KOVAOptionToken::findChild(const NamePart& part) const {
  if (part.isWildcard()) return _wildcard;
  if (_firstChild == nullptr) return nullptr;
  const unsigned hash = part.hash();
  if (_table == nullptr) {
    for (KOVAOptionToken* child = _firstChild; child != nullptr; child = child->_sibling) {
      if (child->isPart(part, hash)) return child;
    }
    return nullptr;
  }
  const int position =
      _table->index.find(hash, [&](int i) { return _table->children[i]->isPart(part, hash); });
  return position >= 0 ? _table->children[position] : nullptr;
}

KOVAOptionToken* KOVAOptionToken::findOrAddChild(const NamePart& part) {
  if (part.isWildcard()) return findOrAddWildcard();
  if (KOVAOptionToken* found = findChild(part)) return found;
  auto* child = new KOVAOptionToken(this, part, part.hash());
  try {
    addToTable(child);
  } catch (...) {
    delete child;
    throw;
  }
  (_lastChild != nullptr ? _lastChild->_sibling : _firstChild) = child;
  _lastChild = child;
  ++_children;
  return child;
}

KOVAOptionToken* KOVAOptionToken::findOrAddWildcard() {
  if (_wildcard == nullptr) _wildcard = new KOVAOptionToken(this, NamePart(), 0);
  return _wildcard;
}

void KOVAOptionToken::setOption(const KOVAOption& option) {
  if (_option != nullptr) {
    *_option = option;
    return;
  }
  _option = _wildcardOption = new KOVAOption(option);
  for (KOVAOptionToken* node = this; node->_parent != nullptr && node->_parent->_wildcard == node;
       node = node->_parent) {
    node->_parent->_wildcardOption = _option;
  }
}

const KOVAOptionToken* KOVAOptionToken::next() const {
  const KOVAOptionToken* node = this;
  do {
    if (node->_firstChild != nullptr) {
      node = node->_firstChild;
    } else if (node->_wildcard != nullptr) {
      node = node->_wildcard;
    } else {
      // Climb until there is something behind: a sibling, or the wildcard after the last child.
      while (node->_parent != nullptr) {
        if (node->_sibling != nullptr) {
          node = node->_sibling;
          break;
        }
        const KOVAOptionToken* const parent = node->_parent;
        const bool isNamed = node != parent->_wildcard;
        node = parent;
        if (isNamed && parent->_wildcard != nullptr) {
          node = parent->_wildcard;
          break;
        }
      }
      if (node->_parent == nullptr) return nullptr;
    }
  } while (node->_option == nullptr);
  return node;
}

void KOVAOptionToken::removeChildren() noexcept {
  for (KOVAOptionToken* child = _firstChild; child != nullptr;) {
    KOVAOptionToken* const sibling = child->_sibling;
    delete child;
    child = sibling;
  }
  delete _wildcard;
  delete _table;
  _firstChild = _lastChild = _wildcard = nullptr;
  _table = nullptr;
  _wildcardOption = nullptr;
  _children = 0;
}

bool KOVAOptionToken::isPart(const NamePart& part, unsigned hash) const {
  return hash == _hash && NamePart{_part.getUnits(), _part.length()}.equals(part);
}

void KOVAOptionToken::addToTable(KOVAOptionToken* child) {
  if (_table == nullptr) {
    if (_children < kWalkedChildren) return;
    _table = new ChildTable;
  }
  // Children that are not in the table yet: all of them when it is new, else the new one alone.
  KOVAOptionToken* missing = _table->children.size() == 0 ? _firstChild : nullptr;
  for (; missing != nullptr; missing = missing->_sibling) {
    _table->children.add(missing);
    _table->index.add(missing->_hash, _table->children.size() - 1);
  }
  _table->children.add(child);
  _table->index.add(child->_hash, _table->children.size() - 1);
}
