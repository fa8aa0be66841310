#include "kovabase/foundation/KOVAReferenceCount.h"

KOVAReferenceCount::~KOVAReferenceCount() = default;

unsigned KOVAReferenceCount::RaiseReference() {
  return static_cast<unsigned>(_count.AtomicIncrement());
}

unsigned KOVAReferenceCount::LowerReference() {
  return static_cast<unsigned>(_count.AtomicDecrement());
}

const char* KOVAReferenceCount::GetName() { return nullptr; }

KOVAReferenceCount& KOVAReferenceCount::operator=(const KOVAReferenceCount&) noexcept {
  _count = KOVAAtomicCounter(0);
  return *this;
}
