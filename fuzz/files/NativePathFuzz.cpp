// Names of the system, whatever their bytes, survive the way into stored paths and back; stored
// paths of any units become a name of the system or nothing.

#include "kovabase/platform/NativePath.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using kova::platform::NativePath;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  const std::vector<unsigned short> stored = kova::platform::storedForm(name.data(), name.size());
  const NativePath native(stored.data(), static_cast<int>(stored.size()));
  const bool canBeName = !name.empty() && name.find('\0') == std::string::npos &&
                         stored.size() <= NativePath::kMostUnits;
  require(native.isValid() == canBeName);
  if (canBeName) require(native.text() == name);

  std::vector<unsigned short> units(size / 2);
  if (!units.empty()) std::memcpy(units.data(), data, units.size() * 2);
  const NativePath path(units.data(), static_cast<int>(units.size()));
  if (path.isValid()) {
    const std::size_t length = std::strlen(path.text());
    require(length > 0 && length <= units.size() * 3);
  }
  return 0;
}
