#include "kovabase/files/KOVATarnSystem.h"

#include "kovabase/concurrency/KOVAMutex.h"
#include "kovabase/foundation/KOVAAllocException.h"

#include <clocale>
#include <new>
#include <string>

namespace {

struct RememberedLocale {
  KOVAMutex lock;
  int guardCount = 0;
  std::string codePage;
  std::string all;
};

RememberedLocale& remembered() try {
  static RememberedLocale* const locale = new RememberedLocale;
  return *locale;
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

std::string currentLocale(int category) try {
  const char* const name = std::setlocale(category, nullptr);
  return name != nullptr ? name : "";
} catch (const std::bad_alloc&) {
  throw KOVAAllocException();
}

void refresh(int category, std::string RememberedLocale::*name) {
  RememberedLocale& locale = remembered();
  const KOVAMutex::LockGuard_t guard(locale.lock);
  if (locale.guardCount == 0 || (locale.*name).empty()) return;
  if (currentLocale(category) != locale.*name) std::setlocale(category, (locale.*name).c_str());
}

}  // namespace

KOVATarnSystem::LocaleGuard_t::LocaleGuard_t() {
  RememberedLocale& locale = remembered();
  const KOVAMutex::LockGuard_t guard(locale.lock);
  if (locale.guardCount == 0) {
    locale.codePage = currentLocale(LC_CTYPE);
    locale.all = currentLocale(LC_ALL);
  }
  ++locale.guardCount;
}

KOVATarnSystem::LocaleGuard_t::~LocaleGuard_t() {
  RememberedLocale& locale = remembered();
  const KOVAMutex::LockGuard_t guard(locale.lock);
  --locale.guardCount;
}

void KOVATarnSystem::RefreshACPLocale() { refresh(LC_CTYPE, &RememberedLocale::codePage); }

void KOVATarnSystem::RefreshLocale() { refresh(LC_ALL, &RememberedLocale::all); }
