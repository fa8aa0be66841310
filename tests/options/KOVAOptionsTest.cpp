#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/options/KOVAInternalOptionManager.h"
#include "kovabase/options/KOVAOptionUtils.h"
#include "kovabase/options/KOVAOptions.h"
#include "kovabase/options/KOVAOptionsArray.h"
#include "tests/support/RecordedEvents.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

namespace {

// The value that applies to a name; -1 when none does.
int found(const KOVAOptions& options, const char* name) {
  KOVAOption* option = nullptr;
  int value = -1;
  const KOVAResult result = options.GetOption(KOVAString(name, "UTF-8"), option);
  EXPECT_EQ(result.IsSuccess(), option != nullptr);
  if (option != nullptr) option->GetValue(value);
  return value;
}

std::string listing(KOVAOptions& options) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  options.DumpOptions(formatter);
  return stream.GetBytes();
}

KOVAOptions makeOptions(const std::vector<const char*>& names) {
  KOVAOptions options;
  int value = 0;
  for (const char* name : names) options.AddOption(KOVAString(name, "UTF-8"), ++value);
  return options;
}

}  // namespace

TEST(KOVAOptions, TheMostSpecificFilingAlongTheEarliestContextWins) {
  const KOVAOptions options = makeOptions(
      {"Tolerance", "A.Tolerance", "A.B.Tolerance", "*.B.Tolerance", "A.*.C.Tolerance", "X.Only"});
  struct {
    const char* asked;
    int value;
  } const table[] = {
      {"Tolerance", 1},
      {"tolerance", 1},
      {"B.Tolerance", 1},
      {"a.tolerance", 2},
      {"A.Z.Tolerance", 2},
      {"A.B.Tolerance", 3},
      {"A.B.Q.Tolerance", 3},
      {"Z.B.Tolerance", 4},
      {"*.B.Tolerance", 4},
      {"*.Z.Tolerance", 1},
      {"A.Z.C.Tolerance", 5},
      {"A.B.C.Tolerance", 3},
      {"A..Tolerance", 2},
      {"Only", -1},
      {"X.Only", 6},
      {"*.Only", -1},
      {"Absent", -1},
      {"A.B", -1},
      {"", -1},
  };
  for (const auto& row : table) EXPECT_EQ(found(options, row.asked), row.value) << row.asked;
}

TEST(KOVAOptions, PartsMeetAsCaseFoldingSays) {
  const KOVAOptions options =
      makeOptions({"\xC3\x89"
                   "cole.Gr\xC3\xB6\xC3\x9F"
                   "e",
                   "\xE2\x84\xAA"});
  EXPECT_EQ(found(options,
                  "\xC3\xA9"
                  "COLE.GR\xC3\x96SSE"),
            1);
  EXPECT_EQ(found(options, "k"), 2);  // the Kelvin sign folds to a plain letter
}

TEST(KOVAOptions, NamesThatCannotBeFiledLeaveNothing) {
  KOVAOptions options;
  struct {
    const char* name;
    int result;
  } const table[] = {
      {"A..Tolerance", KOVAResultCode::kFailure},
      {".A", KOVAResultCode::kFailure},
      {"A.", KOVAResultCode::kFailure},
      {"", KOVAResultCode::kInvalidArgument},
      {"1.2.3.4.5.6.7.8", KOVAResultCode::kInvalidArgument},
  };
  for (const auto& row : table) {
    EXPECT_EQ(options.AddOption(KOVAString(row.name), 1), row.result) << row.name;
  }
  EXPECT_EQ(options.AddOption(static_cast<const KOVAOption*>(nullptr)),
            KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(options.AddOption(KOVAOption()), KOVAResultCode::kNotInitialized);
  EXPECT_EQ(options.GetCount(), 0);
  EXPECT_EQ(listing(options), "");
  EXPECT_EQ(options.AddOption(KOVAString("1.2.3.4.5.6.7"), 1), KOVAResultCode::kSuccess);
  EXPECT_EQ(found(options, "1.2.3.4.5.6.7"), 1);
}

TEST(KOVAOptions, CountsAdditionsAndListsEachOptionOnce) {
  KOVAOptions options = makeOptions({"T", "A.T", "T", "B.T", "S", "A.X.T"});
  EXPECT_EQ(options.GetCount(), 6);
  EXPECT_EQ(listing(options), "A.X.T = 6\nA.T = 2\nB.T = 4\nT = 3\nS = 5\n");
  KOVAOption* option = nullptr;
  for (int round = 0; round < 2; ++round) {
    int steps = 0;
    while (options.GetNext(option).IsSuccess()) ++steps;
    EXPECT_EQ(steps, 5);
    EXPECT_EQ(option, nullptr);
  }
  options.GetNext(option);
  EXPECT_EQ(options.RemoveAll(), KOVAResultCode::kSuccess);
  EXPECT_EQ(options.GetNext(option), KOVAResultCode::kFailure);
  EXPECT_EQ(found(options, "T"), -1);
  EXPECT_EQ(options.AddOption(KOVAString("T"), 8), KOVAResultCode::kSuccess);
  EXPECT_EQ(found(options, "T"), 8);
}

TEST(KOVAOptions, MergesByExactNameAndCopiesDeeply) {
  KOVAOptions mine = makeOptions({"T", "A.T"});
  KOVAOptions theirs;
  for (const char* name : {"t", "B.T", "S"}) theirs.AddOption(KOVAString(name), 50);
  KOVAOptions kept(mine);
  EXPECT_EQ(kept.AddOptions(theirs, false), KOVAResultCode::kSuccess);
  EXPECT_EQ(listing(kept), "A.T = 2\nB.T = 50\nT = 1\nS = 50\n");
  KOVAOptions taken;
  taken = mine;
  EXPECT_EQ(taken.AddOptions(theirs, true), KOVAResultCode::kSuccess);
  EXPECT_EQ(found(taken, "T"), 50);
  EXPECT_EQ(listing(mine), "A.T = 2\nT = 1\n");

  KOVAOption* option = nullptr;
  taken.GetOption(KOVAString("A.T"), option);
  option->SetValue(77);
  EXPECT_EQ(found(mine, "A.T"), 2);
  const KOVAOptions& self = taken;
  taken = self;
  EXPECT_EQ(found(taken, "A.T"), 77);

  KOVAOptionsArray sets;
  for (int i = 0; i < 20; ++i) sets.add(mine);
  EXPECT_EQ(found(sets[19], "A.T"), 2);
}

TEST(KOVAOptions, ReadsTheUnnamedSectionOfAFile) {
  FILE* stream = std::tmpfile();
  std::fputs("A.T = \"\"quoted, text\"\"\nbad..name = 1\nU = 3\n[section]\nhidden = 1\n", stream);
  std::rewind(stream);
  KOVAOptions options;
  EXPECT_EQ(options.ReadFromFile(stream), KOVAResultCode::kSuccess);
  EXPECT_EQ(listing(options), "A.T = quoted, text\nU = 3\n");
  std::rewind(stream);
  std::fputs("broken line\n", stream);
  std::rewind(stream);
  KOVAOptions untouched;
  EXPECT_EQ(untouched.ReadFromFile(stream), KOVAResultCode::kFailure);
  EXPECT_EQ(untouched.GetCount(), 0);
  std::fclose(stream);
  EXPECT_EQ(options.ReadFromFile(static_cast<FILE*>(nullptr)), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(options.ReadFromFile(KOVAString()), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(options.ReadFromFile(KOVAString("/does/not/exist")), KOVAResultCode::kFileOpenError);
}

TEST(KOVAOptions, DumpPrintsNamesAndValuesAsTheyAre) {
  KOVAOptions options;
  options.AddOption(KOVAString("Rate"), "50%%d%s");
  static const KOVAOptionName secret{KOVAString("Secret")};
  options.AddOption(KOVAOption(secret, "", true));
  kova::test::RecordedEvents events;
  options.Dump("Options", "%s=%s.", "End");
  EXPECT_EQ(events.take(), Lines({"50 Message : Options\n", "50 Message : Rate=50%%d%s.\n",
                                  "50 Message : Secret=\"\".\n", "50 Message : End\n"}));
  options.Dump(nullptr, "%d %n", nullptr);
  EXPECT_EQ(events.take(),
            Lines({"50 Message : Rate = 50%%d%s\n", "50 Message : Secret = \"\"\n"}));
}

TEST(KOVAInternalOptionManager, SynchronisesExistingOptionsOfTheSamePath) {
  using Manager = KOVAInternalOptionManager;
  const auto name = [](const char* text) { return KOVAString(text); };
  KOVAOption* scale = Manager::AddOption(name("/step/Import/Scale"), 2);
  Manager::AddOption(name("/step/Import/Name"), "bolt");
  Manager::AddOption(name("/step"), 1);
  KOVAOption* target = Manager::AddOption(name("/stl/Import/Scale"), 1);
  EXPECT_EQ(Manager::AddOption(name("/step/Import/Scale"), 3), scale);
  EXPECT_EQ(Manager::GetOption(name("/step/import/scale")), nullptr);

  Manager::SynchOptionsBetweenComponents(name("/step"), name("/stl"));
  EXPECT_EQ(KOVAOptionUtils::GetIntValue(target), 3);
  EXPECT_EQ(Manager::GetOption(name("/stl/Import/Name")), nullptr);

  kova::test::RecordedEvents events;
  EXPECT_EQ(Manager::AddOption(name("/stl/Import/Scale"), "text"), target);
  EXPECT_EQ(KOVAOptionUtils::GetIntValue(target), 3);
  EXPECT_EQ(events.take().size(), 1U);
}

TEST(KOVAOptionUtils, ThrowsWhatCannotBeRead) {
  EXPECT_EQ(KOVAOptionUtils::GetBoolValue(nullptr), false);
  EXPECT_EQ(KOVAOptionUtils::GetDoubleValue(nullptr), 0.0);
  EXPECT_TRUE(KOVAOptionUtils::GetStringValue(nullptr).isEmpty());
  static const KOVAOptionName name{KOVAString("Word")};
  const KOVAOption word(name, "bolt");
  EXPECT_TRUE(KOVAOptionUtils::GetStringValue(&word) == KOVAString("bolt"));
  try {
    KOVAOptionUtils::GetIntValue(&word);
    FAIL() << "a word is no number";
  } catch (const Gk_Exception& error) {
    EXPECT_STREQ(error.getMessage(), "KOVAOption value type can not be converted to int");
    EXPECT_EQ(error.getResult(), KOVAResultCode::kFailure);
  }
}
