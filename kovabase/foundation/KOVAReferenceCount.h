#pragma once

#include "kovabase/foundation/KOVAAtomicCounter.h"
#include "kovabase/foundation/KOVAExport.h"

/// Base of the objects that several handles keep alive together. A target is created with `new`;
/// the handle that lowers its count to 0 deletes it, on that handle's thread.
class KOVABASE_API KOVAReferenceCount {
 public:
  virtual ~KOVAReferenceCount();

  /// Called by a handle that takes the target up.
  /// @return the new count.
  virtual unsigned RaiseReference();

  /// Called by a handle that lets the target go, and deletes it when the answer is 0.
  /// @return the new count.
  virtual unsigned LowerReference();

  /// A name for diagnostics, owned by the target; null here.
  virtual const char* GetName();

  /// True when exactly one handle holds the target.
  bool IsLastCall() const noexcept { return GetCount() == 1U; }

  /// How many handles hold the target at this moment.
  unsigned GetCount() const noexcept { return static_cast<unsigned>(_count.GetCount()); }

 protected:
  KOVAReferenceCount() noexcept = default;
  explicit KOVAReferenceCount(unsigned count) noexcept : _count(static_cast<int>(count)) {}

  /// The copy is a new object that nobody holds yet: its count is 0.
  KOVAReferenceCount(const KOVAReferenceCount&) noexcept : _count(0) {}

 private:
  KOVAReferenceCount& operator=(const KOVAReferenceCount&) noexcept;

  KOVAAtomicCounter _count;
};
