#pragma once

#include "kovabase/foundation/KOVAAtomicCounter.h"
#include "kovabase/foundation/KOVAExport.h"

/// A block of equal slots that several array objects can hold together: the storage of every
/// KOVADynamicArray. Made by `kovaArrayAllocate`, ended by `kovaArrayFree`; the storage behind
/// `data` belongs to the block and is changed by the functions below alone.
///
/// Slots of the count and above are zero until they have been used once.
struct KOVAArrayHeader {
  /// Slots that there is room for; at least 1.
  int capacity;
  /// Slots in use, from slot 0 on.
  int count;
  /// Bytes in one slot.
  int elementSize;
  /// Array objects that hold the block.
  KOVAAtomicCounter holders;
  /// Slot 0, aligned to 16 bytes.
  void* data;
};

/// What knows the type of the elements, and so can destroy them before their storage goes.
class KOVABASE_API KOVAArrayFreeCallback {
 public:
  /// Destroys all elements of the block.
  virtual void Callback() = 0;
  virtual ~KOVAArrayFreeCallback();
};

/// How much a full block grows: the next capacity is capacity * 1.5 + 1, cut to an integer.
extern KOVABASE_API const float KOVAARRAY_SIZE_GROW_FACTOR;

// The functions open and close slots and move them as raw bytes; they never run a constructor or a
// destructor. A null header stands for an absent array and fails softly. Unless said otherwise they
// return 1 for success and 0 for failure, and throw KOVAAllocException, with the block as it was,
// when memory cannot be had. Only the count of the holders may be changed by several threads.

/// @return a zeroed block of one holder without used slots; null when an argument is below 1.
KOVABASE_API KOVAArrayHeader* kovaArrayAllocate(int capacity, int elementSize);

/// Opens a slot at the end for the caller to fill; `element` is ignored. A full block grows.
KOVABASE_API int kovaArrayAdd(KOVAArrayHeader*& header, const void* element);

/// Opens slot `index`, the slots from it on move up; `element` is ignored. Above the count it opens
/// a slot at the end. A block with a single free slot left grows already; kept.
/// @return 0 for a negative index.
KOVABASE_API int kovaArrayInsertAt(KOVAArrayHeader*& header, int index, const void* element);

/// Copies `element`, one slot of bytes that may overlap the block's, into a used slot.
/// @return 0 for a slot that is not in use, and for null.
KOVABASE_API int kovaArraySetAt(KOVAArrayHeader*& header, int index, const void* element);

/// Closes a used slot over its bytes; the slots above it move down.
/// @return 0 for a slot that is not in use.
KOVABASE_API int kovaArrayRemoveAt(KOVAArrayHeader*& header, int index);

/// Sets the count to 0 and keeps the storage.
KOVABASE_API int kovaArrayClear(KOVAArrayHeader*& header);

/// The slots in use, 0 for null.
KOVABASE_API int kovaArrayCount(const KOVAArrayHeader* header);

/// 1 when there is a block.
KOVABASE_API int kovaArrayCheck(KOVAArrayHeader* const& header);

/// Takes the block up once more: a further holder, not a further block.
KOVABASE_API KOVAArrayHeader* kovaArrayCopy(KOVAArrayHeader* header);

/// Lets the block go. The last holder's `callback`, unless null, destroys the elements, the storage
/// is released and `header` becomes null; before that `header` stays as it is.
KOVABASE_API void kovaArrayFree(KOVAArrayHeader*& header, KOVAArrayFreeCallback* callback);

/// Grows the block to the next capacity.
KOVABASE_API int kovaArrayRealloc(KOVAArrayHeader*& header);

/// Sets the capacity; the count stays.
/// @return 0 for a capacity below the present one: blocks only grow.
KOVABASE_API int kovaArrayReallocSize(KOVAArrayHeader*& header, int newCapacity);

/// Opens as many slots at the end of `destination` as `source` uses, and fills them from the start
/// of `destination` itself, not from `source`; kept.
/// @return 0 when the slots differ in size.
KOVABASE_API int kovaArrayAppend(KOVAArrayHeader*& destination, const KOVAArrayHeader* source);
