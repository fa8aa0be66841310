#include "kovabase/strings/internal/Codepage.h"

#include "kovabase/strings/KOVAStringCodepageConverter.h"

#include <atomic>
#include <cstring>

namespace kova::internal {

namespace {

// Trivial, so that it can still be read when the thread's cache is destroyed.
thread_local bool isCacheGone = false;

bool isDefaultName(const char* name) { return name == nullptr || *name == '\0'; }

}  // namespace

struct Codepage::Slot {
  char name[kMaximumConverterName + 1] = {};
  bool isUsed = false;
  bool isKnown = false;
  CodepageKind kind = CodepageKind::kOther;
  UConverter* converter = nullptr;
  // A second clone, so that the substitute never sticks to the first.
  UConverter* substituting = nullptr;
  char substitute = '\0';
};

// The code pages that a thread used last, the very last one in front.
class Codepage::Cache {
 public:
  ~Cache() {
    isCacheGone = true;
    for (Slot& slot : _slots) empty(slot);
  }

  // The slot of the name, opened if need be; null when memory is exhausted.
  Slot* find(const char* name) noexcept {
    const char* const key = name != nullptr ? name : "";
    if (_slots[_last].isUsed && std::strcmp(_slots[_last].name, key) == 0) return &_slots[_last];
    for (int i = 0; i < kSlots; ++i) {
      if (_slots[i].isUsed && std::strcmp(_slots[i].name, key) == 0) {
        _last = i;
        return &_slots[i];
      }
    }
    const int next = (_last + 1) % kSlots;
    Slot& slot = _slots[next];
    bool isUnknown = false;
    CodepageKind kind = CodepageKind::kOther;
    UConverter* const converter = open(name, kind, isUnknown);
    if (converter == nullptr && !isUnknown) return nullptr;
    empty(slot);
    std::strcpy(slot.name, key);
    slot.isUsed = true;
    slot.isKnown = !isUnknown;
    slot.kind = kind;
    slot.converter = converter;
    _last = next;
    return &slot;
  }

 private:
  static constexpr int kSlots = 4;

  static void empty(Slot& slot) noexcept {
    closeConverter(slot.converter);
    closeConverter(slot.substituting);
    slot = Slot();
  }

  Slot _slots[kSlots];
  int _last = 0;
};

UConverter* Codepage::open(const char* name, CodepageKind& kind, bool& isUnknown) noexcept {
  return KOVAStringCodepageConverter::Instance().openOwn(isDefaultName(name) ? nullptr : name, kind,
                                                         isUnknown);
}

Codepage::Codepage(Codepage&& other) noexcept
    : _kind(other._kind),
      _converter(other._converter),
      _isKnown(other._isKnown),
      _isOwned(other._isOwned) {
  other._isOwned = false;
}

Codepage::~Codepage() {
  if (_isOwned) closeConverter(_converter);
}

Codepage Codepage::find(const char* name) noexcept { return findForWriting(name, '\0'); }

Codepage Codepage::findForReading(const char* name) noexcept {
  if (isDefaultName(name)) {
    const CodepageKind kind = defaultKind();
    if (kind != CodepageKind::kASCIIBased && kind != CodepageKind::kOther) {
      return Codepage(kind, nullptr);
    }
  } else if (const CodepageKind kind = kindOfCanonicalName(name); kind != CodepageKind::kOther) {
    return Codepage(kind, nullptr);
  }
  return find(name);
}

Codepage Codepage::findForWriting(const char* name, char substitute) noexcept {
  Codepage page(CodepageKind::kOther, nullptr);
  bool isUnknown = !isDefaultName(name) && std::strlen(name) > kMaximumConverterName;
  if (isUnknown) {
    // No such name can be known.
  } else if (isCacheGone) {
    page._converter = open(name, page._kind, isUnknown);
    page._isOwned = true;
    if (page._converter != nullptr && substitute != '\0') {
      setSubstitute(page._converter, substitute);
    }
  } else {
    thread_local Cache cache;
    Slot* const slot = cache.find(name);
    if (slot == nullptr) return page;
    isUnknown = !slot->isKnown;
    page._kind = slot->kind;
    page._converter = slot->converter;
    if (!isUnknown && substitute != '\0') {
      if (slot->substituting == nullptr) {
        slot->substituting = cloneConverter(slot->converter);
        slot->substitute = '\0';
      }
      if (slot->substituting != nullptr && slot->substitute != substitute) {
        setSubstitute(slot->substituting, substitute);
        slot->substitute = substitute;
      }
      page._converter = slot->substituting;
    }
  }
  if (!isUnknown) return page;
  Codepage standIn = findForWriting(nullptr, substitute);
  standIn._isKnown = false;
  return standIn;
}

CodepageKind Codepage::defaultKind() noexcept {
  constexpr int kUndecided = -1;
  static std::atomic<int> decided = kUndecided;
  int value = decided.load(std::memory_order_relaxed);
  if (value != kUndecided) return static_cast<CodepageKind>(value);

  CodepageKind kind = CodepageKind::kUTF8;
  if (!isNamed(defaultConverterName(), "UTF-8")) {
    const Codepage page = find(nullptr);
    if (page.converter() == nullptr) return CodepageKind::kOther;
    kind = page.kind();
  }
  decided.store(static_cast<int>(kind), std::memory_order_relaxed);
  return kind;
}

}  // namespace kova::internal
