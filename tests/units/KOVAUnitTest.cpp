#include "kovabase/strings/KOVAString.h"
#include "kovabase/units/Gk_Unit.h"
#include "kovabase/units/KOVASystemUnits.h"
#include "kovabase/units/KOVAUnit.h"
#include "kovabase/units/KOVAUnitUtils.h"
#include "kovabase/units/KOVAUnitValue.h"

#include <climits>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <sstream>
#include <string>

namespace {

constexpr long kSuccess = KOVAResultCode::kSuccess;
constexpr long kUnknown = KOVAResultCode::kErrorEncountered;
constexpr int kOutOfRange[] = {-1, 14, INT_MIN, INT_MAX};

struct {
  const char* name;
  const char* text;
  double metres;
} const kUnits[] = {{"UNKNOWN", "UNKNOWN", 0},
                    {"MODELUNIT", "MODEL UNIT", 0},
                    {"NANOMETER", "NANOMETER", 1e-9},
                    {"MICROMETER", "MICROMETER", 1e-6},
                    {"MILLIMETER", "MILLIMETER", 0.001},
                    {"CENTIMETER", "CENTIMETER", 0.01},
                    {"DECIMETER", "DECIMETER", 0.1},
                    {"METER", "METER", 1.0},
                    {"INCH", "INCH", 0.0254},
                    {"FOOT", "FOOT", 0.30479999999999996},
                    {"MILE", "MILE", 1609.3439999999998},
                    {"KM", "KILOMETER", 1000.0},
                    {"MILLIINCH", "MILLIINCH", 2.54e-5},
                    {"MICROINCH", "MICROINCH", 2.54e-8}};

std::string bytesOf(const KOVAString& text) {
  char bytes[64];
  EXPECT_EQ(text.convertToUTF8(bytes, sizeof bytes), kSuccess);
  return bytes;
}

TEST(KOVAUnit, EveryUnitHasItsNamesAndLengthAndIsFoundByThem) {
  for (int number = 0; number < 14; ++number) {
    const auto& expected = kUnits[number];
    SCOPED_TRACE(expected.name);
    const KOVAUnit unit = static_cast<KOVAUnit>(number);
    const bool hasLength = number >= 2;
    const long result = hasLength ? kSuccess : kUnknown;
    KOVAString text;
    EXPECT_EQ(GetUnitName(unit, text), result);
    EXPECT_EQ(bytesOf(text), expected.name);
    EXPECT_EQ(KOVAUnitValue::GetUnitAsString(unit, text), kSuccess);
    EXPECT_EQ(bytesOf(text), expected.text);
    KOVAUnit found = static_cast<KOVAUnit>(-1);
    EXPECT_EQ(KOVAUnitValue::GetUnitFromString(found, text), kSuccess);
    EXPECT_EQ(found, unit);

    double metres = -1;
    EXPECT_EQ(GetUnitScaleFactor(unit, metres), result);
    EXPECT_EQ(metres, expected.metres);
    Gk_Unit gkUnit("left over", 3);
    EXPECT_EQ(GetGkUnitFromKOVAUnit(unit, gkUnit), result);
    EXPECT_EQ(gkUnit.IsSet(), hasLength);
    EXPECT_EQ(GetKOVAUnitFromGkUnit(gkUnit, found), result);
    EXPECT_EQ(found, hasLength ? unit : KOVAUnitUnknown);
  }
}

TEST(KOVAUnit, NumbersOutOfRangeAreUnknownAndTouchNoText) {
  for (const int number : kOutOfRange) {
    const KOVAUnit unit = static_cast<KOVAUnit>(number);
    KOVAString text("untouched");
    EXPECT_EQ(GetUnitName(unit, text), kUnknown) << number;
    EXPECT_EQ(KOVAUnitValue::GetUnitAsString(unit, text), kUnknown) << number;
    EXPECT_EQ(bytesOf(text), "untouched");
    double metres = 7;
    EXPECT_EQ(GetUnitScaleFactor(unit, metres), kUnknown) << number;
    EXPECT_EQ(metres, 0);
    EXPECT_EQ(KOVAUnitValue::GetScalingFactor(unit, KOVAUnitMeter), 1) << number;
  }
}

TEST(KOVAUnit, LengthsMatchWithinTheToleranceOfTheirUnit) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  struct {
    double metres;
    KOVAUnit unit;
    long result = kSuccess;
  } const cases[] = {{0.3048, KOVAUnitFoot},          {0.0254099, KOVAUnitInch},
                     {0.0254101, KOVAUnitUnknown},    {0.100009, KOVAUnitDecimeter},
                     {0.0010000002, KOVAUnitUnknown}, {1.05e-9, KOVAUnitNanometer},
                     {1.2e-9, KOVAUnitUnknown},       {2.5400099e-5, KOVAUnitMilliinch},
                     {0.00254, KOVAUnitUnknown},      {1e-300, KOVAUnitUnknown},
                     {0, KOVAUnitMile, kUnknown},     {-0.0254, KOVAUnitMile, kUnknown},
                     {kNaN, KOVAUnitMile, kUnknown}};
  for (const auto& c : cases) {
    KOVAUnit unit = KOVAUnitMile;
    EXPECT_EQ(GetKOVAUnit(c.metres, unit), c.result) << c.metres;
    EXPECT_EQ(unit, c.unit) << c.metres;
  }
}

TEST(KOVAUnitValue, ReadsKeywordsInAnyCase) {
  struct {
    KOVAUnit unit;
    const char* keywords;
  } const cases[] = {{KOVAUnitNanometer, "nm"},
                     {KOVAUnitModel, "model"},
                     {KOVAUnitMicrometer, "MICR uM Micrometers"},
                     {KOVAUnitMillimeter, "Mm mm millimeters"},
                     {KOVAUnitCentimeter, "CM centimeters"},
                     {KOVAUnitDecimeter, "deci decimeters"},
                     {KOVAUnitMeter, "m meters"},
                     {KOVAUnitInch, "in inches"},
                     {KOVAUnitFoot, "ft feets"},
                     {KOVAUnitMile, "mi miles mils"},
                     {KOVAUnitKilometer, "km kilometers"},
                     {KOVAUnitMilliinch, "mil milliinches"},
                     {KOVAUnitMicroinch, "uin microinches"}};
  for (const auto& c : cases) {
    std::istringstream keywords(c.keywords);
    for (std::string keyword; keywords >> keyword;) {
      KOVAUnit unit = KOVAUnitUnknown;
      EXPECT_EQ(KOVAUnitValue::GetUnitFromString(unit, KOVAString(keyword.c_str())), kSuccess);
      EXPECT_EQ(unit, c.unit) << keyword;
    }
  }

  const unsigned short zeroBehind[] = {'m', 'm', 0};
  const unsigned short loneSurrogates[] = {0xDC00, 'm', 0xD800};
  const std::string endless(100000, 'm');
  for (const KOVAString& text :
       {KOVAString(), KOVAString(" mm"), KOVAString("mm "), KOVAString("nanometers"),
        KOVAString("MODELUNIT"), KOVAString("feet"), KOVAString("%s%n"),
        KOVAString(endless.c_str()), KOVAString::fromUnits(zeroBehind, 3),
        KOVAString::fromUnits(loneSurrogates, 3)}) {
    KOVAUnit unit = KOVAUnitFoot;
    EXPECT_EQ(KOVAUnitValue::GetUnitFromString(unit, text), KOVAResultCode::kFailure);
    EXPECT_EQ(unit, KOVAUnitFoot);
  }
}

TEST(KOVAUnitValue, ScalesFromOneUnitToTheOther) {
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitInch, KOVAUnitMillimeter), 25.4);
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitMeter, KOVAUnitKilometer), 0.001);
  EXPECT_EQ(KOVAUnitValue::GetScalingFactor(KOVAUnitModel, KOVAUnitInch), 1);
  EXPECT_EQ(Gk_Unit("zero", 0).mapTo(Gk_Unit("mm", 1)), 1);
  EXPECT_EQ(Gk_Unit("mm", 1).mapTo(Gk_Unit("zero", 0)), 1);
  EXPECT_FALSE(Gk_Unit("mm", 1) == Gk_Unit("MM", 1));
  EXPECT_FALSE(Gk_Unit(nullptr, 0) == Gk_Unit());
}

TEST(KOVASystemUnits, AreUnsetUntilTheyAreSet) {
  const auto expectUnits = [](KOVAUnit sending, KOVAUnit receiving) {
    KOVAUnit unit = KOVAUnitMicroinch;
    EXPECT_EQ(get_sending_system_unit(unit), kSuccess);
    EXPECT_EQ(unit, sending);
    EXPECT_EQ(get_receiving_system_unit(unit), kSuccess);
    EXPECT_EQ(unit, receiving);
  };
  KOVAUnit negative = static_cast<KOVAUnit>(-1);
  expectUnits(KOVAUnitUnknown, KOVAUnitModel);
  EXPECT_EQ(set_sending_system_unit(KOVAUnitInch), kSuccess);
  EXPECT_EQ(set_receiving_system_unit(&negative), kSuccess);
  expectUnits(KOVAUnitInch, negative);
  EXPECT_EQ(set_sending_system_unit(nullptr), kSuccess);
  expectUnits(KOVAUnitUnknown, negative);
  EXPECT_EQ(set_internal_unit(KOVAUnitFoot, KOVAUnitUnknown), kSuccess);
  expectUnits(KOVAUnitFoot, KOVAUnitUnknown);  // set, though unknown
  EXPECT_EQ(set_internal_unit(false), kSuccess);
  expectUnits(KOVAUnitUnknown, KOVAUnitModel);

  EXPECT_EQ(KOVAUnitValue::GetReadUnit(), KOVAUnitUnknown);
  EXPECT_EQ(KOVAUnitValue::GetUnitWhenUnspecified(), KOVAUnitUnknown);
  EXPECT_EQ(set_internal_unit(true), kSuccess);
  expectUnits(KOVAUnitModel, KOVAUnitModel);
  KOVAUnitValue::SetApplicationUnit(KOVAUnitMeter);
  KOVAUnitValue::SetWriteUnit(KOVAUnitMile);
  KOVAUnitValue::SetReadUnit(KOVAUnitFoot);
  EXPECT_EQ(set_internal_unit(true), kSuccess);
  expectUnits(KOVAUnitMeter, KOVAUnitMile);
}

template <class E>
void expectTexts(void (*toString)(E, KOVAString&), std::initializer_list<const char*> texts,
                 const char* outOfRange) {
  KOVAString text;
  int number = 0;
  for (const char* const expected : texts) {
    toString(static_cast<E>(number++), text);
    EXPECT_EQ(bytesOf(text), expected);
  }
  for (const int beyond : {number, -1, INT_MIN, INT_MAX}) {
    toString(static_cast<E>(beyond), text);
    EXPECT_EQ(bytesOf(text), outOfRange) << beyond;
  }
}

TEST(KOVAUnitUtils, ShowsUnitsToPeople) {
  expectTexts(
      KOVAUnitUtils::KOVAUnit_To_String,
      {"Unknown", "Model specific unit", "Nanometer", "Micrometer", "Millimeter", "Centimeter",
       "Decimeter", "Meter", "Inch", "Foot", "Mile", "Kilometer", "Milliinch", "Microinch"},
      "Centimeter");
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
