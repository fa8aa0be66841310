#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/files/KOVAFilePath.h"
#include "tests/files/TestPaths.h"

using kova::test::text;
using kova::test::utf8;

namespace {

KOVAFilePath path(const std::string& utf8Text, bool replaceInvalid = false) {
  return KOVAFilePath(text(utf8Text), replaceInvalid);
}

}  // namespace

TEST(KOVAFilePath, SplitsTheNormalisedForm) {
  struct Case {
    const char* given;
    const char* path;
    const char* directory;
    const char* name;
    const char* beforeFirstDot;
    const char* beforeLastDot;
    const char* lastExtension;
    bool isAbsolute;
  };
  static const Case kCases[] = {
      {"", "", "", "", "", "", "", false},
      {"c:/a/b.txt", "c:\\a\\b.txt", "c:\\a", "b.txt", "b", "b", "txt", true},
      {"f.tar.gz", "f.tar.gz", "", "f.tar.gz", "f", "f.tar", "gz", false},
      {"d.v\\f", "d.v\\f", "d.v", "f", "f", "f", "", false},
      {"d.v/", "d.v\\", "d.v", "", "", "", "", false},
      {"/x", "\\x", "", "x", "x", "x", "", true},
      {"\\\\server/share\\f.", "\\\\server\\share\\f.", "\\\\server\\share", "f.", "f", "f", "",
       true},
      {"/home/me/.profile", "\\home\\me\\.profile", "\\home\\me", ".profile", "", "", "profile",
       true},
      {"C:a", "C:a", "", "C:a", "C:a", "C:a", "", false},
      {"C:", "C:", "", "C:", "C:", "C:", "", false},
      {"C:/x", "C:\\x", "C:", "x", "x", "x", "", true},
      {"x\\y", "x\\y", "x", "y", "y", "y", "", false},
      {"\\\\?\\c:\\kept", "\\\\?\\c:\\kept", "\\\\?\\c:", "kept", "kept", "kept", "", true},
      {"\xC3\xA9/\xF0\x9F\x98\x80.\xC3\xBC", "\xC3\xA9\\\xF0\x9F\x98\x80.\xC3\xBC", "\xC3\xA9",
       "\xF0\x9F\x98\x80.\xC3\xBC", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80", "\xC3\xBC", false},
  };
  for (const Case& c : kCases) {
    const KOVAFilePath file = path(c.given);
    SCOPED_TRACE(c.given);
    EXPECT_EQ(utf8(file), c.path);
    EXPECT_EQ(utf8(file.GetDirectory()), c.directory);
    EXPECT_EQ(utf8(file.GetName()), c.name);
    EXPECT_EQ(utf8(file.GetNameWithoutExtension()), c.beforeFirstDot);
    EXPECT_EQ(utf8(file.GetNameWithoutLastExtension()), c.beforeLastDot);
    EXPECT_EQ(utf8(file.GetLastExtension()), c.lastExtension);
    EXPECT_EQ(file.IsAbsolute(), c.isAbsolute);
    EXPECT_EQ(file.IsValid(), c.path[0] != '\0');
  }
  EXPECT_FALSE(KOVAFilePath(static_cast<const char*>(nullptr)).IsValid());
}

TEST(KOVAFilePath, PathsOfMoreThan255UnitsGetThePrefix) {
  const auto fill = [](const std::string& start, std::size_t length) {
    return start + std::string(length - start.size(), 'x');
  };
  struct Case {
    std::string given;
    std::string path;
  };
  const std::string server = fill("//server/share/", 256);
  const Case kCases[] = {
      {fill("c:/", 255), "c:\\" + std::string(252, 'x')},
      {fill("c:/", 256), "\\\\?\\c:\\" + std::string(253, 'x')},
      {fill("/", 256), "\\\\?\\\\" + std::string(255, 'x')},
      {fill("relative/", 256), "\\\\?\\relative\\" + std::string(247, 'x')},
      {server, "\\\\?\\UNC\\server\\share\\" + server.substr(15)},
      {"\\\\?\\" + server, "\\\\?\\UNC\\server\\share\\" + server.substr(15)},
      {fill("\\\\?\\c:/", 256), fill("\\\\?\\c:\\", 256)},
      {fill("\\\\?\\UNC/s/", 256), fill("\\\\?\\UNC\\s\\", 256)},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(utf8(path(c.given)), c.path);
    // A path that is normalised already stays.
    EXPECT_EQ(utf8(path(c.path)), c.path);
  }
  // The parts alone are short, and an added extension is not normalised.
  EXPECT_EQ(utf8(KOVAFilePath(text(fill("c:/", 200)), text(std::string(55, 'y')))),
            "\\\\?\\c:\\" + std::string(197, 'x') + "\\" + std::string(55, 'y'));
  KOVAFilePath extended = path(fill("c:/", 255));
  extended.AddExtension("a/b");
  EXPECT_EQ(utf8(extended), "c:\\" + std::string(252, 'x') + ".a/b");
  EXPECT_EQ(utf8(path(fill("c:/", 255)) + "y").substr(0, 7), "\\\\?\\c:\\");
}

TEST(KOVAFilePath, ReplacesInvalidCharactersOfTheNameAlone) {
  struct Case {
    const char* given;
    const char* path;
  };
  static const Case kCases[] = {
      {"c:\\dir\\a:b?.txt", "c:\\dir\\a_b_.txt"},
      {"a?/|\"*:?<>", "a?\\_______"},
      {"/a?", "\\a_"},
      {"a?\\", "a?\\"},
      {"C:", "C_"},
      {"", ""},
  };
  for (const Case& c : kCases) EXPECT_EQ(utf8(path(c.given, true)), c.path) << c.given;
  EXPECT_EQ(utf8(KOVAFilePath("d:/e", "f:g", true)), "d:\\e\\f_g");
  // The prefix of a long path comes first and is no part of the name.
  EXPECT_EQ(utf8(path(std::string(255, 'a') + "?", true)), "\\\\?\\" + std::string(255, 'a') + "_");
}

TEST(KOVAFilePath, BuildsNewPathsFromOldOnes) {
  struct Case {
    const char* path;
    const char* text;
    const char* joined;
    const char* sum;
    const char* extended;
    const char* lastReplaced;
    const char* firstReplaced;
  };
  static const Case kCases[] = {
      {"a.b.c", "x", "a.b.c\\x", "a.b.c\\x", "a.b.c.x", "a.b.x", "ax"},
      {"a.b.c", ".x", "a.b.c\\.x", "a.b.c.x", "a.b.c..x", "a.b.x", "a.x"},
      {"f", ".x", "f\\.x", "f.x", "f..x", "f.x", "f.x"},
      {"dir.v/a", "x", "dir.v\\a\\x", "dir.v\\a\\x", "dir.v\\a.x", "dir.v\\a.x", "dir.v\\ax"},
      {"f.tar.gz", ".zip", "f.tar.gz\\.zip", "f.tar.gz.zip", "f.tar.gz..zip", "f.tar.zip", "f.zip"},
      {"c:\\", "g/h", "c:\\g\\h", "c:\\g\\h", "c:\\.g/h", "c:\\.g\\h", "c:\\g\\h"},
      {"c:\\f", "", "c:\\f\\", "c:\\f\\", "c:\\f.", "c:\\f.", "c:\\f"},
      {"", "x", "\\x", "\\x", ".x", ".x", "x"},
  };
  for (const Case& c : kCases) {
    const KOVAFilePath file = path(c.path);
    const KOVAString added(c.text);
    SCOPED_TRACE(std::string(c.path) + " and " + c.text);
    EXPECT_EQ(utf8(KOVAFilePath(text(c.path), added)), c.joined);
    EXPECT_EQ(utf8(file + added), c.sum);
    EXPECT_EQ(utf8(file.ReplaceLastExtension(added)), c.lastReplaced);
    EXPECT_EQ(utf8(file.ReplaceFirstExtension(added)), c.firstReplaced);
    KOVAFilePath extended = file;
    extended.AddExtension(added);
    EXPECT_EQ(utf8(extended), c.extended);
    EXPECT_EQ(utf8(file), utf8(path(c.path)));
  }
  // Only a backslash is looked for at the end of the directory.
  EXPECT_EQ(utf8(KOVAFilePath("d/", "n")), "d\\\\n");
}

TEST(KOVAFilePath, ComparesExtensionsIgnoringCase) {
  const KOVAFilePath file = path(
      "Part.PR\xC3\x9C"
      "F");
  EXPECT_TRUE(
      file.HasLastExtensionIgnoringCase(text("pr\xC3\xBC"
                                             "f")));
  EXPECT_TRUE(
      file.HasLastExtensionIgnoringCase(text(".Pr\xC3\xBC"
                                             "F")));
  EXPECT_FALSE(
      file.HasLastExtensionIgnoringCase(text("..pr\xC3\xBC"
                                             "f")));
  EXPECT_FALSE(file.HasLastExtensionIgnoringCase("pruf"));
  EXPECT_TRUE(path("d.stp\\f").HasLastExtensionIgnoringCase(""));
  EXPECT_TRUE(path("f").HasLastExtensionIgnoringCase("."));
}

TEST(KOVAFilePath, FindsWhatTwoPathsHaveInCommon) {
  struct Case {
    const char* path;
    const char* other;
    const char* common;
  };
  static const Case kCases[] = {
      {"c:/A/b/f", "C:/a/B/g", "c:\\A\\b\\"},
      {"c:/a/b", "c:/a/b/g", "c:\\a\\b\\"},  // this path counts with its name
      {"c:/a/b/g", "c:/a/b", "c:\\a\\"},     // the other one without
      {"/x/f", "/y/f", "\\"},
      {"/x", "/y", ""},  // the other's directory is empty and has no parts
      {"x/f", "/x/f", ""},
      {"//s/t/f", "//s/u/f", "\\\\s\\"},
      {"a//b/f", "a//c/f", "a\\\\"},
      {"\xC3\x89t\xC3\xA9/f", "\xC3\xA9T\xC3\x89/g", "\xC3\x89t\xC3\xA9\\"},
      {"a/b/", "a/b/c", ""},  // no name
      {"", "a/b", ""},
      {"a/b", "", ""},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(utf8(path(c.path).FindCommonPath(path(c.other))), c.common)
        << c.path << " and " << c.other;
  }
}

TEST(KOVAFilePath, DerivedClassesBringTheirOwnSeparators) {
  class Dotted : public KOVAFilePath {
   public:
    explicit Dotted(const char* given) { InitializeFromPathString(given, true); }
    using KOVAFilePath::GetMBCSBuffer;
    using KOVAFilePath::GetWideCharacterBuffer;

   protected:
    void FixSeparator(KOVAString& fixed) const override { fixed = fixed.replace(';', '\\'); }
  };
  const Dotted dotted("a;b?");
  EXPECT_EQ(utf8(dotted), "a\\b_");

  char narrow[5];
  EXPECT_EQ(dotted.GetMBCSBuffer(narrow, 4), KOVAResultCode::kFailure);
  ASSERT_EQ(dotted.GetMBCSBuffer(narrow, 5), KOVAResultCode::kSuccess);
  EXPECT_STREQ(narrow, "a\\b_");
  unsigned short wide[5];
  EXPECT_EQ(dotted.GetWideCharacterBuffer(wide, 4), KOVAResultCode::kFailure);
  EXPECT_EQ(dotted.GetWideCharacterBuffer(wide, 5), KOVAResultCode::kSuccess);

  KOVADynamicArray<KOVAFilePath> paths;
  for (int i = 0; i < 20; ++i) paths.add(path("dir/" + std::to_string(i)));
  EXPECT_EQ(utf8(paths[7]), "dir\\7");
}
