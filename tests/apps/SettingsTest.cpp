// What kova-translate is told: options, units, filters, loggers and the number of its workers.

#include "tests/apps/Program.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace {

using kova::test::Outcome;
using kova::test::Workshop;

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() {
    std::ifstream stream(std::string(KOVA_GOLDEN) + "/tetrahedron.stl", std::ios::binary);
    _workshop.WriteFile("a.stl", {std::istreambuf_iterator<char>(stream), {}});
  }

  // Not by the shell, which passes no variables on that have a dot in their name.
  Outcome Translate(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), KOVA_TRANSLATE);
    return _workshop.Start(arguments);
  }

  // Whether "solid" begins what the command line writes to standard output.
  bool IsAscii(std::vector<std::string> options) {
    options.insert(options.end(), {"-t", "stl", "-o", "-", "a.stl"});
    const Outcome run = Translate(options);
    EXPECT_EQ(run.status, 0) << run.errors;
    _errors = run.errors;
    return run.output.starts_with("solid");
  }

  Workshop _workshop;
  std::string _errors;
};

TEST_F(SettingsTest, OptionsComeFromFourSources) {
  _workshop.WriteFile("ascii.cfg", "# forms\nStl.Write.Form = \"ascii\"\n[other]\nx = 1\n");
  EXPECT_FALSE(IsAscii({}));
  EXPECT_TRUE(IsAscii({"-c", "ascii.cfg"}));
  EXPECT_FALSE(IsAscii({"-c", "ascii.cfg", "-s", "stl.write.form=binary"}));
  EXPECT_TRUE(IsAscii({"-s", "Stl.Write.Form=binary", "-s", "*.Write.Form=ascii"}));
  EXPECT_TRUE(IsAscii({"-s", "Form=ascii"}));
  EXPECT_EQ(_errors, "");
  _workshop.Set("KOVAStl.Write.Form", "ascii");
  EXPECT_TRUE(IsAscii({"-c", "ascii.cfg", "-s", "Stl.Write.Form=binary"}));
  EXPECT_EQ(_errors,
            "Warning : Stl.Write.Form value overridden to ascii by environment variable\n");

  const std::pair<const char*, const char*> faults[] = {
      {"Stl.Write.Forn = ascii",
       "there is no option 'Stl.Write.Forn'; did you mean 'Stl.Write.Form'?"},
      {"Step.Read.Angle = flat", "the value 'flat' of 'Step.Read.Angle' is no double"},
      {"Obj.Write.Curves = maybe", "the value 'maybe' of 'Obj.Write.Curves' is no bool"},
      {"Stl.Write.Form", "Incorrect syntax: line 1:Stl.Write.Form *** \"key=value\" expected"},
  };
  for (const auto& [line, fault] : faults) {
    _workshop.WriteFile("bad.cfg", line);
    const Outcome run = _workshop.Shell("$TRANSLATE -c bad.cfg a.stl");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, std::string("kova-translate: the configuration file 'bad.cfg': ") +
                              fault + "\nTry 'kova-translate --help'.\n");
  }
  _workshop.Set("KOVAStl.Write.Form", "round");
  _workshop.Set("KOVAStep.Read.Angle", "flat");
  const Outcome run = Translate({"a.stl"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.errors,
            "Warning : KOVAStep.Read.Angle overrides nothing: 'flat' is no double\n"
            "Warning : Stl.Write.Form value overridden to round by environment variable\n"
            "kova-translate: the variable KOVAStl.Write.Form: the value of 'Stl.Write.Form' is "
            "'round'; it can be binary or ascii\nTry 'kova-translate --help'.\n");
  EXPECT_EQ(_workshop.List().size(), 3U);
}

TEST_F(SettingsTest, ListsOfOptionsAndVariables) {
  _workshop.Set("KOVALogger", "x");
  _workshop.Set("KOVATranslate.Unit", "inch");
  const Outcome options = Translate({"--options", "--tolerance", "0.5"});
  EXPECT_EQ(options.status, 0);
  EXPECT_NE(
      options.output.find("Step.Read.Tolerance = 0.5\n  double, default 0.01\n  The greatest"),
      std::string::npos)
      << options.output;
  EXPECT_NE(options.output.find("Translate.Unit = 'inch'\n  string, default ''\n"),
            std::string::npos);
  const Outcome variables = Translate({"--env"});
  EXPECT_EQ(variables.status, 0);
  for (const char* text :
       {"KOVALogLevel is not set\n  when not set: everything is logged\n  The lowest level",
        "KOVATranslate.Unit = 'inch'\n  when not set: the value of the option Translate.Unit\n",
        "'KOVALogger' = 'x'\n  unknown: nothing reads it; did you mean 'KOVALoggers'?\n"}) {
    EXPECT_NE(variables.output.find(text), std::string::npos) << text << variables.output;
  }
}

TEST_F(SettingsTest, LengthsGoFromUnitToUnit) {
  struct Case {
    const char* options;
    const char* box;
    const char* unit;
  };
  const Case cases[] = {
      {"", "[10.5, 10.5, 10.5]}", "null"},
      // Nobody knows what the lengths of the file are.
      {"-u mm", "[10.5, 10.5, 10.5]}", "\"millimeter\""},
      {"-s Translate.UnitWhenUnspecified=in", "[10.5, 10.5, 10.5]}", "\"inch\""},
      {"-s UnitWhenUnspecified=in -u MM", "[266.7, 266.7, 266.7]}", "\"millimeter\""},
      {"-s UnitWhenUnspecified=in -s Translate.Unit=cm", "[26.67, 26.67, 26.67]}",
       "\"centimeter\""},
      {"-s UnitWhenUnspecified=m -u model", "[10.5, 10.5, 10.5]}", "\"meter\""},
  };
  for (const Case& row : cases) {
    const Outcome run =
        _workshop.Shell(std::string("$TRANSLATE --force --stats=json a.stl ") + row.options);
    EXPECT_NE(run.output.find(std::string("\"max\": ") + row.box + ", \"unit\": " + row.unit),
              std::string::npos)
        << row.options << run.output << run.errors;
  }
  EXPECT_EQ(
      _workshop.Shell("$TRANSLATE -o - a.stl -s UnitWhenUnspecified=in -u mm | grep 266.7").output,
      "v 0 266.7 0\nv 266.7 0 0\nv 0 0 266.7\n");
}

TEST_F(SettingsTest, FiltersTakeAPartOrComplain) {
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --layers 2,0 --select Nix* --select TETRA* a.stl").errors,
            "Error : 'a.stl': nothing in it is called 'Nix*'\n");
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --layers 1,2 a.stl").errors,
            "Error : 'a.stl': nothing in it is on the layers of --layers\n");
  EXPECT_EQ(_workshop.List().size(), 1U);
  ASSERT_EQ(_workshop.Shell("$GENERATE --shape gear,knot --ascii two.stl").status, 0);
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --select knot two.stl; grep -c ^g two.obj").output, "1\n");
}

TEST_F(SettingsTest, PreviewsAreNamedAfterTheirInputs) {
  _workshop.Shell("cp a.stl b.stl");
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --preview view.svg a.stl").status, 0);
  EXPECT_TRUE(_workshop.ReadFile("view.svg").starts_with("<"));
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --force --preview look.svg a.stl b.stl").status, 0);
  EXPECT_EQ(_workshop.ReadFile("look-a.svg"), _workshop.ReadFile("view.svg"));
  EXPECT_TRUE(_workshop.Exists("look-b.svg"));
  EXPECT_EQ(_workshop.Shell("$TRANSLATE -o c.obj --preview view.svg a.stl").errors,
            "Error : 'a.stl': 'view.svg' cannot be written: it exists already; --force replaces "
            "it\n");
  EXPECT_FALSE(_workshop.Exists("c.obj"));
}

TEST_F(SettingsTest, TheLogHoldsWhatTheConsoleDoesNot) {
  EXPECT_EQ(_workshop.Shell("$TRANSLATE a.stl").output, "");
  EXPECT_FALSE(_workshop.Exists("vexil_read.log"));
  std::filesystem::create_directory(_workshop.Path("logs"));
  _workshop.Set("KOVATaskTiming", "true");
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --force --log-dir logs a.stl").output, "");
  const std::string log = _workshop.ReadFile("logs/vexil_read.log");
  std::size_t at = 0;
  for (const char* text :
       {"Message : Step.Read.Tolerance = 0.01\n", "Options logging Result : Success\n",
        "Message : Translating 'a.stl' to 'a.obj'\n", "*Translation Started*",
        "KOVAStartReadFileTaskEvent Started", "Entity Reading Result : Success\n",
        "-Source File Header Information-", "Format : STL, ASCII\n",
        "KOVAStartReadFileTaskEvent Ending", "KOVCConversionTaskEvent Started",
        "Source Document Preprocessing Result : Success\n",
        "Target Document Preprocessing Result : Success\n", "KOVCConversionTaskEvent Ending",
        "Output File \"a.obj\" is Successfully Written\n",
        "Target Document Postprocessing Result : Success\n", "Finish Time : ",
        "Translation Result : Success\n", "= Start Timing Performance Summary ="}) {
    const std::size_t found = log.find(text, at);
    EXPECT_NE(found, std::string::npos) << text << " is not behind what comes before it";
    if (found != std::string::npos) at = found;
  }
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --force -l error none.stl a.stl").status, 1);
  EXPECT_EQ(_workshop.ReadFile("vexil_read.log"),
            "Error : 'none.stl': it cannot be opened: No such file or directory\n");
}

TEST_F(SettingsTest, StandardOutputCarriesTheResultAlone) {
  const std::string result = _workshop.Shell("$TRANSLATE -o - a.stl").output;
  _workshop.Set("KOVAConsoleTracesLevel", "debug");
  const Outcome run = _workshop.Shell("$TRANSLATE --progress=json --stats -o - a.stl");
  EXPECT_EQ(run.output, result);
  for (const char* text :
       {"Message : Translating 'a.stl' to standard output\n",
        "{\"file\": \"a.stl\", \"stage\": \"done\", \"fraction\": 1}\n", "'a.stl': 1 part, "}) {
    EXPECT_NE(run.errors.find(text), std::string::npos) << text << run.errors;
  }
  const Outcome statistics = _workshop.Shell("$TRANSLATE --stats=json a.stl | wc -l");
  EXPECT_EQ(std::atoi(statistics.output.c_str()), 1);
  EXPECT_NE(_workshop.Shell("$TRANSLATE --force a.stl").output.find("Message : Translating"),
            std::string::npos);
}

// What is not the same twice: times, and how much memory was in use.
std::string withoutTimes(const std::string& text) {
  static const std::regex times("Finish Time : .*|\"seconds\": [0-9.e-]+, \"peak_bytes\": [0-9]+");
  return std::regex_replace(text, times, "");
}

TEST_F(SettingsTest, AnyNumberOfWorkersDoesAndSaysTheSame) {
  ASSERT_EQ(_workshop
                .Shell("mkdir in; $GENERATE in/0.stl; $GENERATE --triangles 30000 in/5.stl; "
                       "for i in 1 3 6 8; do cp a.stl in/$i.stl; done; printf solid > in/4.stl; "
                       "head -c 200000 in/5.stl > in/7.stl; printf 'solid\\nfacet' > in/9.stl")
                .status,
            0);
  _workshop.Set("KOVAConsoleTracesLevel", "verbose");
  const auto runWith = [&](const std::string& workers) {
    const std::string folder = "out" + workers;
    Outcome run = _workshop.Shell(
        "mkdir -p " + folder + "; cd in; $TRANSLATE -j " + workers + " --force -d ../" + folder +
        " --stats=json --log-dir ../" + folder +
        " 0.stl 1.stl none.stl 3.stl 4.stl 5.stl 6.stl 7.stl 8.stl 9.stl 2>&1; echo status $?; "
        "cd ../" +
        folder + "; md5sum *.obj");
    const std::string log = _workshop.ReadFile(folder + "/vexil_read.log");
    return std::regex_replace(withoutTimes(run.output + log), std::regex("out[128]"), "out");
  };
  const std::string alone = runWith("1");
  EXPECT_NE(alone.find("status 1\n"), std::string::npos) << alone;
  EXPECT_NE(alone.find("Error : '9.stl', line 2: the file ends"), std::string::npos) << alone;
  EXPECT_EQ(runWith("2"), alone);
  for (int i = 0; i < 5; ++i) ASSERT_EQ(runWith("8"), alone);
}

}  // namespace
