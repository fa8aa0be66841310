#pragma once

#include "kovabase/foundation/KOVAExport.h"

/// Base of the objects that a KOVAUseCountedHolder keeps alive. The count is a plain integer: an
/// object and all its holders belong to one thread at a time.
class KOVABASE_API KOVAUseCounted {
 public:
  /// Called by a holder that takes the object up.
  void AddRef() const noexcept { _count = static_cast<int>(static_cast<unsigned>(_count) + 1U); }

  /// Deletes the object, which must have come from `new`, when the count falls to 0.
  void Release() const;

  int GetCount() const noexcept { return _count; }

 protected:
  KOVAUseCounted() noexcept = default;
  /// Both forms of copying take over the count of the source; this is kept.
  KOVAUseCounted(const KOVAUseCounted& other) noexcept = default;
  KOVAUseCounted& operator=(const KOVAUseCounted& other) noexcept = default;
  virtual ~KOVAUseCounted();

 private:
  mutable int _count = 0;
};

/// Holds one use-counted object, or none.
class KOVABASE_API KOVAUseCountedHolder {
 public:
  KOVAUseCountedHolder() noexcept = default;
  KOVAUseCountedHolder(const KOVAUseCounted* impl) noexcept;
  KOVAUseCountedHolder(const KOVAUseCountedHolder& other) noexcept;
  KOVAUseCountedHolder& operator=(const KOVAUseCountedHolder& other);
  ~KOVAUseCountedHolder();

  /// Lets the held object go and holds `impl`; nothing happens when it holds `impl` already.
  void SetImpl(const KOVAUseCounted* impl);

  const KOVAUseCounted* GetImpl() const noexcept { return _impl; }
  KOVAUseCounted* GetImpl() noexcept { return _impl; }
  bool IsEmpty() const noexcept { return _impl == nullptr; }

 private:
  KOVAUseCounted* _impl = nullptr;
};
