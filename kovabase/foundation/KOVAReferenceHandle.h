#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAReferenceCount.h"

#include <cstdint>

/// The untyped part of a counted handle. Handles to one target may be copied and destroyed on
/// different threads; one handle belongs to one thread at a time.
class KOVABASE_API KOVAReferenceHandle {
 public:
  /// True when the handle has a target.
  virtual bool IsValid() const { return _target != nullptr; }

 protected:
  explicit KOVAReferenceHandle(KOVAReferenceCount* target) : _target(target) { raise(); }
  KOVAReferenceHandle(const KOVAReferenceHandle& other) : _target(other._target) { raise(); }
  virtual ~KOVAReferenceHandle() {
    release();
    _target = nullptr;
  }

  /// Lets the old target go, which may delete it, and only then takes up the new one. A handle
  /// inside the old target is therefore no source: copy `head->next` before assigning it to
  /// `head`. Nothing happens when both have the same target.
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the targets are then equal
  KOVAReferenceHandle& operator=(const KOVAReferenceHandle& other) {
    if (_target != other._target) {
      KOVAReferenceCount* const target = other._target;
      release();
      _target = target;
      raise();
    }
    return *this;
  }

  bool operator==(const KOVAReferenceHandle& other) const noexcept {
    return _target == other._target;
  }
  bool operator<(const KOVAReferenceHandle& other) const noexcept {
    return reinterpret_cast<std::uintptr_t>(_target) <
           reinterpret_cast<std::uintptr_t>(other._target);
  }

  /// False without a target.
  bool IsLastCall() const noexcept { return _target != nullptr && _target->IsLastCall(); }

  /// Null without a target.
  KOVAReferenceCount* target() const noexcept { return _target; }

 private:
  void raise() {
    if (_target != nullptr) _target->RaiseReference();
  }
  void release() {
    if (_target != nullptr && _target->LowerReference() == 0U) delete _target;
  }

  KOVAReferenceCount* _target;
};

/// The handle of one class of targets: `using KOVABufferHandle = KOVATypedHandle<KOVABuffer>;`
/// stands beside the target. `Target` derives from KOVAReferenceCount, not virtually, and may be
/// incomplete where the handle is only passed around.
///
/// Handles compare by the address of their target, so that they can be keys. The arrow and the
/// conversion do not check for null.
template <class Target>
class KOVABASE_API KOVATypedHandle : public KOVAReferenceHandle {
 public:
  KOVATypedHandle(Target* target = nullptr) : KOVAReferenceHandle(target) {}
  KOVATypedHandle(const KOVATypedHandle& other) = default;
  ~KOVATypedHandle() override = default;

  const KOVATypedHandle& operator=(const KOVATypedHandle& other) {
    KOVAReferenceHandle::operator=(other);
    return *this;
  }

  bool operator==(const KOVATypedHandle& other) const noexcept {
    return KOVAReferenceHandle::operator==(other);
  }
  bool operator<(const KOVATypedHandle& other) const noexcept {
    return KOVAReferenceHandle::operator<(other);
  }
  /// Without this form `handle == nullptr` would have two equally good readings.
  bool operator==(const Target* other) const noexcept { return typedTarget() == other; }

  operator Target*() const noexcept { return typedTarget(); }
  Target* operator->() noexcept { return typedTarget(); }
  const Target* operator->() const noexcept { return typedTarget(); }

  using KOVAReferenceHandle::IsLastCall;

 private:
  Target* typedTarget() const noexcept { return static_cast<Target*>(target()); }
};
