#include "apps/kova-translate/preview/PageText.h"

#include "kovabase/io/KOVAStringOutputStream.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace kova::translate::preview {

std::string toText(double value, int decimals) {
  char digits[400];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr;
  std::string text(digits, end);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string toLengthText(double value) {
  if (value == 0.0) return "0";
  if (!std::isfinite(value)) return "more than 1.7e+308";
  if (value >= 1e-3 && value < 1e7) {
    const int digits = static_cast<int>(std::floor(std::log10(value))) + 1;
    return toText(value, std::clamp(4 - digits, 0, 6));
  }
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::general, 4).ptr};
}

std::string toCountText(std::uint64_t count, const char* noun) {
  std::string digits = std::to_string(count);
  for (int i = static_cast<int>(digits.size()) - 3; digits.size() > 4 && i > 0; i -= 3) {
    digits.insert(static_cast<std::size_t>(i), "\u202F");
  }
  return digits + ' ' + noun + (count == 1 ? "" : "s");
}

std::string toXml(const KOVAString& text, int mostUnits) {
  KOVAString shown;
  const auto isHigh = [](unsigned unit) { return (unit & 0xFC00) == 0xD800; };
  const auto isLow = [](unsigned unit) { return (unit & 0xFC00) == 0xDC00; };
  for (int i = 0; i < text.length(); ++i) {
    if (shown.length() >= mostUnits) {
      shown.append(static_cast<unsigned short>(0x2026));
      break;
    }
    const unsigned short unit = text.charAt(i);
    if (isHigh(unit) && i + 1 < text.length() && isLow(text.charAt(i + 1))) {
      shown.append(unit);
      shown.append(text.charAt(++i));
    } else if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit >= 0xFFFE ||
               (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069)) {
      shown.append(static_cast<unsigned short>(' '));
    } else {
      shown.append(unit);
    }
  }
  // Lone surrogates become replacement characters here.
  KOVAStringOutputStream bytes;
  bytes.Write(shown);
  std::string xml;
  for (const char c : std::string_view(bytes.GetBytes(), bytes.GetByteCount())) {
    switch (c) {
      case '&': xml += "&amp;"; break;
      case '<': xml += "&lt;"; break;
      case '>': xml += "&gt;"; break;
      default: xml += c;
    }
  }
  return xml;
}

const char* getUnitSymbol(KOVAUnit unit) {
  switch (unit) {
    case KOVAUnitNanometer: return "nm";
    case KOVAUnitMicrometer: return "µm";
    case KOVAUnitMillimeter: return "mm";
    case KOVAUnitCentimeter: return "cm";
    case KOVAUnitDecimeter: return "dm";
    case KOVAUnitMeter: return "m";
    case KOVAUnitInch: return "in";
    case KOVAUnitFoot: return "ft";
    case KOVAUnitMile: return "mi";
    case KOVAUnitKilometer: return "km";
    case KOVAUnitMilliinch: return "mil";
    case KOVAUnitMicroinch: return "µin";
    default: return "";
  }
}

}  // namespace kova::translate::preview
