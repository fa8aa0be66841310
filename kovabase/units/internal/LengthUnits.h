#pragma once

/// The texts and lengths of the units of length.
namespace kova::internal {

struct LengthUnit {
  /// In one word.
  const char* name;
  /// What is written for it and read back.
  const char* text;
  /// What people are shown.
  const char* displayText;
  /// 0 for a unit without a length.
  double metres;
};

/// In the order of the numbers of `KOVAUnit`, from 0 on.
inline constexpr LengthUnit kLengthUnits[] = {
    {"UNKNOWN", "UNKNOWN", "Unknown", 0.0},
    {"MODELUNIT", "MODEL UNIT", "Model specific unit", 0.0},
    {"NANOMETER", "NANOMETER", "Nanometer", 1e-9},
    {"MICROMETER", "MICROMETER", "Micrometer", 1e-6},
    {"MILLIMETER", "MILLIMETER", "Millimeter", 0.001},
    {"CENTIMETER", "CENTIMETER", "Centimeter", 0.01},
    {"DECIMETER", "DECIMETER", "Decimeter", 0.1},
    {"METER", "METER", "Meter", 1.0},
    {"INCH", "INCH", "Inch", 0.0254},
    {"FOOT", "FOOT", "Foot", 12 * 0.0254},
    {"MILE", "MILE", "Mile", 63360 * 0.0254},
    {"KM", "KILOMETER", "Kilometer", 1000.0},
    {"MILLIINCH", "MILLIINCH", "Milliinch", 2.54e-5},
    {"MICROINCH", "MICROINCH", "Microinch", 2.54e-8},
};
inline constexpr int kLengthUnitCount = sizeof(kLengthUnits) / sizeof(kLengthUnits[0]);

/// The unit of a `KOVAUnit`; null out of range.
inline const LengthUnit* findLengthUnit(int number) {
  return number >= 0 && number < kLengthUnitCount ? &kLengthUnits[number] : nullptr;
}

/// Null for a unit without a length.
inline const LengthUnit* findMeasurableUnit(int number) {
  const LengthUnit* const found = findLengthUnit(number);
  return found != nullptr && found->metres > 0.0 ? found : nullptr;
}

}  // namespace kova::internal
