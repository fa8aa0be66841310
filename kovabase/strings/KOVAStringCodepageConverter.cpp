#include "kovabase/strings/KOVAStringCodepageConverter.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/strings/internal/UnicodeServices.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_map>

using kova::internal::CodepageKind;

namespace {

constexpr std::size_t kBuckets = 12;

// A null name equals only a null name; it hashes as the empty one.
struct NameHash {
  std::size_t operator()(const char* name) const noexcept {
    unsigned hash = 0;
    for (; name != nullptr && *name != '\0'; ++name) {
      hash = hash * 33U + static_cast<unsigned>(static_cast<signed char>(*name));
    }
    return hash;
  }
};

struct NameEqual {
  bool operator()(const char* a, const char* b) const noexcept {
    return a == nullptr || b == nullptr ? a == b : std::strcmp(a, b) == 0;
  }
};

}  // namespace

// `model` is cloned and never converts, so that clones are not made of a converter at work.
struct KOVAStringCodepageConverter::Entry {
  UConverter* model = nullptr;
  UConverter* shared = nullptr;
  CodepageKind kind = CodepageKind::kOther;
};

struct KOVAStringCodepageConverter::Table {
  KOVAMutex mutex;
  std::unordered_map<const char*, Entry, NameHash, NameEqual> entries;
};

KOVAStringCodepageConverter& KOVAStringCodepageConverter::Instance() {
  // Never destroyed: destructors of static objects may still convert texts.
  alignas(KOVAStringCodepageConverter) static unsigned char
      storage[sizeof(KOVAStringCodepageConverter)];
  static KOVAStringCodepageConverter* const instance = new (storage) KOVAStringCodepageConverter;
  return *instance;
}

KOVAStringCodepageConverter::KOVAStringCodepageConverter() {
  alignas(Table) static unsigned char storage[sizeof(Table)];
  _table = new (storage) Table;
}

KOVAStringCodepageConverter::Entry* KOVAStringCodepageConverter::findOrOpen(
    const char* name, bool& isUnknown) noexcept {
  auto& entries = _table->entries;
  isUnknown = false;
  if (const auto found = entries.find(name); found != entries.end()) return &found->second;

  Entry entry;
  entry.model = kova::internal::openConverter(name, isUnknown);
  if (entry.model == nullptr) return nullptr;
  entry.kind = kova::internal::classifyConverter(entry.model);
  kova::internal::resetConverter(entry.model);

  char* const ownName = name != nullptr ? strdup(name) : nullptr;
  try {
    if ((name == nullptr) == (ownName == nullptr)) {
      if (entries.empty()) entries.rehash(kBuckets);
      return &entries.emplace(ownName, entry).first->second;
    }
  } catch (const std::bad_alloc&) {
  }
  std::free(ownName);
  kova::internal::closeConverter(entry.model);
  return nullptr;
}

UConverter* KOVAStringCodepageConverter::Open(const char* name) noexcept {
  const KOVAMutex::LockGuard_t guard(_table->mutex);
  bool isUnknown = false;
  Entry* const entry = findOrOpen(name, isUnknown);
  if (entry == nullptr) return nullptr;
  if (entry->shared == nullptr) {
    entry->shared = kova::internal::cloneConverter(entry->model);
  } else {
    kova::internal::resetConverter(entry->shared);
  }
  return entry->shared;
}

UConverter* KOVAStringCodepageConverter::GetBestCodepageConverter(const char* name) noexcept {
  UConverter* const converter = Open(name);
  return converter != nullptr ? converter : Open(nullptr);
}

UConverter* KOVAStringCodepageConverter::openOwn(const char* name, CodepageKind& kind,
                                                 bool& isUnknown) noexcept {
  const KOVAMutex::LockGuard_t guard(_table->mutex);
  Entry* const entry = findOrOpen(name, isUnknown);
  if (entry == nullptr) return nullptr;
  kind = entry->kind;
  return kova::internal::cloneConverter(entry->model);
}
