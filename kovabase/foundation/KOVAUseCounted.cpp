#include "kovabase/foundation/KOVAUseCounted.h"

KOVAUseCounted::~KOVAUseCounted() = default;

void KOVAUseCounted::Release() const {
  _count = static_cast<int>(static_cast<unsigned>(_count) - 1U);
  if (_count == 0) delete this;
}

// Objects are held as const and handed out as not const, too: the holder adds no constness.
KOVAUseCountedHolder::KOVAUseCountedHolder(const KOVAUseCounted* impl) noexcept
    : _impl(const_cast<KOVAUseCounted*>(impl)) {
  if (_impl != nullptr) _impl->AddRef();
}

KOVAUseCountedHolder::KOVAUseCountedHolder(const KOVAUseCountedHolder& other) noexcept
    : KOVAUseCountedHolder(other._impl) {}

KOVAUseCountedHolder& KOVAUseCountedHolder::operator=(const KOVAUseCountedHolder& other) {
  if (this != &other) SetImpl(other._impl);
  return *this;
}

KOVAUseCountedHolder::~KOVAUseCountedHolder() {
  if (_impl != nullptr) _impl->Release();
  _impl = nullptr;
}

void KOVAUseCountedHolder::SetImpl(const KOVAUseCounted* impl) {
  if (impl == _impl) return;
  if (_impl != nullptr) _impl->Release();
  _impl = const_cast<KOVAUseCounted*>(impl);
  if (_impl != nullptr) _impl->AddRef();
}
