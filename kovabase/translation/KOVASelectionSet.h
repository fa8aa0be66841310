#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// A named set of model objects chosen for translation. The objects are opaque pointers that the
/// set neither owns nor looks into. Adding and asking take constant time; copies are deep.
class KOVABASE_API KOVASelectionSet {
 public:
  /// Walks the members in the order in which they were added. The set must outlive the walk and
  /// stay unchanged during it.
  class KOVABASE_API Iterator_t {
   public:
    /// @return the next member, or null at the end and ever after.
    void* Next();

   private:
    friend class KOVASelectionSet;
    explicit Iterator_t(const KOVASelectionSet& set) : _set(&set) {}

    const KOVASelectionSet* _set;
    int _position = 0;
  };

  KOVASelectionSet(const KOVAString& name, bool current);
  KOVASelectionSet(const KOVASelectionSet& other);
  KOVASelectionSet& operator=(const KOVASelectionSet& other);
  virtual ~KOVASelectionSet();

  /// Adds the object unless it is there already.
  /// @return Failure for null.
  KOVAResult AddMember(void* object);

  /// False for null.
  bool IsMember(void* object) const;

  /// The number of members.
  int SelectionSetLength() const;

  KOVAString GetName() const;

  bool IsCurrent() const;

  Iterator_t GetIterator() const;

 private:
  /// The slot that holds the object, or the empty one where it belongs.
  int findSlot(const void* object) const;
  void rehash(int slots);

  KOVAString _name;
  bool _current;
  KOVADynamicArray<void*> _members;
  /// Open addressing: 0 is empty, otherwise one more than the member's position.
  KOVADynamicArray<int> _slots;
};
