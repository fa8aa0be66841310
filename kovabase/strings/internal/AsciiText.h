#pragma once

#include "kovabase/strings/KOVAString.h"
#include "kovabase/strings/KOVAStringCharUtil.h"
#include "kovabase/strings/internal/CodeUnits.h"

#include <cstddef>
#include <optional>

namespace kova::internal {

/// The US-ASCII form of a string, '_' for what is outside it, for functions that read numbers.
/// Short texts that are ASCII already cost neither a conversion nor an allocation.
class AsciiText {
 public:
  explicit AsciiText(const KOVAString& text) {
    const std::size_t length = static_cast<std::size_t>(text.length());
    if (length < sizeof(_short) && narrowASCII(text.getUnits(), length, _short) == length) {
      _short[length] = 0;
    } else {
      _converted.emplace(text, true, '_');
    }
  }
  AsciiText(const AsciiText&) = delete;
  AsciiText& operator=(const AsciiText&) = delete;

  /// Zero-terminated; null when there is no such form.
  const char* get() const noexcept { return _converted ? _converted->GetBuffer() : _short; }

 private:
  char _short[128];
  std::optional<KOVAStringAsciiCharUtil> _converted;
};

}  // namespace kova::internal
