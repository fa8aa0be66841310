#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/units/KOVAUnit.h"

class KOVAString;

/// The units of mass.
enum KOVAMassUnit : int {
  KOVAMassUnitUnknown = 0,
  KOVAMassUnitModel = 1,
  KOVAMassUnitMilligram = 2,
  KOVAMassUnitCentigram = 3,
  KOVAMassUnitDecigram = 4,
  KOVAMassUnitGram = 5,
  KOVAMassUnitKilogram = 6,
  KOVAMassUnitPoundMass = 7,
  KOVAMassUnitTonne = 8,
  KOVAMassUnitSlug = 9,
  /// Pound-force times second squared per inch.
  KOVAMassUnitPoundForceSecondSquaredPerInch = 10,
};

/// The units of temperature.
enum KOVATemperatureUnit : int {
  KOVATemperatureUnitUnknown = 0,
  KOVATemperatureUnitModel = 1,
  KOVATemperatureUnitFahrenheit = 2,
  KOVATemperatureUnitCelsius = 3,
  KOVATemperatureUnitKelvin = 4,
};

/// The units of time.
enum KOVATimeUnit : int {
  KOVATimeUnitUnknown = 0,
  KOVATimeUnitModel = 1,
  KOVATimeUnitNanosecond = 2,
  KOVATimeUnitMicrosecond = 3,
  KOVATimeUnitMillisecond = 4,
  KOVATimeUnitSecond = 5,
  KOVATimeUnitMinute = 6,
  KOVATimeUnitHour = 7,
  KOVATimeUnitDay = 8,
};

/// The systems of units that models are kept in, by length, mass (or force) and time.
enum KOVAUnitSystem : int {
  KOVAUnitSystemUninitialized = 0,
  KOVAUnitSystemMKS = 1,
  KOVAUnitSystemCGS = 2,
  KOVAUnitSystemFPS = 3,
  KOVAUnitSystemIPS = 4,
  KOVAUnitSystemMMKS = 5,
  KOVAUnitSystemMMNS = 6,
  KOVAUnitSystemIPSCreo = 7,
  KOVAUnitSystemSI = 8,
  KOVAUnitSystemNotApplicable = 9,
  KOVAUnitSystemCustom = 10,
};

/// The texts under which people are shown units. A number out of range gives the text of the last
/// resort of its kind, which each function names. Any thread.
class KOVABASE_API KOVAUnitUtils {
 public:
  KOVAUnitUtils() = delete;

  /// Out of range "Centimeter".
  static void KOVAUnit_To_String(KOVAUnit unit, KOVAString& text);
  /// Out of range "Gram".
  static void KOVAMassUnit_To_String(KOVAMassUnit unit, KOVAString& text);
  /// Out of range "Kelvin".
  static void KOVATemperatureUnit_To_String(KOVATemperatureUnit unit, KOVAString& text);
  /// Out of range "Second".
  static void KOVATimeUnit_To_String(KOVATimeUnit unit, KOVAString& text);
  /// Out of range "Custom".
  static void KOVAUnitSystem_To_String(KOVAUnitSystem system, KOVAString& text);
};
