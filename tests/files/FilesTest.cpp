// Temporary files, descriptors, directories and finders.

#include "kovabase/files/Gk_DirElement.h"
#include "kovabase/files/KOVADirReader.h"
#include "kovabase/files/KOVAFileDescriptor.h"
#include "kovabase/files/KOVAFileFinder.h"
#include "kovabase/files/KOVATemporaryFile.h"
#include "kovabase/options/KOVAEnvironmentVariableScoped.h"
#include "tests/files/TestPaths.h"

#include <regex>
#include <set>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

using kova::test::TemporaryDirectory;
using kova::test::text;
using kova::test::utf8;
using kova::test::WorkingDirectory;

namespace {

std::string pathOf(const KOVATemporaryFile& file) {
  KOVAFilePath path;
  file.GetPath(path);
  return utf8(path);
}

std::string nativeOf(const KOVATemporaryFile& file) {
  std::string path = pathOf(file);
  for (char& c : path) c = c == '\\' ? '/' : c;
  return path;
}

}  // namespace

TEST(KOVATemporaryFile, NamesTellProcessThreadAndCaller) {
  const TemporaryDirectory directory;
  const WorkingDirectory working(directory.native());
  const std::string unique = "KOVATemp-P" + std::to_string(getpid()) + "-T[0-9]+-[0-9]+-[0-9a-f]+";
  {
    const KOVAEnvironmentVariableScoped none("TMPDIR", "");
    const KOVAFilePath base("/takes/no/part");
    EXPECT_TRUE(std::regex_match(pathOf(KOVATemporaryFile()), std::regex("\\.\\\\" + unique)));
    EXPECT_TRUE(std::regex_match(pathOf(KOVATemporaryFile(base, "d.e/part.stp", 0)),
                                 std::regex("\\.\\\\" + unique + "_part\\.stp")));
    EXPECT_TRUE(std::regex_match(pathOf(KOVATemporaryFile(base, "part", 4294967295U)),
                                 std::regex("\\.\\\\" + unique + "_part_4294967295")));
    const std::string tooLong(5000, 'x');
    EXPECT_TRUE(std::regex_match(pathOf(KOVATemporaryFile(base, tooLong.c_str(), 1)),
                                 std::regex("\\.\\\\" + unique)));
  }
  const KOVAEnvironmentVariableScoped elsewhere("TMPDIR", directory.native().c_str());
  EXPECT_EQ(pathOf(KOVATemporaryFile()).find(utf8(directory.path()) + "\\KOVATemp-P"), 0U);
  const KOVAEnvironmentVariableScoped missing("TMPDIR", "/no such directory");
  EXPECT_EQ(pathOf(KOVATemporaryFile()).find(".\\KOVATemp-P"), 0U);
}

TEST(KOVATemporaryFile, NamesDifferAcrossThreads) {
  std::vector<std::string> names(200);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < 4; ++t) {
    threads.emplace_back([&names, t] {
      for (std::size_t i = 0; i < 50; ++i) names[t * 50 + i] = pathOf(KOVATemporaryFile());
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 200U);
}

TEST(KOVATemporaryFile, IsMadeForItsOwnerAndRemoved) {
  const TemporaryDirectory directory;
  const KOVAEnvironmentVariableScoped elsewhere("TMPDIR", directory.native().c_str());
  const mode_t mask = umask(0);
  std::string name;
  {
    KOVATemporaryFile file;
    name = nativeOf(file);
    EXPECT_FALSE(fs::exists(name));
    EXPECT_EQ(file.Open("r"), nullptr);
    EXPECT_EQ(file.Open(nullptr), nullptr);
    EXPECT_EQ(file.Open("q"), nullptr);
    std::FILE* stream = file.Open("w+b");
    ASSERT_NE(stream, nullptr);
    std::fputs("written", stream);
    EXPECT_EQ(fs::status(name).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    stream = file.Open("a");  // closes the first stream, keeps the content
    ASSERT_NE(stream, nullptr);
    std::fputs(" twice", stream);
    EXPECT_TRUE(file.Close());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(fs::file_size(name), 13U);
    EXPECT_NE(file.Open("r"), nullptr);
    EXPECT_TRUE(file.Remove());
    EXPECT_FALSE(file.Remove());
    EXPECT_NE(file.Open("w"), nullptr);  // anew
  }
  umask(mask);
  EXPECT_FALSE(fs::exists(name));
}

TEST(KOVATemporaryFile, WritesNeitherThroughLinksNorIntoOtherFiles) {
  const TemporaryDirectory directory;
  const KOVAEnvironmentVariableScoped elsewhere("TMPDIR", directory.native().c_str());
  directory.write("victim", "untouched");
  for (const char* mode : {"w", "a+", "w+b"}) {
    KOVATemporaryFile file;
    fs::create_symlink(directory / "victim", nativeOf(file));
    EXPECT_EQ(file.Open(mode), nullptr);
    file.Remove();
    fs::create_hard_link(directory / "victim", nativeOf(file));
    EXPECT_EQ(file.Open(mode), nullptr);
  }
  EXPECT_EQ(fs::file_size(directory / "victim"), 9U);

  // Nor when the file was swapped for a link after it was made.
  KOVATemporaryFile file;
  ASSERT_NE(file.Open("w"), nullptr);
  fs::remove(nativeOf(file));
  fs::create_symlink(directory / "victim", nativeOf(file));
  EXPECT_EQ(file.Open("w"), nullptr);
  EXPECT_EQ(fs::file_size(directory / "victim"), 9U);
}

TEST(KOVAFileDescriptor, ReadsAndWritesAtOffsets) {
  const TemporaryDirectory directory;
  const KOVAFileHandle file(new KOVAFile(directory.path("data")));
  unsigned char bytes[8] = {};
  std::size_t done = 9;
  std::uint64_t size = 9;

  KOVAFileDescriptor reader(file, KOVAFileIOMode::kRead);
  EXPECT_EQ(reader.Open(), KOVAResultCode::kFileOpenError);
  EXPECT_EQ(reader.ReadBytes(0, 8, bytes, done), KOVAResultCode::kFailure);
  EXPECT_EQ(done, 0U);
  EXPECT_EQ(file->GetSize(size), KOVAResultCode::kFileNotFound);
  EXPECT_EQ(size, 9U);

  KOVAFileDescriptor writer(file, KOVAFileIOMode::kReadAndWrite);
  ASSERT_EQ(writer.Open(), KOVAResultCode::kSuccess);
  EXPECT_EQ(writer.WriteBytes(3, 4, reinterpret_cast<const unsigned char*>("abcd")),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(writer.WriteBytes(0, 1, nullptr), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(writer.GetSize(size), KOVAResultCode::kSuccess);
  EXPECT_EQ(size, 7U);

  ASSERT_EQ(reader.Open(), KOVAResultCode::kSuccess);
  EXPECT_EQ(reader.ReadBytes(2, 8, bytes, done), KOVAResultCode::kSuccess);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), done), std::string("\0abcd", 5));
  EXPECT_EQ(reader.ReadBytes(7, 8, bytes, done), KOVAResultCode::kSuccess);
  EXPECT_EQ(done, 0U);
  EXPECT_EQ(reader.ReadBytes(~std::uint64_t{0}, 8, bytes, done), KOVAResultCode::kFailure);
  EXPECT_EQ(reader.ReadBytes(0, 8, nullptr, done), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(reader.WriteBytes(0, 1, bytes), KOVAResultCode::kFailure);
  EXPECT_EQ(reader.Close(), KOVAResultCode::kSuccess);
  EXPECT_FALSE(reader.IsOpen());

  KOVAFileDescriptor folder(KOVAFileHandle(new KOVAFile(directory.path())), KOVAFileIOMode::kRead);
  EXPECT_EQ(folder.Open(), KOVAResultCode::kFileOpenError);
  KOVAFileDescriptor none(KOVAFileHandle(), KOVAFileIOMode::kRead);
  EXPECT_EQ(none.Open(), KOVAResultCode::kInvalidArgument);
  KOVAFileDescriptor full(KOVAFileHandle(new KOVAFile(KOVAFilePath("/dev/full"))),
                          KOVAFileIOMode::kWrite);
  ASSERT_EQ(full.Open(), KOVAResultCode::kSuccess);
  EXPECT_EQ(full.WriteBytes(0, 8, bytes), KOVAResultCode::kFailure);
}

TEST(Directories, AreReadWithNamesOfAnyKind) {
  const TemporaryDirectory directory;
  directory.write("b");
  directory.write(".hidden");
  directory.write("back\\slash");
  directory.write("latin \xE9");
  directory.write("sub/below");
  fs::create_directory(directory / "Sub 2");
  fs::create_directory_symlink(directory.native(), directory / "loop");
  fs::create_symlink("nowhere", directory / "dangling");

  Gk_DirElement element(directory.path());
  EXPECT_EQ(element.GetFileCount(), 0);
  ASSERT_EQ(element.Read(), KOVAResultCode::kSuccess);
  std::string names;
  for (int i = 0; i < element.GetFileCount(); ++i) {
    const Gk_FileElement file = element.GetFile(i);
    // The names that no stored path can spell come with a unit in place of each such byte.
    names += utf8(file.GetName()) + (file.IsLink() ? "@|" : "|");
    EXPECT_EQ(file.GetPath().DoesFileExist(), !file.IsLink()) << names;
    EXPECT_FALSE(file.IsDirectory());
  }
  EXPECT_EQ(names, ".hidden|b|back\xEF\xBF\xBDslash|dangling@|latin \xEF\xBF\xBD|");
  names.clear();
  for (int i = 0; i < element.GetDirectoryCount(); ++i) {
    const Gk_DirElement below = element.GetDirectory(i);
    names += utf8(below.GetName()) + (below.IsLink() ? "@|" : "|");
    EXPECT_TRUE(below.IsDirectory());
  }
  EXPECT_EQ(names, "Sub 2|loop@|sub|");
  EXPECT_FALSE(element.GetFile(5).GetPath().IsValid());
  EXPECT_FALSE(element.GetDirectory(-1).GetPath().IsValid());

  EXPECT_EQ(KOVADirReader(KOVAFilePath()).Open(), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(KOVADirReader(directory.path("missing")).Open(), KOVAResultCode::kFileNotFound);
  EXPECT_EQ(KOVADirReader(directory.path("b")).Open(), KOVAResultCode::kFileOpenError);
  KOVADirReader unopened(directory.path());
  KOVAString name("kept");
  bool flag = false;
  EXPECT_FALSE(unopened.GetNext(name, flag, flag));
  EXPECT_EQ(utf8(name), "kept");
}

TEST(KOVAFileFinder, FindsTheNearestFile) {
  class Stp : public KOVAFileFinder {
   public:
    using KOVAFileFinder::KOVAFileFinder;

   protected:
    KOVAResult AdjustName(KOVAString& name) override {
      if (name == "refused") return KOVAResultCode::kFailure;
      name.append(".stp");
      return KOVAResultCode::kSuccess;
    }
  };
  const TemporaryDirectory directory;
  directory.write("a/deep/part.stp");
  directory.write("b/part.stp");
  directory.write("only/very/deep/one.stp");
  fs::create_directories(directory / "c/dir.stp");
  fs::create_directory_symlink(directory.native(), directory / "a/loop");
  const TemporaryDirectory elsewhere;
  elsewhere.write("outside.stp");
  fs::create_directory_symlink(elsewhere.native(), directory / "a/link");
  const std::string folder = utf8(directory.path());
  Stp finder(directory.path());
  KOVAFilePath found("kept");

  EXPECT_EQ(finder.Find("missing", found), KOVAResultCode::kFileNotFound);
  EXPECT_EQ(finder.Find("dir", found), KOVAResultCode::kFileNotFound);
  EXPECT_EQ(finder.Find("outside", found), KOVAResultCode::kFileNotFound);
  EXPECT_EQ(finder.Find("refused", found), KOVAResultCode::kFailure);
  EXPECT_EQ(utf8(found), "kept");
  EXPECT_EQ(finder.Find("some/where/part", found), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(found), folder + "\\b\\part.stp");
  EXPECT_EQ(finder.Find("one", found), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(found), folder + "\\only\\very\\deep\\one.stp");

  KOVAString exact;
  EXPECT_EQ(KOVAFileFinder().GetExactName("d/", exact), KOVAResultCode::kFailure);
  const WorkingDirectory working(directory / "b");
  EXPECT_EQ(Stp().Find("part", found), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(found), "part.stp");
  EXPECT_EQ(Stp().Find("one", found), KOVAResultCode::kFileNotFound);
}
