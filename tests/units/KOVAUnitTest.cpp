#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/Gk_Unit.h"
#include "kovabase/units/KOVASystemUnits.h"
#include "kovabase/units/KOVAUnit.h"
#include "kovabase/units/KOVAUnitUtils.h"
#include "kovabase/units/KOVAUnitValue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

constexpr long kSuccess = KOVAResultCode::kSuccess;
constexpr long kUnknown = KOVAResultCode::kErrorEncountered;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kOutOfRange[] = {-1, 14, std::numeric_limits<int>::min(),
                               std::numeric_limits<int>::max()};

std::string bytesOf(const KOVAString& text) {
  char bytes[64];
  EXPECT_EQ(text.convertToUTF8(bytes, sizeof bytes), kSuccess);
  return bytes;
}

template <class E>
std::string displayTextOf(void (*toString)(E, KOVAString&), int number) {
  KOVAString text;
  toString(static_cast<E>(number), text);
  return bytesOf(text);
}

struct {
  const char* name;
  const char* text;
  const char* displayText;
  double metres;
} const kUnits[] = {
    {"UNKNOWN", "UNKNOWN", "Unknown", 0},
    {"MODELUNIT", "MODEL UNIT", "Model specific unit", 0},
    {"NANOMETER", "NANOMETER", "Nanometer", 1e-9},
    {"MICROMETER", "MICROMETER", "Micrometer", 1e-6},
    {"MILLIMETER", "MILLIMETER", "Millimeter", 0.001},
    {"CENTIMETER", "CENTIMETER", "Centimeter", 0.01},
    {"DECIMETER", "DECIMETER", "Decimeter", 0.1},
    {"METER", "METER", "Meter", 1.0},
    {"INCH", "INCH", "Inch", 0.0254},
    {"FOOT", "FOOT", "Foot", 0.30479999999999996},
    {"MILE", "MILE", "Mile", 1609.3439999999998},
    {"KM", "KILOMETER", "Kilometer", 1000.0},
    {"MILLIINCH", "MILLIINCH", "Milliinch", 2.54e-5},
    {"MICROINCH", "MICROINCH", "Microinch", 2.54e-8},
};

TEST(KOVAUnit, EveryUnitHasItsNamesAndLengthAndIsFoundByThem) {
  for (int number = 0; number < 14; ++number) {
    const auto& expected = kUnits[number];
    SCOPED_TRACE(expected.name);
    const KOVAUnit unit = static_cast<KOVAUnit>(number);
    const bool hasLength = number >= 2;
    KOVAString name;
    EXPECT_EQ(GetUnitName(unit, name), hasLength ? kSuccess : kUnknown);
    EXPECT_EQ(bytesOf(name), expected.name);
    KOVAString text;
    EXPECT_EQ(KOVAUnitValue::GetUnitAsString(unit, text), kSuccess);
    EXPECT_EQ(bytesOf(text), expected.text);
    KOVAUnit found = static_cast<KOVAUnit>(-1);
    EXPECT_EQ(KOVAUnitValue::GetUnitFromString(found, text), kSuccess);
    EXPECT_EQ(found, unit);
    EXPECT_EQ(displayTextOf(KOVAUnitUtils::KOVAUnit_To_String, number), expected.displayText);

    double metres = -1;
    EXPECT_EQ(GetUnitScaleFactor(unit, metres), hasLength ? kSuccess : kUnknown);
    EXPECT_EQ(metres, expected.metres);
    Gk_Unit gkUnit("left over", 3);
    EXPECT_EQ(GetGkUnitFromKOVAUnit(unit, gkUnit), hasLength ? kSuccess : kUnknown);
    EXPECT_EQ(gkUnit.IsSet(), hasLength);
    EXPECT_EQ(gkUnit.getFactor(), expected.metres * 1000);
    EXPECT_TRUE(gkUnit.getName() == (hasLength ? expected.name : ""));
    if (!hasLength) continue;
    EXPECT_EQ(GetKOVAUnit(metres, found), kSuccess);
    EXPECT_EQ(found, unit);
    EXPECT_EQ(GetKOVAUnitFromGkUnit(gkUnit, found), kSuccess);
    EXPECT_EQ(found, unit);
  }
}

TEST(KOVAUnit, NumbersOutOfRangeAreUnknownAndTouchNoText) {
  for (const int number : kOutOfRange) {
    SCOPED_TRACE(number);
    const KOVAUnit unit = static_cast<KOVAUnit>(number);
    KOVAString text("untouched");
    EXPECT_EQ(GetUnitName(unit, text), kUnknown);
    EXPECT_EQ(KOVAUnitValue::GetUnitAsString(unit, text), kUnknown);
    EXPECT_EQ(bytesOf(text), "untouched");
    double metres = 7;
    EXPECT_EQ(GetUnitScaleFactor(unit, metres), kUnknown);
    EXPECT_EQ(metres, 0);
    Gk_Unit gkUnit("inch", 25.4);
    EXPECT_EQ(GetGkUnitFromKOVAUnit(unit, gkUnit), kUnknown);
    EXPECT_FALSE(gkUnit.IsSet());
    EXPECT_EQ(KOVAUnitValue::GetScalingFactor(unit, KOVAUnitMeter), 1);
  }
}

TEST(KOVAUnit, LengthsMatchWithinTheToleranceOfTheirUnit) {
  struct {
    double metres;
    KOVAUnit unit;
    long result;
  } const cases[] = {
      {0.3048, KOVAUnitFoot, kSuccess},
      {1609.344, KOVAUnitMile, kSuccess},
      {1.05e-9, KOVAUnitNanometer, kSuccess},
      {1.2e-9, KOVAUnitUnknown, kSuccess},
      {0.0010000002, KOVAUnitUnknown, kSuccess},  // the fine tolerance
      {0.0254099, KOVAUnitInch, kSuccess},
      {0.0254101, KOVAUnitUnknown, kSuccess},
      {0.100009, KOVAUnitDecimeter, kSuccess},
      {2.54001e-5, KOVAUnitUnknown, kSuccess},
      {2.5400099e-5, KOVAUnitMilliinch, kSuccess},
      {2.549e-8, KOVAUnitMicroinch, kSuccess},
      {0.00254, KOVAUnitUnknown, kSuccess},
      {kInfinity, KOVAUnitUnknown, kSuccess},
      {1e-300, KOVAUnitUnknown, kSuccess},
      {0, KOVAUnitMile, kUnknown},  // as it was before
      {-0.0254, KOVAUnitMile, kUnknown},
      {kNaN, KOVAUnitMile, kUnknown},
  };
  for (const auto& c : cases) {
    KOVAUnit unit = KOVAUnitMile;
    EXPECT_EQ(GetKOVAUnit(c.metres, unit), c.result) << c.metres;
    EXPECT_EQ(unit, c.unit) << c.metres;
  }
  KOVAUnit unit = KOVAUnitMile;
  EXPECT_EQ(GetKOVAUnitFromGkUnit(Gk_Unit(), unit), kUnknown);
  EXPECT_EQ(unit, KOVAUnitUnknown);
}

TEST(KOVAUnitValue, ReadsKeywordsInAnyCase) {
  struct {
    KOVAUnit unit;
    const char* keywords[3];
  } const cases[] = {
      {KOVAUnitNanometer, {"nm"}},
      {KOVAUnitModel, {"model", "Model Unit"}},
      {KOVAUnitMicrometer, {"MICR", "uM", "Micrometers"}},
      {KOVAUnitMillimeter, {"Mm", "mm", "millimeters"}},
      {KOVAUnitCentimeter, {"CM", "centimeters"}},
      {KOVAUnitDecimeter, {"deci", "decimeters"}},
      {KOVAUnitMeter, {"m", "M", "meters"}},
      {KOVAUnitInch, {"in", "inches"}},
      {KOVAUnitFoot, {"ft", "feets"}},
      {KOVAUnitMile, {"mi", "miles", "mils"}},
      {KOVAUnitKilometer, {"km", "kilometers"}},
      {KOVAUnitMilliinch, {"mil", "milliinches"}},
      {KOVAUnitMicroinch, {"uin", "microinches"}},
  };
  for (const auto& c : cases) {
    for (const char* keyword : c.keywords) {
      if (keyword == nullptr) continue;
      KOVAUnit unit = KOVAUnitUnknown;
      EXPECT_EQ(KOVAUnitValue::GetUnitFromString(unit, KOVAString(keyword)), kSuccess) << keyword;
      EXPECT_EQ(unit, c.unit) << keyword;
    }
  }

  const unsigned short zeroInside[] = {'m', 'm', 0, 'x'};
  const unsigned short loneSurrogates[] = {0xDC00, 'm', 0xD800};
  const KOVAString refused[] = {"",
                                " mm",
                                "mm ",
                                "MODELUNIT",
                                "nanometers",
                                "dm",
                                "feet",
                                "kmm",
                                "%s%n",
                                "µm",
                                std::string(100000, 'm').c_str(),
                                KOVAString::fromUnits(zeroInside, 4),
                                KOVAString::fromUnits(zeroInside, 3),
                                KOVAString::fromUnits(loneSurrogates, 3)};
  for (const KOVAString& text : refused) {
    KOVAUnit unit = KOVAUnitFoot;
    EXPECT_EQ(KOVAUnitValue::GetUnitFromString(unit, text), KOVAResultCode::kFailure);
    EXPECT_EQ(unit, KOVAUnitFoot);
  }
}

TEST(KOVAUnitValue, ScalesFromOneUnitToTheOther) {
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitInch, KOVAUnitMillimeter), 25.4);
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitFoot, KOVAUnitMeter), 0.30479999999999996);
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitMeter, KOVAUnitKilometer), 0.001);
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitInch, KOVAUnitUnknown), 1);
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitModel, KOVAUnitInch), 1);

  EXPECT_EQ(Gk_Unit("zero", 0).mapTo(Gk_Unit("mm", 1)), 1);
  EXPECT_EQ(Gk_Unit("mm", 1).mapTo(Gk_Unit("zero", 0)), 1);
  EXPECT_EQ(Gk_Unit("cm", 10).mapTo(Gk_Unit()), 1);
  EXPECT_EQ(Gk_Unit("cm", 10).mapTo(Gk_Unit("mm", 1)), 10);
  EXPECT_TRUE(Gk_Unit(nullptr, 2) == Gk_Unit("", 2));
  EXPECT_FALSE(Gk_Unit("mm", 1) == Gk_Unit("MM", 1));
  EXPECT_FALSE(Gk_Unit("", 0) == Gk_Unit());
}

TEST(KOVAUnitValue, SettingsStartAsStatedAndAreKeptApart) {
  EXPECT_EQ(KOVAUnitValue::GetApplicationUnit(), 1);
  EXPECT_EQ(KOVAUnitValue::GetReadUnit(), 0);
  EXPECT_EQ(KOVAUnitValue::GetWriteUnit(), 1);
  EXPECT_EQ(KOVAUnitValue::GetUnitWhenUnspecified(), 0);
  KOVAUnitValue::SetApplicationUnit(KOVAUnitInch);
  KOVAUnitValue::SetReadUnit(KOVAUnitFoot);
  KOVAUnitValue::SetWriteUnit(KOVAUnitMile);
  KOVAUnitValue::SetUnitWhenUnspecified(static_cast<KOVAUnit>(-3));
  EXPECT_EQ(KOVAUnitValue::GetApplicationUnit(), KOVAUnitInch);
  EXPECT_EQ(KOVAUnitValue::GetReadUnit(), KOVAUnitFoot);
  EXPECT_EQ(KOVAUnitValue::GetWriteUnit(), KOVAUnitMile);
  EXPECT_EQ(KOVAUnitValue::GetUnitWhenUnspecified(), -3);
}

TEST(KOVASystemUnits, AreUnsetUntilTheyAreSet) {
  const auto expectUnits = [](KOVAUnit sending, KOVAUnit receiving) {
    KOVAUnit unit = KOVAUnitMicroinch;
    EXPECT_EQ(get_sending_system_unit(unit), kSuccess);
    EXPECT_EQ(unit, sending);
    EXPECT_EQ(get_receiving_system_unit(unit), kSuccess);
    EXPECT_EQ(unit, receiving);
  };
  KOVAUnit centimeter = KOVAUnitCentimeter;
  expectUnits(KOVAUnitUnknown, KOVAUnitModel);
  EXPECT_EQ(set_sending_system_unit(KOVAUnitInch), kSuccess);
  expectUnits(KOVAUnitInch, KOVAUnitModel);
  EXPECT_EQ(set_receiving_system_unit(&centimeter), kSuccess);
  expectUnits(KOVAUnitInch, KOVAUnitCentimeter);
  EXPECT_EQ(set_sending_system_unit(nullptr), kSuccess);
  expectUnits(KOVAUnitUnknown, KOVAUnitCentimeter);
  EXPECT_EQ(set_internal_unit(KOVAUnitFoot, KOVAUnitUnknown), kSuccess);
  expectUnits(KOVAUnitFoot, KOVAUnitUnknown);  // set, though unknown
  EXPECT_EQ(set_internal_unit(false), kSuccess);
  expectUnits(KOVAUnitUnknown, KOVAUnitModel);

  KOVAUnitValue::SetApplicationUnit(KOVAUnitMeter);
  KOVAUnitValue::SetWriteUnit(KOVAUnitMile);
  EXPECT_EQ(set_internal_unit(true), kSuccess);
  expectUnits(KOVAUnitMeter, KOVAUnitMile);
}

template <class E, std::size_t kCount>
void expectTexts(void (*toString)(E, KOVAString&), const char* const (&texts)[kCount],
                 const char* outOfRange) {
  for (std::size_t i = 0; i < kCount; ++i) {
    EXPECT_EQ(displayTextOf(toString, static_cast<int>(i)), texts[i]);
  }
  EXPECT_EQ(displayTextOf(toString, static_cast<int>(kCount)), outOfRange);
  for (const int number : kOutOfRange) EXPECT_EQ(displayTextOf(toString, number), outOfRange);
}

TEST(KOVAUnitUtils, ShowsUnitsToPeople) {
  for (const int number : kOutOfRange) {
    EXPECT_EQ(displayTextOf(KOVAUnitUtils::KOVAUnit_To_String, number), "Centimeter");
  }
  expectTexts(KOVAUnitUtils::KOVAMassUnit_To_String,
              {"Unknown", "Model specific unit", "Milligram", "Centigram", "Decigram", "Gram",
               "Kilogram", "PoundMass", "Tonne", "Slug", "lbf*sec2/in"},
              "Gram");
  expectTexts(KOVAUnitUtils::KOVATemperatureUnit_To_String,
              {"Unknown", "Model specific unit", "Fahrenheit", "Celsius", "Kelvin"}, "Kelvin");
  expectTexts(KOVAUnitUtils::KOVATimeUnit_To_String,
              {"Unknown", "Model specific unit", "Nanosecond", "Microsecond", "Millisecond",
               "Second", "Minute", "Hour", "Day"},
              "Second");
  expectTexts(KOVAUnitUtils::KOVAUnitSystem_To_String,
              {"UNINITIALIZED", "MKS", "CGS", "FPS", "IPS", "MMKS", "MMNS", "IPSCreo", "SI",
               "Not Applicable", "Custom"},
              "Custom");
}

}  // namespace
