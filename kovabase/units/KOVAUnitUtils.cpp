#include "kovabase/units/KOVAUnitUtils.h"

#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/internal/LengthUnits.h"

#include <cstddef>

namespace {

// In the order of the numbers, from 0 on.
constexpr const char* kMassUnits[] = {
    "Unknown",  "Model specific unit", "Milligram", "Centigram", "Decigram",   "Gram",
    "Kilogram", "PoundMass",           "Tonne",     "Slug",      "lbf*sec2/in"};
constexpr const char* kTemperatureUnits[] = {"Unknown", "Model specific unit", "Fahrenheit",
                                             "Celsius", "Kelvin"};
constexpr const char* kTimeUnits[] = {"Unknown",     "Model specific unit",
                                      "Nanosecond",  "Microsecond",
                                      "Millisecond", "Second",
                                      "Minute",      "Hour",
                                      "Day"};
constexpr const char* kUnitSystems[] = {"UNINITIALIZED", "MKS",  "CGS",     "FPS", "IPS",
                                        "MMKS",          "MMNS", "IPSCreo", "SI",  "Not Applicable",
                                        "Custom"};

template <std::size_t kCount>
KOVAString lookUp(const char* const (&texts)[kCount], int number, int otherwise) {
  return KOVAString(texts[number >= 0 && number < static_cast<int>(kCount) ? number : otherwise]);
}

}  // namespace

void KOVAUnitUtils::KOVAUnit_To_String(KOVAUnit unit, KOVAString& text) {
  const kova::internal::LengthUnit* found = kova::internal::findLengthUnit(unit);
  if (found == nullptr) found = kova::internal::findLengthUnit(KOVAUnitCentimeter);
  text = KOVAString(found->displayText);
}

void KOVAUnitUtils::KOVAMassUnit_To_String(KOVAMassUnit unit, KOVAString& text) {
  text = lookUp(kMassUnits, unit, KOVAMassUnitGram);
}

void KOVAUnitUtils::KOVATemperatureUnit_To_String(KOVATemperatureUnit unit, KOVAString& text) {
  text = lookUp(kTemperatureUnits, unit, KOVATemperatureUnitKelvin);
}

void KOVAUnitUtils::KOVATimeUnit_To_String(KOVATimeUnit unit, KOVAString& text) {
  text = lookUp(kTimeUnits, unit, KOVATimeUnitSecond);
}

void KOVAUnitUtils::KOVAUnitSystem_To_String(KOVAUnitSystem system, KOVAString& text) {
  text = lookUp(kUnitSystems, system, KOVAUnitSystemCustom);
}
