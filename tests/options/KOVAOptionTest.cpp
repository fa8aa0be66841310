#include "kovabase/options/KOVAEnvironmentVariableScoped.h"
#include "kovabase/options/KOVAOption.h"
#include "tests/support/RecordedEvents.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

namespace {

const KOVAOptionName kAngle("AngleUnit");
const KOVAOptionName kNested("Step.Import.Tolerance");
const KOVAOptionName kAccented(
    "\xC3\x89"
    "cole.Gr\xC3\xB6\xC3\x9F"
    "e");

std::string mismatch(int level, const char* given, const char* stored) {
  return std::to_string(level) + (level == 70 ? " Warning : " : " Error : ") +
         "KOVAOption::SetValue: Specified type (" + given + ") doesn't match stored type (" +
         stored + ") for option 'AngleUnit'.\n";
}

int intOf(const KOVAOption& option) {
  int value = -999;
  option.GetValue(value);
  return value;
}

}  // namespace

TEST(KOVAOption, AnOptionWithoutATypeCanOnlyBeSet) {
  KOVAOption option;
  KOVAString text("kept");
  int value = 9;
  bool flag = true;
  KOVAValue::KOVAValueType type = KOVAValue::kString;
  KOVAValue whole;
  EXPECT_EQ(option.GetName(text), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(option.GetValue(value), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(option.GetValue(whole), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(option.GetDefaultValue(value), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(option.IsPrivate(flag), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(option.GetValueType(type), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(option.GetNameAndValueAsString(text, text), KOVAResultCode::kNotInitialized);

  EXPECT_EQ(option.SetValue(4), KOVAResultCode::kSuccess);
  EXPECT_EQ(option.SetValue(5), KOVAResultCode::kSuccess);
  EXPECT_EQ(option.GetDefaultValue(value), KOVAResultCode::kSuccess);
  EXPECT_EQ(value, 4);
  EXPECT_EQ(intOf(option), 5);
}

TEST(KOVAOption, SetterRefusesAnotherTypeWithItsMessage) {
  kova::test::RecordedEvents events;
  KOVAOption text(kAngle, "deg");
  EXPECT_EQ(text.SetValue(5), KOVAResultCode::kErrorEncountered);
  EXPECT_EQ(events.take(), Lines({mismatch(70, "int", "string")}));
  EXPECT_EQ(text.SetValue(2.5), KOVAResultCode::kErrorEncountered);
  EXPECT_EQ(text.SetValue(true), KOVAResultCode::kErrorEncountered);
  EXPECT_EQ(events.take(),
            Lines({mismatch(80, "double", "string"), mismatch(80, "bool", "string")}));

  KOVAOption number(kAngle, 3);
  EXPECT_EQ(number.SetValue(2.5), KOVAResultCode::kErrorEncountered);
  EXPECT_EQ(number.SetValue("2"), KOVAResultCode::kErrorEncountered);
  EXPECT_EQ(number.SetValue(KOVAValue("2.5")), KOVAResultCode::kErrorEncountered);
  EXPECT_EQ(events.take(), Lines({mismatch(80, "double", "int"), mismatch(80, "string", "int"),
                                  mismatch(80, "string", "int")}));
  EXPECT_EQ(intOf(number), 3);
}

TEST(KOVAOption, TextValuesAreParsedAsTheOptionsType) {
  kova::test::RecordedEvents events;
  KOVAOption flag(kAngle, false);
  EXPECT_EQ(flag.SetValue(5), KOVAResultCode::kSuccess);
  EXPECT_EQ(intOf(flag), 1);
  EXPECT_EQ(flag.SetValue(KOVAValue("FALSE")), KOVAResultCode::kSuccess);
  EXPECT_EQ(intOf(flag), 0);
  EXPECT_EQ(flag.SetValue(KOVAValue("3")), KOVAResultCode::kSuccess);
  EXPECT_EQ(intOf(flag), 1);
  KOVAOption integer(kAngle, 7);
  EXPECT_EQ(integer.SetValue(KOVAValue("True")), KOVAResultCode::kSuccess);
  EXPECT_EQ(intOf(integer), 1);
  EXPECT_EQ(integer.SetValue(KOVAValue(" -12 ")), KOVAResultCode::kSuccess);
  EXPECT_EQ(intOf(integer), -12);
  KOVAOption real(kAngle, 1.0);
  EXPECT_EQ(real.SetValue(KOVAValue("2e3")), KOVAResultCode::kSuccess);
  double value = 0.0;
  real.GetValue(value);
  EXPECT_EQ(value, 2000.0);

  // A value of another type replaces the current one without a check.
  EXPECT_EQ(integer.SetValue(KOVAValue(2.5)), KOVAResultCode::kSuccess);
  KOVAString name;
  KOVAString text;
  EXPECT_EQ(integer.GetNameAndValueAsString(name, text), KOVAResultCode::kSuccess);
  EXPECT_TRUE(text == KOVAString("2.5"));
  EXPECT_EQ(integer.SetValue(KOVAValue()), KOVAResultCode::kSuccess);
  EXPECT_EQ(integer.GetNameAndValueAsString(name, text), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(KOVAOption(kAngle, "").GetNameAndValueAsString(name, text), KOVAResultCode::kSuccess);
  EXPECT_TRUE(text == KOVAString("\"\""));
  EXPECT_EQ(events.take(), Lines());
}

TEST(KOVAOption, EnvironmentOverridesReadingsAndSaysSo) {
  kova::test::RecordedEvents events;
  KOVAOption integer(kAngle, 7);
  KOVAOption real(kAngle, 7.0);
  KOVAOption text(kAngle, "seven");
  KOVAOption flag(kAngle, true);
  int i = 0;
  double d = 0.0;
  bool b = false;
  KOVAString s;
  {
    const KOVAEnvironmentVariableScoped variable(KOVAString("KOVAAngleUnit"), KOVAString("8"));
    EXPECT_EQ(integer.GetValue(i, true), KOVAResultCode::kSuccess);
    EXPECT_EQ(i, 8);
    EXPECT_EQ(real.GetValue(d, true), KOVAResultCode::kSuccess);
    EXPECT_EQ(d, 8.0);
    EXPECT_EQ(text.GetValue(s, true), KOVAResultCode::kSuccess);
    EXPECT_TRUE(s == KOVAString("8"));
    EXPECT_EQ(events.take(),
              Lines({"70 Warning : KOVAAngleUnit value overridden to 8 by environment variable\n",
                     "70 Warning : KOVAAngleUnit value overridden to       8 by environment "
                     "variable\n",
                     "70 Warning : AngleUnit value overridden to 8 by environment variable\n"}));
    // "8" is no bool word: the stored value stands, and nothing is said.
    EXPECT_EQ(flag.GetValue(b, true), KOVAResultCode::kSuccess);
    EXPECT_TRUE(b);
    EXPECT_EQ(integer.GetValue(i, false), KOVAResultCode::kSuccess);
    EXPECT_EQ(i, 7);
    EXPECT_EQ(events.take(), Lines());
  }
  const KOVAEnvironmentVariableScoped variable(KOVAString("KOVAAngleUnit"), KOVAString("false"));
  EXPECT_EQ(flag.GetValue(b, true), KOVAResultCode::kSuccess);
  EXPECT_FALSE(b);
  EXPECT_EQ(integer.GetValue(i, true), KOVAResultCode::kSuccess);
  EXPECT_EQ(i, 7);
  EXPECT_EQ(events.take(),
            Lines({"70 Warning : AngleUnit value overridden to Off by environment variable\n"}));

  const KOVAEnvironmentVariableScoped percents(KOVAString("KOVAAngleUnit"), KOVAString("50%s%n"));
  EXPECT_EQ(text.GetValue(s, true), KOVAResultCode::kSuccess);
  EXPECT_EQ(events.take(),
            Lines({"70 Warning : AngleUnit value overridden to 50%s%n by environment variable\n"}));
}

TEST(KOVAOptionName, MatchScoresWildcardsByTheirPosition) {
  struct {
    const char* declared;
    const char* asked;
    int score;
  } const table[] = {
      {"A.B.C", "a.*.c", 2},
      {"A.B", "*.*", 3},
      {"A.B", "A", 65535},
      {"A.B", "a.b", 0},
      {"A.*", "A.*", 0},
      {"A.B.C", "*.B.D", 65535},
      {"", "", 0},
      {"A", "*", 1},
      {"*.B", "A.B", 65535},
      {"A.", "a.*", 2},
      {"", "*", 65535},
      {"Stra\xC3\x9F"
       "e.X",
       "STRASSE.*", 2},
  };
  for (const auto& row : table) {
    int score = -5;
    EXPECT_EQ(KOVAOptionName::Match(KOVAString(row.declared, "UTF-8"),
                                    KOVAString(row.asked, "UTF-8"), score),
              KOVAResultCode::kSuccess);
    EXPECT_EQ(score, row.score) << row.declared << " and " << row.asked;
  }

  const auto parts = [](int count, const char* part) {
    KOVAString name(part);
    for (int i = 1; i < count; ++i) name += KOVAString(".") + KOVAString(part);
    return name;
  };
  int score = -5;
  EXPECT_EQ(KOVAOptionName::Match(parts(31, "a"), parts(31, "*"), score), KOVAResultCode::kSuccess);
  EXPECT_EQ(score, 0x7FFFFFFF);
  score = -5;
  EXPECT_EQ(KOVAOptionName::Match(parts(32, "a"), parts(32, "*"), score), KOVAResultCode::kFailure);
  EXPECT_EQ(score, -5);
}

TEST(KOVAOptionName, IsValidAsksEveryDeclaredName) {
  const auto isValid = [](const char* name) {
    return KOVAOptionName::IsValid(KOVAString(name, "UTF-8")).IsSuccess();
  };
  EXPECT_TRUE(isValid("angleunit"));
  EXPECT_TRUE(isValid("*"));
  EXPECT_TRUE(isValid("step.*.TOLERANCE"));
  EXPECT_TRUE(isValid("*.*.*"));
  EXPECT_FALSE(isValid("step.*.x"));
  EXPECT_FALSE(isValid("Step.Import"));
  EXPECT_FALSE(isValid(""));
  EXPECT_FALSE(isValid("*.*.*.*"));

  const int before = KOVAOptionName::_optionNames.size();
  static KOVAOptionName late{KOVAString("Late.Name")};
  const KOVAOptionName copied(late);
  EXPECT_EQ(KOVAOptionName::_optionNames.size(), before + 1);
  EXPECT_EQ(KOVAOptionName::_optionNames[before], &late);
  EXPECT_TRUE(isValid("late.*"));
  late = kNested;
  EXPECT_FALSE(isValid("late.*"));
}
