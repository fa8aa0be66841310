#include "kovabase/platform/Locale.h"

#include <cerrno>
#include <locale.h>
#include <memory>
#include <new>
#include <stdlib.h>

namespace kova::platform {

namespace {

struct PushedLocale {
  locale_t override;
  locale_t previous;
};

// Null when the system cannot make it; built on first use and never freed.
locale_t cLocale() noexcept {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
  return locale;
}

}  // namespace

double readDouble(const char* text, const char*& end) noexcept {
  const int savedError = errno;
  char* stop = nullptr;
  const double value =
      cLocale() != locale_t{} ? strtod_l(text, &stop, cLocale()) : strtod(text, &stop);
  errno = savedError;
  end = stop;
  return value;
}

void* pushCNumericLocale() noexcept {
  std::unique_ptr<PushedLocale> pushed(new (std::nothrow) PushedLocale{});
  if (pushed == nullptr) return nullptr;
  const locale_t copy = duplocale(uselocale(locale_t{}));
  if (copy == locale_t{}) return nullptr;
  // On success newlocale has taken the copy over.
  pushed->override = newlocale(LC_NUMERIC_MASK, "C", copy);
  if (pushed->override == locale_t{}) {
    freelocale(copy);
    return nullptr;
  }
  pushed->previous = uselocale(pushed->override);
  return pushed.release();
}

void popNumericLocale(void* pushed) noexcept {
  const std::unique_ptr<PushedLocale> owned(static_cast<PushedLocale*>(pushed));
  if (owned == nullptr) return;
  uselocale(owned->previous);
  freelocale(owned->override);
}

}  // namespace kova::platform
