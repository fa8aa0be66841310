// Paths, files and libraries when memory runs out at every single allocation.

#include "kovabase/files/Gk_DirElement.h"
#include "kovabase/files/KOVADate.h"
#include "kovabase/files/KOVAFileFinder.h"
#include "kovabase/files/KOVALibrary.h"
#include "kovabase/files/KOVATemporaryFile.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/options/KOVAEnvironmentVariableScoped.h"
#include "tests/files/TestPaths.h"
#include "tests/support/AllocationFailure.h"

#include <dlfcn.h>

using kova::test::Shortage;
using kova::test::survivesFailingAllocations;
using kova::test::TemporaryDirectory;

namespace {

/// The loader keeps the text of its last error until it is asked once more.
struct LoaderText {
  LoaderText() = default;
  LoaderText(const LoaderText&) = delete;
  LoaderText& operator=(const LoaderText&) = delete;
  ~LoaderText() {
    dlerror();
    dlerror();
  }
};

}  // namespace

TEST(Allocation, PathsEndInTheirResultOrTheException) {
  const KOVAString longName(std::string(300, 'n').c_str());
  const auto work = [&longName] {
    const KOVAFilePath path(longName, true);
    const KOVAFilePath joined("C:/a directory with a long name/and another one", longName);
    KOVAFilePath extended = joined + longName;
    extended.AddExtension(longName);
    return joined.ReplaceLastExtension(longName).IsValid() && joined.GetDirectory().length() > 0 &&
           KOVAFilePath("C:/a b/c").FindCommonPath(KOVAFilePath("c:/A B/d")).IsValid() &&
           !joined.ResolveAgainst(extended, false).DoesFileExist() &&
           KOVAFilePath::GetCurrentWorkingDirectory().IsValid();
  };
  EXPECT_TRUE(survivesFailingAllocations(work));
  EXPECT_TRUE(survivesFailingAllocations(work, Shortage::kAllFailFromThere));
}

TEST(Allocation, FilesEndInTheirResultOrTheException) {
  const TemporaryDirectory directory;
  directory.write("a rather long directory name/b/c/file with a name that is not short");
  const KOVAFilePath root = directory.path();
  const KOVAFilePath tree = directory.path("tree that is made and removed again");
  const auto work = [&] {
    KOVAString text;
    KOVAFilePath found;
    KOVAFileFinder finder(root);
    const KOVAEnvironmentVariableScoped guard("KOVA_TEST_ALLOCATION", "a value of some length");
    KOVATemporaryFile file(root, "name/of/another", 7);
    // Without memory the file system says that there is nothing; that is a result as well.
    finder.Find("file with a name that is not short", found);
    if (file.Open("w") != nullptr) file.Close();
    tree.MakeDirectory();
    (tree + "below").MakeDirectory();
    tree.RemoveNonEmptyDirectory();
    KOVAEnvironment::GetVariable("KOVA_TEST_ALLOCATION", text);
    return KOVADate::FormatDate(0, text, 1, true).IsSuccess();
  };
  EXPECT_TRUE(survivesFailingAllocations(work));
  tree.RemoveNonEmptyDirectory();
  EXPECT_TRUE(survivesFailingAllocations(work, Shortage::kAllFailFromThere));
}

TEST(Allocation, LibrariesEndInTheirResultOrTheException) {
  testing::internal::CaptureStderr();
  const KOVAEnvironmentVariableScoped path("PATH", KOVA_TEST_FIXTURES ":/usr/bin");
  // Stays mapped, so that the loader's own tables have grown before.
  KOVALibrary::CheckLoadability("KovaBare", true, false);
  const auto work = [] {
    const LoaderText loaderText;
    KOVAString directory;
    KOVALibrary::CheckLoadability("KovaBare", true, true);
    KOVALibrary::CheckLoadability("KovaMissing", true, true);
    KOVALibrary::GetDirInPath("KovaBare", true, directory);
    return true;
  };
  EXPECT_TRUE(survivesFailingAllocations(work));
  EXPECT_TRUE(survivesFailingAllocations(work, Shortage::kAllFailFromThere));
  testing::internal::GetCapturedStderr();
}
