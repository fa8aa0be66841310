#include "kovabase/platform/DecimalPoint.h"

#include <langinfo.h>

namespace kova::platform {

bool isDecimalPointPlain() noexcept {
  const char* const point = nl_langinfo(RADIXCHAR);
  return point[0] == '.' && point[1] == '\0';
}

}  // namespace kova::platform
