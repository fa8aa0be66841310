// Paths against a real file system.

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/options/KOVAEnvironmentVariableScoped.h"
#include "tests/files/TestPaths.h"
#include "tests/support/RecordedEvents.h"

#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

using kova::test::TemporaryDirectory;
using kova::test::text;
using kova::test::utf8;
using kova::test::WorkingDirectory;

namespace {

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream open(const KOVAFilePath& path, const char* mode) {
  return Stream(path.OpenFile(mode), &std::fclose);
}

KOVAString units(std::initializer_list<unsigned short> list) {
  return KOVAString::fromUnits(list.begin(), static_cast<int>(list.size()));
}

}  // namespace

TEST(FileSystem, TellsFilesFromDirectories) {
  const TemporaryDirectory directory;
  directory.write("file");
  directory.write("locked");
  fs::permissions(directory / "locked", fs::perms::none);
  fs::create_directory_symlink(directory.native(), directory / "link");
  fs::create_symlink("nowhere", directory / "dangling");
  ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);

  EXPECT_TRUE(directory.path("file").DoesFileExist());
  EXPECT_TRUE(directory.path("file").DoesDirectoryExist());  // anything counts, and is kept so
  EXPECT_FALSE(directory.path().DoesFileExist());
  EXPECT_TRUE(directory.path().DoesDirectoryExist());
  EXPECT_FALSE(directory.path("link").DoesFileExist());
  EXPECT_FALSE(directory.path("dangling").DoesDirectoryExist());
  EXPECT_TRUE(directory.path("pipe").DoesFileExist());  // and does not wait for a writer
  EXPECT_EQ(directory.path("locked").DoesFileExist(), geteuid() == 0);
  EXPECT_FALSE(directory.path("missing").DoesFileExist());
  EXPECT_FALSE(KOVAFilePath().DoesFileExist());
  EXPECT_FALSE(KOVAFilePath().DoesDirectoryExist());

  EXPECT_EQ(open(directory.path(), "r"), nullptr);
  EXPECT_EQ(open(directory.path("missing"), "r"), nullptr);
  EXPECT_EQ(open(directory.path("file"), nullptr), nullptr);
  EXPECT_EQ(open(directory.path("file"), ""), nullptr);
  EXPECT_NE(open(directory.path("file"), "r,bbbbbbbbbbbbb"), nullptr);
  EXPECT_EQ(open(directory.path("file"), "r,bbbbbbbbbbbbbb"), nullptr);  // 16 characters
  const Stream stream = open(directory.path("file"), "rb");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(fcntl(fileno(stream.get()), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(FileSystem, StoredFormsBecomeNamesOfTheSystem) {
  const TemporaryDirectory directory;
  const std::string stored = utf8(directory.path());
  directory.write("a/\xC3\xA9\xF0\x9F\x98\x80.txt");

  for (const std::string& name : {stored + "\\a\\\xC3\xA9\xF0\x9F\x98\x80.txt",
                                  "\\\\?\\" + stored + "/a/\xC3\xA9\xF0\x9F\x98\x80.txt",
                                  "\\\\?\\UNC" + stored + "\\a\\\xC3\xA9\xF0\x9F\x98\x80.txt"}) {
    EXPECT_TRUE(KOVAFilePath(text(name)).DoesFileExist()) << name;
  }

  // A directory that is deep enough for the prefix.
  KOVAFilePath deep = directory.path();
  for (int i = 0; i < 10; ++i) {
    deep = deep + KOVAString(std::string(40, static_cast<char>('a' + i)).c_str());
    ASSERT_EQ(deep.MakeDirectory(), KOVAResultCode::kSuccess);
  }
  EXPECT_EQ(utf8(deep).substr(0, 4), "\\\\?\\");
  Stream stream = open(deep + "f.txt", "w");
  ASSERT_NE(stream, nullptr);
  stream.reset();
  EXPECT_TRUE((deep + "f.txt").DoesFileExist());
}

TEST(FileSystem, NamesThatNoSystemCanHaveFail) {
  const TemporaryDirectory directory;
  directory.write("a");
  const KOVAString folder = directory.path().GetPath() + "\\";
  const KOVAFilePath kBad[] = {
      KOVAFilePath(folder + units({'a', 0, 'b'})),
      KOVAFilePath(folder + units({'a', 0})),
      KOVAFilePath(folder + units({0xD83D})),
      KOVAFilePath(folder + units({0xDE00, 'a'})),
      KOVAFilePath(folder + units({0xDC2F})),  // would spell a slash
      KOVAFilePath(KOVAString(std::string(5000, 'x').c_str())),
  };
  for (const KOVAFilePath& bad : kBad) {
    struct stat64 status;
    EXPECT_FALSE(bad.DoesFileExist());
    EXPECT_FALSE(bad.DoesDirectoryExist());
    EXPECT_FALSE(bad.RemoveFile());
    EXPECT_EQ(open(bad, "w"), nullptr);
    EXPECT_EQ(bad.MakeDirectory(), KOVAResultCode::kFailure);
    EXPECT_EQ(bad.RemoveEmptyDirectory(), KOVAResultCode::kFailure);
    EXPECT_EQ(bad.RemoveNonEmptyDirectory(), KOVAResultCode::kFailure);
    EXPECT_EQ(bad.RenameFile(directory.path("b")), KOVAResultCode::kFailure);
    EXPECT_EQ(directory.path("a").RenameFile(bad), KOVAResultCode::kFailure);
    EXPECT_EQ(bad.GetFileStats(status), KOVAResultCode::kFailure);
  }
  EXPECT_TRUE(directory.path("a").DoesFileExist());
  // The longest path, with the prefix that it gets, is taken; that it is not there is no failure.
  EXPECT_EQ(KOVAFilePath(KOVAString(std::string(4995, 'x').c_str())).RemoveNonEmptyDirectory(),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(KOVAFilePath(KOVAString(std::string(4996, 'x').c_str())).RemoveNonEmptyDirectory(),
            KOVAResultCode::kFailure);
}

TEST(FileSystem, ChangesFilesAndDirectories) {
  const TemporaryDirectory directory;
  directory.write("a", "first");
  directory.write("b", "second");
  fs::create_directory_symlink(directory.native(), directory / "link");

  EXPECT_EQ(directory.path("a").RenameFile(directory.path("b")), KOVAResultCode::kFailure);
  EXPECT_EQ(fs::file_size(directory / "b"), 6U);
  EXPECT_EQ(directory.path("a").RenameFile(directory.path("c")), KOVAResultCode::kSuccess);
  EXPECT_FALSE(fs::exists(directory / "a"));
  EXPECT_EQ(fs::file_size(directory / "c"), 5U);

  EXPECT_EQ(directory.path("d").MakeDirectory(), KOVAResultCode::kSuccess);
  EXPECT_EQ(directory.path("d").MakeDirectory(), KOVAResultCode::kFailure);
  EXPECT_EQ(directory.path("d").RenameFile(directory.path("e")), KOVAResultCode::kSuccess);
  EXPECT_FALSE(directory.path("e").RemoveFile());
  EXPECT_EQ(directory.path("c").RemoveEmptyDirectory(), KOVAResultCode::kFailure);
  EXPECT_EQ(directory.path("e").RemoveEmptyDirectory(), KOVAResultCode::kSuccess);
  EXPECT_TRUE(directory.path("c").RemoveFile());
  EXPECT_FALSE(directory.path("c").RemoveFile());
  EXPECT_TRUE(directory.path("link").RemoveFile());
  EXPECT_TRUE(fs::exists(directory / "b"));

  const KOVAFilePath none;
  EXPECT_FALSE(none.RemoveFile());
  EXPECT_EQ(open(none, "r"), nullptr);
  EXPECT_EQ(none.MakeDirectory(), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(none.RemoveEmptyDirectory(), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(none.RemoveNonEmptyDirectory(), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(none.RenameFile(directory.path("x")), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(directory.path("b").RenameFile(none), KOVAResultCode::kInvalidArgument);
}

TEST(FileSystem, RemovesTreesAndNothingBeyondThem) {
  const TemporaryDirectory directory;
  directory.write("outside/kept");
  directory.write("tree/a/b/file");
  directory.write("tree/.hidden/\xFF\xFE");       // no UTF-8
  directory.write("tree/back\\slash/under\\it");  // names of the system, not separators
  fs::create_directory_symlink(directory / "outside", directory / "tree/a/link");
  fs::create_symlink(directory / "outside/kept", directory / "tree/linked file");
  fs::create_directory_symlink(directory / "outside", directory / "link to outside");
  ASSERT_EQ(mkfifo((directory / "tree/pipe").c_str(), 0600), 0);

  EXPECT_EQ(directory.path("tree").RemoveNonEmptyDirectory(), KOVAResultCode::kSuccess);
  EXPECT_FALSE(fs::exists(directory / "tree"));
  EXPECT_EQ(
      KOVAFilePath(directory.path("link to outside").GetPath() + "\\").RemoveNonEmptyDirectory(),
      KOVAResultCode::kSuccess);
  EXPECT_FALSE(fs::is_symlink(directory / "link to outside"));
  EXPECT_TRUE(fs::exists(directory / "outside/kept"));

  // A file is left alone, and what is not there is no failure: the caller looks afterwards.
  EXPECT_EQ(directory.path("outside/kept").RemoveNonEmptyDirectory(), KOVAResultCode::kSuccess);
  EXPECT_TRUE(fs::exists(directory / "outside/kept"));
  EXPECT_EQ(directory.path("missing").RemoveNonEmptyDirectory(), KOVAResultCode::kSuccess);
}

TEST(FileSystem, RemovesTreesThatAreDeeperThanAnyPathWithFewDescriptors) {
  const TemporaryDirectory directory;
  fs::create_directory(directory / "tree");
  const std::string name(200, 'd');
  int parent = ::open((directory / "tree").c_str(), O_RDONLY | O_DIRECTORY);
  for (int i = 0; i < 60 && parent >= 0; ++i) {
    ASSERT_EQ(mkdirat(parent, name.c_str(), 0700), 0);
    const int child = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY);
    close(parent);
    parent = child;
  }
  ASSERT_GE(parent, 0);
  close(parent);

  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit few = {20, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
  EXPECT_EQ(directory.path("tree").RemoveNonEmptyDirectory(), KOVAResultCode::kSuccess);
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_FALSE(fs::exists(directory / "tree"));
}

TEST(FileSystem, GivesTheStatisticsOfAFile) {
  const TemporaryDirectory directory;
  directory.write("file");
  constexpr std::uint64_t kSize = (std::uint64_t{5} << 30) + 7;  // 5 GiB, most of it a hole
  fs::resize_file(directory / "file", kSize);
  const timespec times[2] = {{-86400, 0}, {1'700'000'000, 999'999'999}};
  ASSERT_EQ(utimensat(AT_FDCWD, (directory / "file").c_str(), times, 0), 0);
  const KOVAFilePath file = directory.path("file");

  struct stat64 status;
  std::int64_t seconds = 0;
  unsigned int bytes = 0;
  ASSERT_EQ(file.GetFileStats(status), KOVAResultCode::kSuccess);
  EXPECT_EQ(status.st_size, static_cast<off64_t>(kSize & 0xFFFFFFFFU));
  EXPECT_EQ(status.st_atime, -86400);
  EXPECT_EQ(status.st_mtime, 1'700'000'000);
  EXPECT_EQ(status.st_mode, 0U);
  EXPECT_EQ(status.st_nlink, 0U);
  EXPECT_EQ(file.GetFileSize(bytes), KOVAResultCode::kSuccess);
  EXPECT_EQ(bytes, static_cast<unsigned>(kSize));
  EXPECT_EQ(file.GetLastAccessDate(seconds), KOVAResultCode::kSuccess);
  EXPECT_EQ(seconds, -86400);
  EXPECT_EQ(file.GetLastModificationDate(seconds), KOVAResultCode::kSuccess);
  EXPECT_EQ(seconds, 1'700'000'000);
  EXPECT_EQ(file.GetCreationDate(seconds), KOVAResultCode::kSuccess);
  EXPECT_EQ(seconds, status.st_ctime);
  EXPECT_NEAR(static_cast<double>(seconds), static_cast<double>(time(nullptr)), 60);

  status.st_mode = 1;
  seconds = 42;
  bytes = 43;
  EXPECT_EQ(directory.path("missing").GetFileStats(status), KOVAResultCode::kFailure);
  EXPECT_EQ(status.st_mode, 0U);
  EXPECT_EQ(status.st_size, 0);
  EXPECT_EQ(directory.path("missing").GetFileSize(bytes), KOVAResultCode::kFailure);
  EXPECT_EQ(directory.path("missing").GetCreationDate(seconds), KOVAResultCode::kFailure);
  EXPECT_EQ(bytes, 43U);
  EXPECT_EQ(seconds, 42);
}

TEST(FileSystem, ResolvesForeignPathsByTheirShortestTail) {
  const TemporaryDirectory directory;
  directory.write("main.asm");
  directory.write("part.prt");
  directory.write("sub/deep/part2.prt");
  directory.write("x/y/z");
  const KOVAFilePath base = directory.path("main.asm");
  const std::string folder = utf8(directory.path()) + "\\";
  struct Case {
    const char* foreign;
    bool isDirectory;
    const char* found;
  };
  static const Case kCases[] = {
      {"D:\\work\\part.prt", false, "part.prt"},
      {"D:\\work\\sub\\deep\\part2.prt", false, "sub\\deep\\part2.prt"},
      {"sub\\.\\deep\\part2.prt", false, "sub\\deep\\part2.prt"},  // "." is no part
      {"\\\\sub\\deep\\part2.prt", false, "part2.prt"},            // the server's name is not tried
      {"\\sub\\deep\\part2.prt", false, "sub\\deep\\part2.prt"},
      {"/nowhere/absent.prt", false, "absent.prt"},
      {"D:\\x\\y", false, "y"},  // a directory is no file
      {"D:\\x\\y", true, "x\\y"},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(utf8(KOVAFilePath(c.foreign).ResolveAgainst(base, c.isDirectory)), folder + c.found)
        << c.foreign;
  }
  const KOVAFilePath existing = directory.path("part.prt");
  EXPECT_EQ(utf8(existing.ResolveAgainst(KOVAFilePath("/elsewhere/f"), false)), utf8(existing));
  EXPECT_FALSE(KOVAFilePath("a\\b\\").ResolveAgainst(base, false).IsValid());

  const WorkingDirectory working(directory.native());
  EXPECT_EQ(utf8(KOVAFilePath("Z:\\sub\\deep\\part2.prt").ResolveAgainst(KOVAFilePath("f"), false)),
            "sub\\deep\\part2.prt");
  // A million parts are not tried one by one with ever longer texts.
  std::string endless = "D:";
  for (int i = 0; i < 1'000'000; ++i) endless += "\\n";
  EXPECT_EQ(utf8(KOVAFilePath(text(endless)).ResolveAgainst(base, false)), folder + "n");
}

TEST(FileSystem, KnowsTheWorkingDirectory) {
  const TemporaryDirectory directory;
  fs::create_directory(directory / "caf\xC3\xA9 \xFF");  // read as it is, if it is no UTF-8
  {
    const WorkingDirectory working(directory / "caf\xC3\xA9 \xFF");
    const KOVAFilePath current = KOVAFilePath::GetCurrentWorkingDirectory();
    EXPECT_EQ(current.GetPath(),
              directory.path().GetPath() + text("\\caf\xC3\xA9 ") + units({0xDCFF}));
    EXPECT_TRUE(current.DoesDirectoryExist());
    EXPECT_EQ(current.RemoveEmptyDirectory(), KOVAResultCode::kSuccess);
    EXPECT_FALSE(KOVAFilePath::GetCurrentWorkingDirectory().IsValid());
    fs::current_path(directory.native());
  }
}

TEST(FileSystem, OffersNoShortNamesAndSaysSo) {
  using Lines = std::vector<std::string>;
  const TemporaryDirectory directory;
  directory.write("file");
  const std::string warning =
      "70 Warning : Input file-path seems to have unsupported characters. \n";
  kova::test::RecordedEvents events;
  KOVAFilePath shortPath("kept");

  EXPECT_EQ(directory.path("missing").GetShortFileNamePath(shortPath), KOVAResultCode::kFailure);
  EXPECT_EQ(events.take(), Lines());
  EXPECT_EQ(directory.path("file").GetShortFileNamePath(shortPath), KOVAResultCode::kFailure);
  EXPECT_EQ(
      events.take(),
      (Lines{warning,
             "80 Error : Using windows 8dot3 short file-name to open the file failed. Creation of "
             "windows 8dot3 short-name might have been disabled on the location when the file "
             "was created.\n\n"}));
  const KOVAEnvironmentVariableScoped off("KOVA_WIN_SHORT_NAME", "False");
  EXPECT_EQ(directory.path("file").GetShortFileNamePath(shortPath),
            KOVAResultCode::kNotImplemented);
  EXPECT_EQ(
      events.take(),
      (Lines{warning,
             "80 Error : No work-around is implemented to open file with such file-path.\n\n"}));
  EXPECT_EQ(utf8(shortPath), "kept");
}
