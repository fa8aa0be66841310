#include "kovabase/options/internal/EnvironmentText.h"

#include "kovabase/strings/KOVAString.h"

#include <cstring>
#include <utility>

namespace kova::internal {

bool toEnvironmentText(const KOVAString& text, std::string& narrow) {
  const int size = text.getConvertToMBCSSize(nullptr);
  if (size < 1 || text.indexOf(static_cast<unsigned short>(0)) >= 0) return false;
  std::string buffer(static_cast<std::size_t>(size), '\0');
  if (text.convertToMBCS(buffer.data(), size, nullptr, true, '_').IsFailure()) return false;
  buffer.resize(std::strlen(buffer.c_str()));
  narrow = std::move(buffer);
  return true;
}

bool toEnvironmentName(const KOVAString& name, std::string& narrow) {
  std::string text;
  if (!toEnvironmentText(name, text) || text.empty() || text.find('=') != std::string::npos) {
    return false;
  }
  narrow = std::move(text);
  return true;
}

}  // namespace kova::internal
