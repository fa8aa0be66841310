#include "kovabase/files/KOVALibrary.h"
#include "kovabase/files/KOVALibraryManager.h"
#include "kovabase/files/KOVASharedLibFileFinder.h"
#include "kovabase/files/KOVAVexilLibrary.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/options/KOVAEnvironmentVariableScoped.h"
#include "tests/files/TestPaths.h"
#include "tests/files/fixtures/Journal.h"
#include "tests/support/RecordedEvents.h"

#include <clocale>
#include <functional>
#include <thread>
#include <utility>

namespace fs = std::filesystem;

using kova::test::TemporaryDirectory;
using kova::test::text;
using kova::test::utf8;
using kova::test::WorkingDirectory;
using Lines = std::vector<std::string>;

namespace {

std::string journal;
std::function<void()> onInitialize;

std::string takeJournal() { return std::exchange(journal, {}); }

std::string fixture(const std::string& name) {
  return std::string(KOVA_TEST_FIXTURES) + "/lib" + name + ".so";
}

// The search path is the directory of the fixtures, and the loader's texts are caught.
class KOVALibraryTest : public ::testing::Test {
 protected:
  KOVALibraryTest() : _path("PATH", ":;relative:" KOVA_TEST_FIXTURES ":/usr/bin") {
    testing::internal::CaptureStderr();
    takeJournal();
  }
  ~KOVALibraryTest() override {
    testing::internal::GetCapturedStderr();
    onInitialize = nullptr;
  }

  kova::test::RecordedEvents events;

 private:
  KOVAEnvironmentVariableScoped _path;
};

KOVALibraryHandle good() {
  return KOVALibraryHandle(new KOVALibrary("KovaGood", "FixtureInitialize", "FixtureFinalize"));
}

}  // namespace

void kovaFixtureDid(const char* what) {
  journal += std::string(what) + ";";
  if (onInitialize && std::string(what) == "init") onInitialize();
}

TEST_F(KOVALibraryTest, LoadsOnceAndInitialisesOnce) {
  KOVALibraryHandle library = good();
  EXPECT_EQ(takeJournal(), "");
  void* function = &journal;
  EXPECT_EQ(library->GetFunction("", function), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(function, &journal);
  EXPECT_FALSE(library->IsLoaded());

  // What the function asks the library for while it runs does not call it again.
  onInitialize = [&] {
    void* inner = nullptr;
    EXPECT_EQ(library->GetFunction("FixtureAnswer", inner), KOVAResultCode::kSuccess);
    EXPECT_NE(inner, nullptr);
  };
  ASSERT_EQ(library->GetFunction("FixtureAnswer", function), KOVAResultCode::kSuccess);
  EXPECT_EQ(reinterpret_cast<int (*)()>(function)(), 42);
  EXPECT_EQ(library->GetFunction("FixtureAnswer", function), KOVAResultCode::kSuccess);
  EXPECT_EQ(takeJournal(), "load;init;");
  EXPECT_EQ(events.take(), Lines());

  EXPECT_EQ(library->GetFunction("Missing", function), KOVAResultCode::kFailure);
  EXPECT_EQ(function, nullptr);
  EXPECT_EQ(events.take(), Lines{"80 Error : No Missing function in KovaGood library.\n\n"});

  EXPECT_EQ(library->FinalizeAndUnload(), KOVAResultCode::kSuccess);
  EXPECT_EQ(takeJournal(), "fini;unload;");
  EXPECT_EQ(library->FinalizeAndUnload(), KOVAResultCode::kSuccess);
  EXPECT_EQ(library->LoadAndInitialize(false), KOVAResultCode::kSuccess);
  library = KOVALibraryHandle();
  EXPECT_EQ(takeJournal(), "load;init;fini;unload;");
}

TEST_F(KOVALibraryTest, StaysMappedUnlessUnloadable) {
  KOVALibraryHandle library = good();
  library->SetUnloadable(false);
  EXPECT_EQ(library->LoadAndInitialize(true), KOVAResultCode::kSuccess);
  EXPECT_EQ(library->FinalizeAndUnload(), KOVAResultCode::kSuccess);
  EXPECT_TRUE(library->IsLoaded());
  EXPECT_EQ(takeJournal(), "load;init;fini;");
  library->SetUnloadable(true);
  library->FinalizeAndUnload();
  EXPECT_EQ(takeJournal(), "unload;");
}

TEST_F(KOVALibraryTest, ALibraryWithoutItsFunctionsIsLoadedButNotInitialised) {
  KOVALibrary library("KovaBare", "FixtureInitialize", "FixtureFinalize");
  void* function = nullptr;
  const std::string missing = "80 Error : No FixtureInitialize function in KovaBare library.\n\n";
  EXPECT_EQ(library.LoadAndInitialize(true), KOVAResultCode::kSuccess);
  EXPECT_TRUE(library.IsLoaded());
  EXPECT_EQ(library.GetFunction("FixtureOther", function), KOVAResultCode::kSuccess);
  EXPECT_NE(function, nullptr);
  EXPECT_EQ(events.take(), (Lines{missing, missing}));  // each request tries again
  EXPECT_EQ(library.FinalizeAndUnload(), KOVAResultCode::kSuccess);
  EXPECT_EQ(events.take(), Lines());
}

TEST_F(KOVALibraryTest, WhatEntryPointsThrowIsReported) {
  const std::string start = "80 Error : KOVALibrary: The function ";
  const std::string middle = " of the KovaThrowing library threw an exception: ";
  {
    KOVALibrary library("KovaThrowing", "FixtureInitialize", "");
    void* function = &journal;
    EXPECT_EQ(library.LoadAndInitialize(true), KOVAResultCode::kFailure);
    EXPECT_TRUE(library.IsLoaded());
    EXPECT_EQ(library.GetFunction("FixtureQuiet", function), KOVAResultCode::kFailure);
    EXPECT_EQ(function, &journal);
    const std::string line = start + "FixtureInitialize" + middle + "no %s licence\n\n";
    EXPECT_EQ(events.take(), (Lines{line, line}));
  }
  EXPECT_EQ(KOVALibrary("KovaThrowing", "FixtureAbort", "").LoadAndInitialize(true),
            KOVAResultCode::kAborted);
  EXPECT_EQ(events.take(), Lines());
  KOVALibrary library("KovaThrowing", "FixtureQuiet", "FixtureThrowNumber");
  EXPECT_EQ(library.LoadAndInitialize(true), KOVAResultCode::kSuccess);
  EXPECT_EQ(library.FinalizeAndUnload(), KOVAResultCode::kFailure);
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_EQ(events.take(),
            Lines{start + "FixtureThrowNumber" + middle + "of a type that is not known here\n\n"});
}

TEST_F(KOVALibraryTest, SaysWhatWasTriedAndWhyItFailed) {
  KOVALibrary library("KovaMissing", "Init", "");
  void* function = &journal;
  EXPECT_EQ(library.GetFunction("Answer", function), KOVAResultCode::kFailure);
  EXPECT_EQ(function, &journal);
  const std::string printed = testing::internal::GetCapturedStderr();
  testing::internal::CaptureStderr();

  EXPECT_EQ(printed.find("\nNORVEX CAUTION : KOVALibrary::Load failed for libKovaMissing.so with "
                         "error code = "),
            0U);
  EXPECT_NE(printed.find(" \nlibKovaMissing.so: cannot open shared object file"),
            std::string::npos);
  EXPECT_NE(utf8(library.GetLoadError()), "");
  // The empty and the relative entry of the search path are passed over.
  ASSERT_EQ(library.GetTriedPlaces().size(), 3);
  EXPECT_EQ(utf8(library.GetTriedPlaces()[0]), fixture("KovaMissing"));
  EXPECT_EQ(utf8(library.GetTriedPlaces()[1]), "/usr/bin/libKovaMissing.so");
  EXPECT_EQ(utf8(library.GetTriedPlaces()[2]), "libKovaMissing.so");
  EXPECT_EQ(events.take(), (Lines{"10 KOVALibrary::Load: Tried " + fixture("KovaMissing") + "\n",
                                  "10 KOVALibrary::Load: Tried /usr/bin/libKovaMissing.so\n",
                                  "10 KOVALibrary::Load: Tried libKovaMissing.so\n",
                                  "70 Warning : KovaMissing library not loaded.\n"}));
}

TEST_F(KOVALibraryTest, TheFirstFileOfTheNameDecides) {
  const TemporaryDirectory directory;
  directory.write("libKovaGood.so", "this is no library\n");
  const KOVAEnvironmentVariableScoped path(
      "PATH", text(directory.native().string() + ";" KOVA_TEST_FIXTURES));
  KOVALibraryHandle library = good();
  EXPECT_EQ(library->LoadAndInitialize(true), KOVAResultCode::kFailure);
  EXPECT_NE(utf8(library->GetLoadError()).find((directory / "libKovaGood.so").string()),
            std::string::npos);
  fs::remove(directory / "libKovaGood.so");
  EXPECT_EQ(library->LoadAndInitialize(true), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(library->GetLoadError()), "");

  // Added directories come first, and a relative one stays where it was added.
  fs::create_directory(directory / "added");
  fs::copy_file(fixture("KovaGood"), directory / "added/libKovaAdded.so");
  directory.write("libKovaAdded.so", "this is no library\n");
  EXPECT_EQ(KOVALibrary::CheckLoadability("KovaAdded", true, true), KOVAResultCode::kFailure);
  {
    const WorkingDirectory working(directory.native());
    EXPECT_EQ(KOVALibrary::AddDirectoryToPath("added"), KOVAResultCode::kFailure);  // always
  }
  EXPECT_EQ(KOVALibrary::CheckLoadability("KovaAdded", true, true), KOVAResultCode::kSuccess);
}

TEST_F(KOVALibraryTest, NamesMayBePathsAndAreCutWhenBare) {
  const TemporaryDirectory directory;
  const std::string accented = (directory /
                                "caf\xC3\xA9 and a name of more than 63 characters, which "
                                "a path may have.so")
                                   .string();
  fs::copy_file(fixture("KovaGood"), accented);
  KOVALibrary byPath(text(accented), "", "");
  EXPECT_EQ(byPath.LoadAndInitialize(true), KOVAResultCode::kSuccess);
  EXPECT_EQ(std::string(byPath.GetLibraryName()).size(), 63U);
  KOVALibrary stored(directory.path(fs::path(accented).filename().string()).GetPath(), "", "");
  EXPECT_EQ(stored.LoadAndInitialize(true), KOVAResultCode::kSuccess);
  const unsigned short zero[] = {'/', 'x', 0, 'y'};
  EXPECT_EQ(KOVALibrary::CheckLoadability(KOVAString::fromUnits(zero, 4), true, true),
            KOVAResultCode::kFailure);

  events.take();
  const std::string cut(63, 'n');
  fs::copy_file(fixture("KovaGood"), directory / ("lib" + cut + ".so"));
  const KOVAEnvironmentVariableScoped path("PATH", directory.native().c_str());
  KOVALibrary byName((cut + "1234567").c_str(), "", "");
  EXPECT_EQ(byName.GetLibraryName(), cut);
#ifdef NDEBUG
  const Lines traces;
#else
  const Lines traces{
      "10 " + cut + "1234567 library name is too long and was truncated to " + cut + ".\n\n",
      "10 " + cut + "1234567 library will not be loaded.\n\n"};
#endif
  EXPECT_EQ(events.take(), traces);
  EXPECT_EQ(byName.LoadAndInitialize(true), KOVAResultCode::kSuccess);

  struct Case {
    std::string name;
    std::string actual;
  };
  for (const Case& c : {Case{"Perf", "libPerf.so"}, Case{"", ""}, Case{"p\xC3\xA9", "libp_.so"},
                        Case{"/a/\xC3\xA9.so", "/a/\xC3\xA9.so"}, Case{"..\\x", "..\\x"}}) {
    KOVAString actual;
    EXPECT_EQ(KOVALibrary::GetArchSpecificActualName(text(c.name), true, actual),
              KOVAResultCode::kSuccess);
    EXPECT_EQ(utf8(actual), c.actual);
  }
  KOVAString actual("kept");
  EXPECT_EQ(KOVALibrary::GetArchSpecificActualName(std::string(256, 'x').c_str(), true, actual),
            KOVAResultCode::kFailure);
  EXPECT_EQ(utf8(actual), "kept");
}

TEST_F(KOVALibraryTest, LightObjectsShareOneLibraryOfAName) {
  KOVAVexilLibrary first("KovaGood", "FixtureInitialize", "FixtureFinalize");
  KOVAVexilLibrary second("KovaGood", "Other", "Functions");
  void* function = nullptr;
  EXPECT_EQ(first.Load(), KOVAResultCode::kSuccess);
  EXPECT_EQ(second.GetFunction("FixtureAnswer", function), KOVAResultCode::kSuccess);
  EXPECT_EQ(first.GetLibrary(), second.GetLibrary());
  EXPECT_EQ(takeJournal(), "load;init;");
  EXPECT_EQ(second.GetFunction("", function), KOVAResultCode::kInvalidArgument);

  KOVAVexilLibrary missing("KovaMissing", "", "");
  EXPECT_EQ(missing.Load(), KOVAResultCode::kFailure);
  EXPECT_EQ(missing.Load(), KOVAResultCode::kFailure);  // tried again, not taken for loaded

  // The table lets go; the objects still hold on.
  EXPECT_EQ(KOVALibraryManager::FreeLibraries(), KOVAResultCode::kSuccess);
  EXPECT_EQ(takeJournal(), "");
  first = missing;
  second = missing;
  EXPECT_EQ(takeJournal(), "fini;unload;");
}

TEST_F(KOVALibraryTest, AnyThreadMayAskAnInitialisedLibrary) {
  KOVAVexilLibrary first("KovaGood", "FixtureInitialize", "FixtureFinalize");
  ASSERT_EQ(first.Load(), KOVAResultCode::kSuccess);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < 50; ++i) {
        KOVAVexilLibrary library("KovaGood", "", "");
        void* function = nullptr;
        EXPECT_EQ(library.GetFunction("FixtureAnswer", function), KOVAResultCode::kSuccess);
        EXPECT_EQ(reinterpret_cast<int (*)()>(function)(), 42);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  KOVALibraryManager::FreeLibraries();
  EXPECT_EQ(takeJournal(), "load;init;");
}

TEST_F(KOVALibraryTest, TheEndOfTheProcessFreesOnlyWhenForced) {
  {
    KOVAVexilLibrary library("KovaGood", "FixtureInitialize", "FixtureFinalize");
    library.SetUnloadable(false);
    EXPECT_EQ(library.Load(), KOVAResultCode::kSuccess);
  }
  const KOVAEnvironmentVariableScoped lower("KOVA_FORCE_UNLOAD_DLLS", "true");
  EXPECT_EQ(KOVALibraryManager::FreeLibrariesOnTerminate(), KOVAResultCode::kSuccess);
  EXPECT_EQ(takeJournal(), "load;init;");
  const KOVAEnvironmentVariableScoped upper("KOVA_FORCE_UNLOAD_DLLS", "TRUE");
  EXPECT_EQ(KOVALibraryManager::FreeLibrariesOnTerminate(), KOVAResultCode::kSuccess);
  EXPECT_EQ(takeJournal(), "fini;unload;");
}

TEST_F(KOVALibraryTest, LibrariesGoInReverseOrder) {
  const TemporaryDirectory directory;
  fs::copy_file(fixture("KovaGood"), directory / "libA.so");
  const KOVAEnvironmentVariableScoped path(
      "PATH", text(directory.native().string() + ":" KOVA_TEST_FIXTURES));
  KOVAVexilLibrary("A", "FixtureInitialize", "").Load();
  KOVAVexilLibrary("KovaGood", "FixtureInitialize", "FixtureFinalize").Load();
  takeJournal();
  KOVALibraryManager::FreeLibraries();
  EXPECT_EQ(takeJournal(), "fini;unload;unload;");
}

TEST_F(KOVALibraryTest, TheLocaleComesBackFromForeignCode) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  ASSERT_EQ(before, "C");
  KOVALibrary library("KovaLocale", "FixtureInitialize", "FixtureFinalize");
  ASSERT_EQ(library.LoadAndInitialize(true), KOVAResultCode::kSuccess);
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  EXPECT_EQ(library.FinalizeAndUnload(), KOVAResultCode::kSuccess);
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

TEST_F(KOVALibraryTest, FindsFilesOfLibrariesAndPrograms) {
  const TemporaryDirectory directory;
  directory.write("bin/tool");
  KOVAString found("kept");
  {
    const WorkingDirectory working(directory.native());
    const KOVAEnvironmentVariableScoped path("PATH", ":bin;" KOVA_TEST_FIXTURES "/");
    EXPECT_EQ(KOVALibrary::GetDirInPath("absent", false, found), KOVAResultCode::kFailure);
    // The empty entry does not stand for the root.
    EXPECT_EQ(KOVALibrary::GetDirInPath((directory / "bin/tool").c_str() + 1, false, found),
              KOVAResultCode::kFailure);
    EXPECT_EQ(utf8(found), "kept");
    EXPECT_EQ(KOVALibrary::GetDirInPath("tool", false, found), KOVAResultCode::kSuccess);
    EXPECT_EQ(utf8(found), "bin\\");
    EXPECT_EQ(KOVALibrary::GetDirInPath("KovaGood", true, found), KOVAResultCode::kSuccess);
    EXPECT_EQ(utf8(found), utf8(KOVAFilePath(KOVA_TEST_FIXTURES "/")));
    EXPECT_EQ(KOVALibrary::GetDirInPath("", true, found), KOVAResultCode::kFailure);
    const KOVAEnvironmentVariableScoped none("PATH", "");
    EXPECT_EQ(KOVALibrary::GetDirInPath("tool", false, found), KOVAResultCode::kFailure);
  }

  const std::string stored = utf8(KOVAFilePath(text(fixture("KovaGood"))));
  EXPECT_EQ(KOVAEnvironment::FindSharedExternalLibrary("KovaGood", found),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(found), stored);
  EXPECT_EQ(KOVAEnvironment::FindSharedExternalLibrary(text(fixture("KovaBare")), found),
            KOVAResultCode::kSuccess);
  EXPECT_EQ(KOVAEnvironment::FindSharedExternalLibrary("KovaMissing", found),
            KOVAResultCode::kFailure);
  EXPECT_EQ(KOVAEnvironment::FindSharedExternalLibrary("", found), KOVAResultCode::kFailure);

  KOVASharedLibFileFinder finder(KOVAFilePath(fs::path(KOVA_TEST_FIXTURES).parent_path().c_str()));
  KOVAFilePath below;
  EXPECT_EQ(finder.Find("KovaGood", below), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(below), stored);
  EXPECT_EQ(finder.GetExactName("some/Perf", found), KOVAResultCode::kSuccess);
  EXPECT_EQ(utf8(found), "libPerf.so");
  EXPECT_EQ(finder.GetExactName("some/", found), KOVAResultCode::kFailure);
}
