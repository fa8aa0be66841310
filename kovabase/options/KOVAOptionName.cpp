#include "kovabase/options/KOVAOptionName.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/containers/internal/HashIndex.h"
#include "kovabase/foundation/internal/Heap.h"
#include "kovabase/options/internal/NameParts.h"

#include <atomic>
#include <climits>
#include <new>

using namespace KOVAResultCode;
using namespace kova::internal;

namespace {

constexpr int kNoMatch = 65535;

// The registry's place is there before any code runs; the array in it is built on first use.
union RegistryPlace {
  constexpr RegistryPlace() : unused(0) {}
  ~RegistryPlace() {}

  char unused;
  KOVADynamicArray<KOVAOptionName*> names;
};
constinit RegistryPlace registryPlace;

KOVADynamicArray<KOVAOptionName*>& registry() {
  static const bool isBuilt = [] {
    ::new (&registryPlace.names) KOVADynamicArray<KOVAOptionName*>();
    return true;
  }();
  static_cast<void>(isBuilt);
  return registryPlace.names;
}

// Hosts reach the registry by its name alone, so it is built when the library is loaded at last.
[[maybe_unused]] const int builtAtLoad = registry().size();

// Counts assignments to names, which make what is known of them stale.
constinit std::atomic<unsigned> assignments{0};

// The declared names, split and hashed once each: by whole name for the plain question, and by part
// for the one with wildcards.
class DeclaredNames {
 public:
  bool hasMatch(const KOVAString& asked) {
    update();
    const NamePart whole{asked.getUnits(), asked.length()};
    if (_wholeNames.find(whole.hash(), [&](int i) { return wholeName(i).equals(whole); }) >= 0) {
      return true;
    }

    KOVADynamicArray<AskedPart> parts;
    long long score = 0;
    NamePartCursor cursor(asked);
    for (NamePart part; cursor.next(part);) {
      const int i = parts.size();
      parts.add(AskedPart{part, part.hash()});
      if (!part.isWildcard()) continue;
      // A score from here on loses against no match at all.
      if (i >= 16) return false;
      score += 1LL << i;
    }
    if (score == 0 || score >= kNoMatch) return false;
    for (const Declared& declared : _declared) {
      if (declared.parts == parts.size() && matches(declared, parts)) return true;
    }
    return false;
  }

 private:
  struct AskedPart {
    NamePart name;
    unsigned hash;
  };
  struct DeclaredPart {
    int start;  // in _units
    int count;
    unsigned hash;
  };
  struct Declared {
    int start;  // in _units
    int count;
    int firstPart;
    int parts;
  };

  void update() {
    const unsigned now = assignments.load(std::memory_order_acquire);
    if (_assignments != now) {
      _units.clear();
      _parts.clear();
      _declared.clear();
      _wholeNames.clear();
      _assignments = now;
    }
    const KOVADynamicArray<KOVAOptionName*>& names = registry();
    for (int i = _declared.size(); i < names.size(); ++i) take(*names[i]);
  }

  void take(const KOVAString& name) {
    Declared declared{_units.size(), name.length(), _parts.size(), 0};
    NamePartCursor cursor(name);
    for (NamePart part; cursor.next(part); ++declared.parts) {
      const int start = declared.start + static_cast<int>(part.units - name.getUnits());
      _parts.add(DeclaredPart{start, part.count, part.hash()});
    }
    for (int i = 0; i < name.length(); ++i) _units.add(name.getUnits()[i]);
    _declared.add(declared);
    _wholeNames.add(wholeName(_declared.size() - 1).hash(), _declared.size() - 1);
  }

  NamePart wholeName(int i) const {
    return NamePart{_units.getArray() + _declared[i].start, _declared[i].count};
  }

  bool matches(const Declared& declared, const KOVADynamicArray<AskedPart>& asked) const {
    for (int i = 0; i < declared.parts; ++i) {
      if (asked[i].name.isWildcard()) continue;
      const DeclaredPart& part = _parts[declared.firstPart + i];
      if (part.hash != asked[i].hash) return false;
      if (!NamePart{_units.getArray() + part.start, part.count}.equals(asked[i].name)) return false;
    }
    return true;
  }

  unsigned _assignments = 0;
  // The texts are copies: a name may be assigned to, or die with an unloaded library.
  KOVADynamicArray<unsigned short> _units;
  KOVADynamicArray<DeclaredPart> _parts;
  KOVADynamicArray<Declared> _declared;
  HashIndex _wholeNames;
};

}  // namespace

KOVADynamicArray<KOVAOptionName*>& KOVAOptionName::_optionNames = registryPlace.names;

KOVAOptionName::KOVAOptionName(const KOVAString& name) : _name(name) { registry().add(this); }

KOVAOptionName& KOVAOptionName::operator=(const KOVAOptionName& other) {
  _name = other._name;
  assignments.fetch_add(1, std::memory_order_release);
  return *this;
}

KOVAResult KOVAOptionName::IsValid(const KOVAString& name) {
  struct Shared {
    KOVAMutex mutex;
    DeclaredNames names;
  };
  // Never destroyed: static destructors may still ask.
  static Shared* const shared = create<Shared>();
  KOVAMutex::LockGuard_t guard(shared->mutex);
  return shared->names.hasMatch(name) ? kSuccess : kFailure;
}

KOVAResult KOVAOptionName::Match(const KOVAString& declared, const KOVAString& asked, int& score) {
  if (declared.equalsIgnoreCase(asked)) {
    score = 0;
    return kSuccess;
  }
  long long sum = 0;
  bool isFitting = true;
  bool isMatching = true;
  NamePartCursor declaredCursor(declared);
  NamePartCursor askedCursor(asked);
  for (int i = 0;; ++i) {
    NamePart declaredPart;
    NamePart askedPart;
    const bool hasDeclared = declaredCursor.next(declaredPart);
    const bool hasAsked = askedCursor.next(askedPart);
    if (hasDeclared != hasAsked) {
      // Different numbers of parts come before whatever the parts say.
      score = kNoMatch;
      return kSuccess;
    }
    if (!hasAsked) break;
    if (!isMatching || !isFitting) continue;
    if (askedPart.isWildcard()) {
      isFitting = i < 31;
      if (isFitting) sum += 1LL << i;
    } else {
      isMatching = declaredPart.equals(askedPart);
    }
  }
  if (!isMatching) {
    score = kNoMatch;
    return kSuccess;
  }
  if (!isFitting) return kFailure;
  score = static_cast<int>(sum);
  return kSuccess;
}
