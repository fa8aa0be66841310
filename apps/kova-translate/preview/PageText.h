#pragma once

#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/KOVAUnit.h"

#include <cstdint>
#include <string>

/// Texts and numbers as the page shows them, the same in every locale.
namespace kova::translate::preview {

/// Never in exponent form, without zeros at the end.
std::string toText(double value, int decimals = 2);

/// For people: four digits, or all that stand before the point.
std::string toLengthText(double value);

/// "1 part", "12 345 parts".
std::string toCountText(std::uint64_t count, const char* noun);

/// As the content of an XML element: one line, without what XML does not take or what turns the
/// direction of the text, cut after `mostUnits` UTF-16 units.
std::string toXml(const KOVAString& text, int mostUnits);

/// "mm"; empty for a unit without a length.
const char* getUnitSymbol(KOVAUnit unit);

}  // namespace kova::translate::preview
