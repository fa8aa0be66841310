// Runs kova-translate as its users do: as a process, on real files.

#include "tests/apps/Program.h"

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using kova::test::Outcome;
using kova::test::Workshop;

constexpr const char* kHint = "Try 'kova-translate --help'.\n";

class TranslateTest : public testing::Test {
 protected:
  Outcome Translate(std::vector<std::string> arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), KOVA_TRANSLATE);
    return _workshop.Start(arguments, input);
  }

  static std::string Golden(const std::string& name) {
    std::ifstream stream(std::string(KOVA_GOLDEN) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  void Fails(const Outcome& run, int status, const std::string& errors) {
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, errors);
  }

  Workshop _workshop;
};

TEST_F(TranslateTest, TranslatesToTheGoldenFile) {
  _workshop.WriteFile("a.stl", Golden("tetrahedron.stl"));
  Outcome run = Translate({"a.stl"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output + run.errors, "");
  EXPECT_EQ(_workshop.ReadFile("a.obj"), Golden("tetrahedron.obj"));

  // The other ways in and out give the same bytes.
  std::filesystem::create_directory(_workshop.Path("folder"));
  EXPECT_EQ(Translate({"-d", "folder", "a.stl"}).status, 0);
  EXPECT_EQ(Translate({"--to=obj", "-o", "b.txt", "a.stl"}).status, 0);
  EXPECT_EQ(_workshop.ReadFile("folder/a.obj"), Golden("tetrahedron.obj"));
  EXPECT_EQ(_workshop.ReadFile("b.txt"), Golden("tetrahedron.obj"));
  EXPECT_EQ(Translate({"a.stl", "-o", "-"}).output, Golden("tetrahedron.obj"));
  EXPECT_EQ(Translate({"-"}, Golden("tetrahedron.stl")).output, Golden("tetrahedron.obj"));
  EXPECT_EQ(_workshop.Shell("cat a.stl | $TRANSLATE -o c.obj -").status, 0);
  EXPECT_EQ(_workshop.ReadFile("c.obj"), Golden("tetrahedron.obj"));
  // Without an extension that tells the format the content does.
  _workshop.WriteFile("mesh.dat", Golden("tetrahedron.stl"));
  EXPECT_EQ(Translate({"-o", "-", "mesh.dat"}).output, Golden("tetrahedron.obj"));
  EXPECT_EQ(_workshop.Shell("$TRANSLATE -o - -t ply a.stl | $TRANSLATE -").output,
            Golden("tetrahedron.obj"));
}

TEST_F(TranslateTest, StatisticsAsTextAndAsJson) {
  _workshop.WriteFile("a \"quoted\"\xFF.stl", Golden("tetrahedron.stl"));
  _workshop.WriteFile("bad.stl", "solid\nfacet");
  // What the clock and the memory say is not the same twice.
  Outcome run = _workshop.Shell(
      "$TRANSLATE --dry-run --stats=json *.stl | "
      "sed 's/\"seconds\": [0-9.e-]*, \"peak_bytes\": [1-9][0-9]*/SOME/'");
  EXPECT_EQ(run.output,
            "{\"file\": \"a \\\"quoted\\\"\uFFFD.stl\", \"parts\": 1, \"instances\": 1, "
            "\"edges\": 0, \"triangles\": 4, \"edge_length\": 0, \"box\": {\"min\": [0, 0, 0], "
            "\"max\": [10.5, 10.5, 10.5]}, \"unit\": null, SOME, \"warnings\": 0, \"errors\": 0}\n"
            "{\"file\": \"bad.stl\", \"parts\": 0, \"instances\": 0, \"edges\": 0, \"triangles\": "
            "0, \"edge_length\": 0, \"box\": null, \"unit\": null, SOME, \"warnings\": 0, "
            "\"errors\": 1}\n");
  EXPECT_EQ(run.errors, "Error : 'bad.stl', line 2: the file ends where 'normal' is expected\n");
  EXPECT_EQ(_workshop.List().size(), 2U);

  run = _workshop.Shell(
      "$TRANSLATE -o - --stats a*.stl 2>&1 >/dev/null | sed 's/, [0-9.]* s,.*MiB/, SOME/'");
  EXPECT_EQ(run.output,
            "'a \"quoted\"\xFF.stl': 1 part, 1 instance, 0 edges of length 0, 4 triangles, box (0, "
            "0, 0) to (10.5, 10.5, 10.5), no unit, SOME\n");
}

TEST_F(TranslateTest, WrongUsageIsExplained) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "no INPUT is given"},
      {{"--forse", "a.stl"}, "unknown option '--forse'; did you mean '--force'?"},
      {{"--outptu=b", "a.stl"}, "unknown option '--outptu'; did you mean '--output'?"},
      {{"--dry", "a.stl"}, "unknown option '--dry'; did you mean '--dry-run'?"},
      {{"--frobnicate", "a.stl"}, "unknown option '--frobnicate'"},
      {{"-x", "a.stl"}, "unknown option '-x'"},
      {{"--stats=xml", "a.stl"}, "--stats is 'xml'; it can be 'text' or 'json'"},
      {{"-t", "objj", "a.stl"},
       "unknown format 'objj'; did you mean 'obj'? Formats that can be written: obj, ply, stl"},
      {{"-t", "step", "a.stl"},
       "the format 'step' can only be read. Formats that can be written: obj, ply, stl"},
      {{"-o", "b.xyz", "a.stl"},
       "the name 'b.xyz' does not tell the format to write; give --to (obj, ply, stl)"},
      {{"--progress=bar", "a.stl"}, "--progress is 'bar'; it can be 'auto', 'none' or 'json'"},
      {{"-l", "warnin", "a.stl"},
       "--log-level is 'warnin'; it can be a number, debug, test, verbose, message, info, warning, "
       "error or assert; did you mean 'warning'?"},
      {{"--layers", "1,x", "a.stl"},
       "--layers takes numbers from 0 on, divided by commas, not 'x'"},
      {{"-j", "0", "a.stl"}, "--jobs: Value 0 not in range 1 to 1024"},
      {{"-s", "=1", "a.stl"}, "--set takes NAME=VALUE, not '=1'"},
      {{"-s", "Step.Read.Tolerence=1", "a.stl"},
       "there is no option 'Step.Read.Tolerence'; did you mean 'Step.Read.Tolerance'?"},
      {{"-s", "Tolerance=fine", "a.stl"}, "the value 'fine' of 'Step.Read.Tolerance' is no double"},
      {{"--tolerance", "-1", "a.stl"},
       "the value of 'Step.Read.Tolerance' is -1; it must be above 0 and at most 1e+06"},
      {{"-s", "Stl.Write.Form=text", "a.stl"},
       "the value of 'Stl.Write.Form' is 'text'; it can be binary or ascii"},
      {{"-u", "parsec", "a.stl"},
       "the unit 'parsec' is unknown; units are mm, cm, deci, m, km, um, nm, in, ft, mi, mil, uin "
       "and their names"},
      {{"-c", "none.cfg", "a.stl"},
       "the configuration file 'none.cfg' cannot be read: No such file or directory"},
      {{"--log-dir", "none", "a.stl"},
       "the log 'none/vexil_read.log' cannot be written: No such file or directory"},
      {{"--preview", "-", "a.stl"}, "--preview needs the name of a file"},
      {{"-o", "b.obj", "a.stl", "c.stl"},
       "--output takes the result of one INPUT; use --output-dir for several"},
      {{"-o", "b.obj", "-d", ".", "a.stl"}, "--output and --output-dir exclude each other"},
      {{"-", "-"}, "standard input can be read only once"},
      {{"-d", ".", "-"}, "standard input has no name for a file in --output-dir; use --output"},
  };
  for (const auto& [arguments, problem] : cases) {
    Fails(Translate(arguments), 2, "kova-translate: " + problem + "\n" + kHint);
  }
  EXPECT_EQ(Translate({"--output"}).status, 2);
  EXPECT_EQ(Translate({"--version"}).output, "kova-translate " KOVA_VERSION "\n");
  const Outcome help = Translate({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--output FILE",      "--output-dir FOLDER",
                             "--to FORMAT",        "--unit UNIT",
                             "--config FILE",      "--set NAME=VALUE",
                             "--jobs N",           "--tolerance MM",
                             "--layers NUMBERS",   "--select NAME",
                             "--preview FILE.svg", "--stats",
                             "--progress KIND",    "--log-level LEVEL",
                             "--log-dir FOLDER",   "--list",
                             "--options",          "--env",
                             "--dry-run",          "--force"}) {
    EXPECT_NE(help.output.find(option), std::string::npos) << option;
  }
  EXPECT_TRUE(_workshop.List().empty());
}

TEST_F(TranslateTest, BadInputIsNamedAndLeavesNothing) {
  std::string promise(84, '\0');
  promise.replace(80, 4, "\xFF\xFF\xFF\x7F");
  std::filesystem::create_directory(_workshop.Path("folder.stl"));
  mkfifo(_workshop.Path("pipe.stl").c_str(), 0600);
  _workshop.WriteFile("empty.stl", "");
  _workshop.WriteFile("promise.stl", promise);
  _workshop.WriteFile("text.stl", "This is no mesh.\n");
  _workshop.WriteFile("esc\x1B[2J\n.stl", "solid\nnonsense");
  _workshop.WriteFile("model.xyz", "nothing");
  const std::vector<std::string> before = _workshop.List();
  const std::pair<const char*, const char*> cases[] = {
      {"none.stl", "'none.stl': it cannot be opened: No such file or directory"},
      {"folder.stl", "'folder.stl': it cannot be opened: it is a directory"},
      {"pipe.stl",
       "'pipe.stl': it cannot be opened: it is a pipe; give '-' to read standard input"},
      {"empty.stl", "'empty.stl', byte 0: the file is empty"},
      {"promise.stl",
       "'promise.stl', byte 84: the file ends here, but its header promises 2147483647 triangles, "
       "107374182434 bytes in all"},
      {"text.stl", "'text.stl', line 1: 'solid' is expected, not 'This'"},
      {"esc\x1B[2J\n.stl",
       "'esc\\x1B[2J\\x0A.stl', line 2: 'facet' or 'endsolid' is expected, not 'nonsense'"},
      {"model.xyz",
       "'model.xyz': neither its name nor its content is that of a format that can be read (ply, "
       "step, stl)"},
  };
  for (const auto& [input, message] : cases) {
    Fails(Translate({input}), 1, std::string("Error : ") + message + "\n");
  }
  EXPECT_EQ(_workshop.List(), before);

  // One bad file does not keep the others from their translation.
  _workshop.WriteFile("good.stl", Golden("tetrahedron.stl"));
  const Outcome run = Translate({"none.stl", "good.stl", "empty.stl"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(_workshop.ReadFile("good.obj"), Golden("tetrahedron.obj"));
  EXPECT_FALSE(_workshop.Exists("empty.obj"));
}

TEST_F(TranslateTest, UnreadableFilesAndFolders) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read and write everything";
  _workshop.WriteFile("a.stl", Golden("tetrahedron.stl"));
  _workshop.WriteFile("secret.stl", Golden("tetrahedron.stl"));
  chmod(_workshop.Path("secret.stl").c_str(), 0);
  std::filesystem::create_directory(_workshop.Path("closed"));
  chmod(_workshop.Path("closed").c_str(), 0500);
  Fails(Translate({"secret.stl"}), 1,
        "Error : 'secret.stl': it cannot be opened: Permission denied\n");
  Fails(Translate({"-d", "closed", "a.stl"}), 1,
        "Error : 'a.stl': 'closed/a.obj' cannot be written: Permission denied\n");
}

TEST_F(TranslateTest, ResultsThatExistAreKeptUnlessForced) {
  _workshop.WriteFile("a.stl", Golden("tetrahedron.stl"));
  _workshop.WriteFile("kept", "precious");
  chmod(_workshop.Path("kept").c_str(), 0640);
  std::filesystem::create_symlink("kept", _workshop.Path("a.obj"));
  const std::string refusal =
      "Error : 'a.stl': 'a.obj' cannot be written: it exists already; --force "
      "replaces it\n";
  Fails(Translate({"a.stl"}), 1, refusal);
  Fails(Translate({"--dry-run", "a.stl"}), 1, refusal);
  EXPECT_EQ(_workshop.ReadFile("kept"), "precious");

  // The file behind the link is replaced, with its rights, not the link.
  EXPECT_EQ(Translate({"--force", "a.stl"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(_workshop.Path("a.obj")));
  EXPECT_EQ(_workshop.ReadFile("kept"), Golden("tetrahedron.obj"));
  struct stat information = {};
  ASSERT_EQ(stat(_workshop.Path("kept").c_str(), &information), 0);
  EXPECT_EQ(information.st_mode & 0777U, 0640U);

  Fails(Translate({"--force", "--to=obj", "-o", "./a.stl", "a.stl"}), 1,
        "Error : 'a.stl': its result would take its own place\n");
  Fails(Translate({"-d", "none", "a.stl"}), 1,
        "Error : 'a.stl': 'none/a.obj' cannot be written: there is no folder "
        "'none'\n");
  std::filesystem::create_directory(_workshop.Path("b"));
  _workshop.WriteFile("b/a.stl", Golden("tetrahedron.stl"));
  Fails(Translate({"--force", "-d", "b", "a.stl", "b/a.stl"}), 1,
        "Error : 'b/a.stl': its result 'b/a.obj' would take the place of that of "
        "'a.stl'\n");
  Fails(Translate({"--force", "-t", "stl", "-d", "b", "b/a.stl", "a.stl"}), 1,
        "Error : 'b/a.stl': its result would take its own place\n"
        "Error : 'a.stl': its result 'b/a.stl' would take the place of the input 'b/a.stl'\n");
}

TEST_F(TranslateTest, WhatCannotBeWrittenIsAFailure) {
  ASSERT_EQ(_workshop.Shell("$GENERATE a.stl").status, 0);
  Outcome run = _workshop.Shell("ulimit -f 8; $TRANSLATE a.stl");
  EXPECT_EQ(run.errors,
            "Error : 'a.obj': it cannot be written: the system did not take all of it\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(_workshop.List(), std::vector<std::string>{"a.stl"});

  run = _workshop.Shell("$TRANSLATE -o - a.stl >&-");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.errors,
            "Error : 'a.stl': standard output cannot be written: Bad file "
            "descriptor\n");
  // A closed standard output must not become the file that is opened next.
  EXPECT_EQ(_workshop.Shell("$TRANSLATE --stats -o b.obj a.stl >&-").status, 1);
  EXPECT_EQ(_workshop.Shell("$TRANSLATE -o c.obj a.stl && cmp b.obj c.obj").status, 0);

  if (access("/dev/full", W_OK) != 0) return;
  for (const char* options : {"-o /dev/full --to obj", "-o - >/dev/full", "--list >/dev/full"}) {
    run = _workshop.Shell(std::string("$TRANSLATE a.stl ") + options);
    EXPECT_EQ(run.status, 1) << options;
    EXPECT_NE(run.errors.find("No space left on device"), std::string::npos) << run.errors;
  }
}

TEST_F(TranslateTest, SignalsLeaveNothingBehind) {
  std::filesystem::create_directory(_workshop.Path("temporary"));
  _workshop.Set("TMPDIR", _workshop.Path("temporary"));
  ASSERT_EQ(_workshop
                .Shell("$GENERATE --shape knot --triangles 200000 1.stl && "
                       "for i in 2 3 4 5 6 7 8; do ln 1.stl $i.stl; done")
                .status,
            0);
  const std::vector<std::string> before = _workshop.List();
  for (const auto& [signal, status] : {std::pair(SIGINT, 130), std::pair(SIGTERM, 143)}) {
    bool isCaught = false;
    for (int attempt = 0; attempt < 50 && !isCaught; ++attempt) {
      const pid_t child = fork();
      if (child == 0) {
        if (chdir(_workshop.Path(".").c_str()) != 0) _exit(126);
        execl(KOVA_TRANSLATE, "kova-translate", "-j4", "--force", "--preview", "view.svg", "1.stl",
              "2.stl", "3.stl", "4.stl", "5.stl", "6.stl", "7.stl", "8.stl", nullptr);
        _exit(127);
      }
      // As soon as a result has begun.
      int ended = 0;
      while (_workshop.List().size() == before.size() && waitpid(child, &ended, WNOHANG) == 0) {
        std::this_thread::sleep_for(std::chrono::microseconds(200));
      }
      kill(child, signal);
      if (waitpid(child, &ended, 0) == child && WIFEXITED(ended) && WEXITSTATUS(ended) != 0) {
        EXPECT_EQ(WEXITSTATUS(ended), status);
        isCaught = true;
      }
      // Results that were complete may stand.
      for (int i = 1; i <= 8; ++i) {
        const std::string number = std::to_string(i);
        std::filesystem::remove(_workshop.Path(number + ".obj"));
        std::filesystem::remove(_workshop.Path("view-" + number + ".svg"));
      }
      EXPECT_EQ(_workshop.List(), before);
    }
    EXPECT_TRUE(isCaught);
  }
  EXPECT_TRUE(std::filesystem::is_empty(_workshop.Path("temporary")));
}

TEST_F(TranslateTest, MissingTranslatorsAreListedWithTheirReasons) {
  const Outcome healthy = Translate({"--list"});
  EXPECT_EQ(healthy.status, 0);
  EXPECT_NE(healthy.output.find("obj, written: Wavefront OBJ"), std::string::npos);
  EXPECT_NE(healthy.output.find("stl, read, written: stereolithography meshes"), std::string::npos);

  // A copy of the program without translators beside it, and folders with bad ones.
  _workshop.WriteFile("a.stl", Golden("tetrahedron.stl"));
  std::filesystem::create_directories(_workshop.Path("bin"));
  std::filesystem::copy(KOVA_TRANSLATE, _workshop.Path("bin/kova-translate"));
  std::filesystem::create_directories(_workshop.Path("lib"));
  const std::filesystem::path library = KOVA_LIBRARY;
  std::filesystem::create_symlink(library, _workshop.Path("lib/" + library.filename().string()));
  std::filesystem::create_directories(_workshop.Path("old"));
  std::filesystem::copy(KOVA_WRONG_INTERFACE, _workshop.Path("old/libkova_stl.so"));
  std::filesystem::create_directories(_workshop.Path("torn"));
  _workshop.WriteFile("torn/libkova_stl.so", "not a library");
  _workshop.Set("KOVA_TRANSLATORS", "torn::old");
  // The first file of the name decides.
  const Outcome run = _workshop.Start({"bin/kova-translate", "a.stl"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.errors.find("Error : 'a.stl': there is no translator for 'stl': " +
                            _workshop.Path("torn/libkova_stl.so") +
                            ": file too short; --list tells every place that was tried\n"),
            std::string::npos)
      << run.errors;
  const Outcome list = _workshop.Start({"bin/kova-translate", "--list"});
  EXPECT_EQ(list.status, 0);
  EXPECT_NE(
      list.output.find("stl: no translator: " + _workshop.Path("torn/libkova_stl.so") +
                       ": file too short\n  tried " + _workshop.Path("torn/libkova_stl.so") + "\n"),
      std::string::npos)
      << list.output;
  EXPECT_NE(list.output.find("obj: no translator: libkova_obj.so: cannot open shared object file: "
                             "No such file or directory\n  tried " +
                             _workshop.Path("torn/libkova_obj.so") + "\n  tried " +
                             _workshop.Path("old/libkova_obj.so") + "\n"),
            std::string::npos)
      << list.output;
  _workshop.Set("KOVA_TRANSLATORS", "old");
  EXPECT_NE(
      _workshop.Start({"bin/kova-translate", "a.stl"})
          .errors.find("there is no translator for 'stl': " + _workshop.Path("old/libkova_stl.so") +
                       ": it was built for translator interface 99, this program has"),
      std::string::npos);
}

// The coordinates of all corners in the order of the triangles.
std::vector<double> readStl(const Workshop& workshop, const std::string& file) {
  const Outcome run =
      workshop.Shell("$TRANSLATE -t stl -s Stl.Write.Form=ascii -o - " + file + " | grep vertex");
  std::istringstream text(run.output);
  std::vector<double> coordinates;
  std::string word;
  for (double x = 0, y = 0, z = 0; text >> word >> x >> y >> z;) {
    coordinates.insert(coordinates.end(), {x, y, z});
  }
  return coordinates;
}

// Our OBJ through another program, and the STL files that it writes through us.
TEST_F(TranslateTest, AnotherReaderFindsTheSameTriangles) {
  if (_workshop.Shell("command -v assimp").status != 0) {
    GTEST_SKIP() << "assimp is not installed; nobody else reads the result";
  }
  ASSERT_EQ(_workshop.Shell("$GENERATE --shape gear,knot --ascii a.stl && $TRANSLATE a.stl").status,
            0);
  const std::vector<double> ours = readStl(_workshop, "a.stl");
  ASSERT_EQ(ours.size(), 9U * 25572U);
  for (const char* form : {"stl", "stlb"}) {
    const std::string file = std::string("back-") + form + ".stl";
    ASSERT_EQ(_workshop.Shell("assimp export a.obj " + file + " -f" + form).status, 0);
    const std::vector<double> theirs = readStl(_workshop, file);
    ASSERT_EQ(theirs.size(), ours.size()) << form;
    for (std::size_t i = 0; i < ours.size(); ++i) ASSERT_NEAR(theirs[i], ours[i], 1e-3) << i;
  }
}

TEST(Generate, MeshesAreClosedAndLookOutwards) {
  const Workshop workshop;
  ASSERT_EQ(workshop.Shell("$GENERATE --shape gear,knot a.stl").status, 0);
  const std::vector<double> corners = readStl(workshop, "a.stl");
  using Corner = std::array<double, 3>;
  const auto at = [&](std::size_t i) {
    return Corner{corners[3 * i], corners[3 * i + 1], corners[3 * i + 2]};
  };
  std::map<std::pair<Corner, Corner>, int> edges;
  double volume = 0;
  for (std::size_t i = 0; i < corners.size() / 3; i += 3) {
    const Corner a = at(i);
    const Corner b = at(i + 1);
    const Corner c = at(i + 2);
    for (const auto& [from, to] : {std::pair(a, b), std::pair(b, c), std::pair(c, a)}) {
      ++edges[{from, to}];
      --edges[{to, from}];
    }
    volume += (a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
               a[2] * (b[0] * c[1] - b[1] * c[0])) /
              6;
  }
  for (const auto& [edge, balance] : edges) ASSERT_EQ(balance, 0);
  EXPECT_NEAR(volume, 132012.7, 0.1);
}

}  // namespace
