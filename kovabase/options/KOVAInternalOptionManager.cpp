#include "kovabase/options/KOVAInternalOptionManager.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/containers/internal/HashIndex.h"
#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/options/KOVAOption.h"

/// Options by their full names, case kept; entries are never taken out.
class KOVAInternalOptionManager::KOVAInternalOptionsMap {
 public:
  KOVAOption* find(const KOVAString& name) const {
    const int position = _index.find(name.hashCode(), [&](int i) { return _names[i] == name; });
    return position >= 0 ? _options[position] : nullptr;
  }

  KOVAOption* fetch(const KOVAString& name) {
    if (KOVAOption* found = find(name)) return found;
    // The names may run ahead of the options when memory ends; the index knows complete ones alone.
    _names.resize(_options.size());
    _names.add(name);
    _options.add(nullptr);
    KOVAOption*& option = _options[_options.size() - 1];
    try {
      option = new KOVAOption;
      option->ChangeName(name);
      _index.add(name.hashCode(), _options.size() - 1);
    } catch (...) {
      delete option;
      _options.removeAt(_options.size() - 1);
      throw;
    }
    return option;
  }

  int size() const { return _options.size(); }
  const KOVAString& nameAt(int i) const { return _names[i]; }
  KOVAOption& optionAt(int i) const { return *_options[i]; }

  KOVAMutex mutex;

 private:
  KOVADynamicArray<KOVAString> _names;
  KOVADynamicArray<KOVAOption*> _options;
  kova::internal::HashIndex _index;
};

KOVAInternalOptionManager::KOVAInternalOptionsMap& KOVAInternalOptionManager::map() {
  // Never destroyed: options are handed out for the life of the process.
  static KOVAInternalOptionsMap* const map = kova::internal::create<KOVAInternalOptionsMap>();
  return *map;
}

template <class V>
KOVAOption* KOVAInternalOptionManager::setOption(const KOVAString& name, const V& value) {
  KOVAMutex::LockGuard_t guard(map().mutex);
  KOVAOption* const option = map().fetch(name);
  option->SetValue(value);
  return option;
}

KOVAOption* KOVAInternalOptionManager::AddOption(const KOVAString& name, const KOVAString& value) {
  return setOption(name, value);
}

KOVAOption* KOVAInternalOptionManager::AddOption(const KOVAString& name, const char* value) {
  return setOption(name, KOVAString(value));
}

KOVAOption* KOVAInternalOptionManager::AddOption(const KOVAString& name, int value) {
  return setOption(name, value);
}

KOVAOption* KOVAInternalOptionManager::AddOption(const KOVAString& name, double value) {
  return setOption(name, value);
}

KOVAOption* KOVAInternalOptionManager::AddOption(const KOVAString& name, bool value) {
  return setOption(name, value);
}

KOVAOption* KOVAInternalOptionManager::GetOption(const KOVAString& name) {
  KOVAMutex::LockGuard_t guard(map().mutex);
  return map().find(name);
}

void KOVAInternalOptionManager::SynchOptionsBetweenComponents(const KOVAString& from,
                                                              const KOVAString& to) {
  KOVAMutex::LockGuard_t guard(map().mutex);
  const KOVAInternalOptionsMap& options = map();
  for (int i = 0; i < options.size(); ++i) {
    const KOVAString& name = options.nameAt(i);
    if (!from.isEmpty() && !name.startsWith(from)) continue;
    // The leading slash belongs to the component; the path begins with the next one.
    const int slash = name.indexOf(static_cast<unsigned short>('/'), 1);
    KOVAValue value;
    if (slash < 0 || options.optionAt(i).GetValue(value).IsFailure()) continue;
    KOVAString target(to);
    target.append(name.getUnits() + slash, name.length() - slash);
    if (KOVAOption* found = options.find(target)) found->SetValue(value);
  }
}
