#include "kovabase/strings/internal/Codepage.h"

#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/platform/ThreadSlot.h"
#include "kovabase/strings/KOVAStringCodepageConverter.h"

#include <atomic>
#include <cstring>

namespace kova::internal {

namespace {

bool isDefaultName(const char* name) { return name == nullptr || *name == '\0'; }

}  // namespace

struct Codepage::Slot {
  char name[kMaximumConverterName + 1] = {};
  bool isReusable = false;
  Codepage page;
  // A second clone, so that the substitute never sticks to the first.
  UConverter* substituting = nullptr;
  char substitute = '\0';
};

// The code pages that a thread used last.
class Codepage::Cache {
 public:
  Cache() noexcept = default;
  ~Cache() {
    for (Slot& slot : _slots) empty(slot);
  }

  // The thread's own; null when memory is exhausted.
  static Cache* get() noexcept {
    static constinit thread_local Cache* current = nullptr;
    if (current != nullptr) return current;
    static const platform::ThreadSlot atThreadEnd([](void* cache) {
      current = nullptr;
      destroy(static_cast<Cache*>(cache));
    });
    Cache* const cache = tryCreate<Cache>();
    if (cache == nullptr || !atThreadEnd.set(cache)) {
      destroy(cache);
      return nullptr;
    }
    return current = cache;
  }

  // The slot of the name, opened if need be; null when memory is exhausted.
  Slot* find(const char* name) noexcept {
    if (isFor(_slots[_last], name)) return &_slots[_last];
    for (int i = 0; i < kSlots; ++i) {
      if (!isFor(_slots[i], name)) continue;
      _last = i;
      return &_slots[i];
    }
    Codepage page;
    bool isUnknown = false;
    page.converter = KOVAStringCodepageConverter::Instance().openOwn(
        isDefaultName(name) ? nullptr : name, page.kind, isUnknown);
    if (page.converter == nullptr && !isUnknown) return nullptr;
    page.isKnown = !isUnknown;
    _last = (_last + 1) % kSlots;
    Slot& slot = _slots[_last];
    empty(slot);
    std::strcpy(slot.name, name);
    slot.isReusable = isUnknown || canBeReset(page.converter);
    slot.page = page;
    return &slot;
  }

 private:
  static constexpr int kSlots = 4;

  static bool isFor(const Slot& slot, const char* name) noexcept {
    return slot.isReusable && std::strcmp(slot.name, name) == 0;
  }
  static void empty(Slot& slot) noexcept {
    closeConverter(slot.page.converter);
    closeConverter(slot.substituting);
    slot = Slot();
  }

  Slot _slots[kSlots];
  int _last = 0;
};

Codepage Codepage::find(const char* name) noexcept { return findForWriting(name, '\0'); }

Codepage Codepage::findForReading(const char* name) noexcept {
  const CodepageKind kind = isDefaultName(name) ? defaultKind() : kindOfCanonicalName(name);
  if (kind == CodepageKind::kASCIIBased || kind == CodepageKind::kOther) return find(name);
  return {kind};
}

Codepage Codepage::findForWriting(const char* name, char substitute) noexcept {
  if (name == nullptr) name = "";
  Slot* slot = nullptr;
  if (std::strlen(name) <= kMaximumConverterName) {
    Cache* const cache = Cache::get();
    slot = cache != nullptr ? cache->find(name) : nullptr;
    if (slot == nullptr) return {};
  }
  if (slot == nullptr || !slot->page.isKnown) {
    if (isDefaultName(name)) return {};
    Codepage standIn = findForWriting("", substitute);
    standIn.isKnown = false;
    return standIn;
  }
  if (substitute == '\0') return slot->page;
  if (slot->substituting == nullptr) {
    slot->substituting = cloneConverter(slot->page.converter);
    slot->substitute = '\0';
  }
  if (slot->substituting != nullptr && slot->substitute != substitute) {
    setSubstitute(slot->substituting, substitute);
    slot->substitute = substitute;
  }
  return {slot->page.kind, slot->substituting};
}

CodepageKind Codepage::defaultKind() noexcept {
  constexpr int kUndecided = -1;
  static std::atomic<int> decided = kUndecided;
  const int value = decided.load(std::memory_order_relaxed);
  if (value != kUndecided) return static_cast<CodepageKind>(value);

  CodepageKind kind = kindOfCanonicalName(defaultConverterName());
  if (kind == CodepageKind::kOther) {
    const Codepage page = find(nullptr);
    if (page.converter == nullptr) return CodepageKind::kOther;
    kind = page.kind;
  }
  decided.store(static_cast<int>(kind), std::memory_order_relaxed);
  return kind;
}

}  // namespace kova::internal
