#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/options/KOVAEnvironmentVariableScoped.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

// The tests set variables behind the library's back.
void set(const char* value) {
  if (value != nullptr) {
    setenv("KOVA_TEST_X", value, 1);
  } else {
    unsetenv("KOVA_TEST_X");
  }
}

std::optional<std::string> current() {
  const char* const value = getenv("KOVA_TEST_X");
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace

TEST(KOVAEnvironment, ReadsEachTypeByItsOwnRule) {
  struct Case {
    const char* value;
    int text;
    int integer;
    int intValue;
    int real;
    double doubleValue;
    bool boolValue;
  };
  constexpr int kSuccess = KOVAResultCode::kSuccess;
  constexpr int kFailure = KOVAResultCode::kFailure;
  static const Case kCases[] = {
      {nullptr, kFailure, kFailure, -9, kFailure, -9.0, false},
      {"", kSuccess, kFailure, -9, kFailure, -9.0, false},
      {"maybe", kSuccess, kFailure, -9, kFailure, -9.0, false},
      {"12abc", kSuccess, kSuccess, 12, kSuccess, 12.0, false},
      {"1", kSuccess, kSuccess, 1, kSuccess, 1.0, false},
      {"0", kSuccess, kSuccess, 0, kSuccess, 0.0, false},
      {"-2.5e1", kSuccess, kSuccess, -2, kSuccess, -25.0, false},
      {"tRUE", kSuccess, kFailure, -9, kFailure, -9.0, true},
      {"False", kSuccess, kFailure, -9, kFailure, -9.0, false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.value != nullptr ? c.value : "unset");
    set(c.value);
    KOVAString text("kept");
    int integer = -9;
    double real = -9.0;
    bool flag = true;
    EXPECT_EQ(KOVAEnvironment::GetVariable("KOVA_TEST_X", text), c.text);
    EXPECT_EQ(text, KOVAString(c.value != nullptr ? c.value : "kept"));
    EXPECT_EQ(KOVAEnvironment::GetVariable("KOVA_TEST_X", integer), c.integer);
    EXPECT_EQ(integer, c.intValue);
    EXPECT_EQ(KOVAEnvironment::GetVariable("KOVA_TEST_X", real), c.real);
    EXPECT_EQ(real, c.doubleValue);
    EXPECT_EQ(KOVAEnvironment::GetVariable("KOVA_TEST_X", flag), c.text);
    EXPECT_EQ(flag, c.boolValue);
  }
}

TEST(KOVAEnvironment, PutsAndRemovesVariables) {
  EXPECT_EQ(KOVAEnvironment::PutVariable("KOVA_TEST_X", "a=b c"), KOVAResultCode::kSuccess);
  EXPECT_EQ(current(), "a=b c");
  EXPECT_EQ(KOVAEnvironment::PutVariable("KOVA_TEST_X", ""), KOVAResultCode::kSuccess);
  EXPECT_EQ(current(), std::nullopt);
  EXPECT_EQ(KOVAEnvironment::RemoveVariable("KOVA_TEST_X"), KOVAResultCode::kSuccess);

  const unsigned short zero[] = {'K', 0, 'A'};
  const KOVAString withZero = KOVAString::fromUnits(zero, 3);
  set("kept");
  KOVAString text("untouched");
  for (const KOVAString& name :
       {KOVAString(), KOVAString("KOVA_TEST_X=y"), KOVAString("="), withZero}) {
    EXPECT_EQ(KOVAEnvironment::PutVariable(name, "value"), KOVAResultCode::kFailure);
    EXPECT_EQ(KOVAEnvironment::RemoveVariable(name), KOVAResultCode::kFailure);
    EXPECT_EQ(KOVAEnvironment::GetVariable(name, text), KOVAResultCode::kFailure);
  }
  EXPECT_EQ(KOVAEnvironment::PutVariable("KOVA_TEST_X", withZero), KOVAResultCode::kFailure);
  EXPECT_EQ(current(), "kept");
  EXPECT_EQ(text, KOVAString("untouched"));
}

TEST(KOVAEnvironment, TheSnapshotStaysAsItWas) {
  set("before=after");
  KOVAEnvironment& snapshot = KOVAEnvironment::GetEnv();
  set("later");
  KOVAString text;
  EXPECT_EQ(snapshot.GetProperty("KOVA_TEST_X", text), KOVAResultCode::kSuccess);
  EXPECT_EQ(text, KOVAString("before=after"));
  EXPECT_EQ(&KOVAEnvironment::GetEnv(), &snapshot);

  // One property for each entry, in the order of the block.
  KOVAPropertyContainerHandle properties = snapshot.GetPropertyContainer();
  int index = 0;
  for (char** entry = environ; *entry != nullptr; ++entry, ++index) {
    const std::string name(*entry, std::string(*entry).find('='));
    EXPECT_EQ(properties->GetProperty(index)->GetPropertyName(), KOVAString(name.c_str()));
  }
  EXPECT_EQ(properties->GetPropertyCount(), index);
}

TEST(KOVAEnvironment, FindsTheWorkspaceDirectory) {
  const std::string suffix = "/24 units at the end....";
  ASSERT_EQ(suffix.size(), 24U);
  struct Case {
    const char* image;
    std::string input;
    const char* directory;  // null for none
  };
  const Case kCases[] = {
      {"D:\\image", "ignored", "D:\\image"},
      {"", "ignored", ""},
      {nullptr, "C:\\adl\\run\\in" + suffix, "C:\\adl\\run"},
      {nullptr, "/adl\\run/in" + suffix, "/adl\\run"},
      {nullptr, "/adl/run\\in" + suffix, "/adl/run"},
      {nullptr, suffix, nullptr},
      {nullptr, "nothing" + suffix, nullptr},
      {nullptr, "too short", nullptr},
  };
  for (const Case& c : kCases) {
    const KOVAEnvironmentVariableScoped input("ADL_ODT_IN", c.input.c_str());
    if (c.image != nullptr) setenv("ADL_IMAGE_DOS_DIR", c.image, 1);
    KOVAString directory("kept");
    EXPECT_EQ(KOVAEnvironment::GetWorkspaceDirectory(directory),
              c.directory != nullptr ? KOVAResultCode::kSuccess : KOVAResultCode::kFailure)
        << c.input;
    EXPECT_EQ(directory, KOVAString(c.directory != nullptr ? c.directory : "kept")) << c.input;
    unsetenv("ADL_IMAGE_DOS_DIR");
  }
}

TEST(KOVAEnvironment, AGuardPutsBackWhatItSaw) {
  for (const char* before : {static_cast<const char*>(nullptr), "", "1", "no UTF-8: \xE9\xFF"}) {
    set(before);
    {
      const KOVAEnvironmentVariableScoped outer("KOVA_TEST_X", "outer");
      EXPECT_EQ(current(), "outer");
      {
        const KOVAEnvironmentVariableScoped inner("KOVA_TEST_X", "");
        EXPECT_EQ(current(), std::nullopt);
      }
      EXPECT_EQ(current(), "outer");
    }
    EXPECT_EQ(current(), before != nullptr ? std::optional<std::string>(before) : std::nullopt);
  }

  set("original");
  auto guard = std::make_unique<KOVAEnvironmentVariableScoped>("KOVA_TEST_X", "changed");
  auto copy = std::make_unique<KOVAEnvironmentVariableScoped>(*guard);
  guard.reset();
  EXPECT_EQ(current(), "original");
  set("changed again");
  copy.reset();
  EXPECT_EQ(current(), "original");
  const KOVAEnvironmentVariableScoped invalid("=", "value");  // sets nothing and restores nothing
}

TEST(KOVAEnvironment, MayBeUsedByManyThreads) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      const std::string name = "KOVA_TEST_THREAD_" + std::to_string(t);
      for (int i = 0; i < 200; ++i) {
        const std::string value(static_cast<std::size_t>(1 + i), 'v');
        KOVAString text;
        KOVAEnvironment::PutVariable(name.c_str(), value.c_str());
        EXPECT_EQ(KOVAEnvironment::GetVariable(name.c_str(), text), KOVAResultCode::kSuccess);
        EXPECT_EQ(text.length(), 1 + i);
        KOVAEnvironment::GetVariable("KOVA_TEST_THREAD_0", text);
      }
      KOVAEnvironment::RemoveVariable(name.c_str());
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(KOVAProperties, KeepNamesAndTexts) {
  KOVAProperties properties;
  for (const char* entry : {"a=1", "b", "=C:=d", "a=2", "e==f"}) {
    EXPECT_EQ(properties.AddEntry(entry), KOVAResultCode::kSuccess);
  }
  EXPECT_EQ(properties.AddEntry(""), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(properties.SetProperty("", "x"), KOVAResultCode::kInvalidArgument);
  const auto get = [&](const char* name) {
    KOVAString value("none");
    properties.GetProperty(name, value);
    return value;
  };
  EXPECT_EQ(get("a"), KOVAString("1"));
  EXPECT_EQ(get("A"), KOVAString("none"));
  EXPECT_EQ(get("b"), KOVAString(""));
  EXPECT_EQ(get("=C:"), KOVAString("d"));
  EXPECT_EQ(get("e"), KOVAString("=f"));

  EXPECT_EQ(properties.SetProperty("a", "3"), KOVAResultCode::kSuccess);
  EXPECT_EQ(properties.SetProperty("new", "4"), KOVAResultCode::kSuccess);
  EXPECT_EQ(get("new"), KOVAString("4"));
  EXPECT_EQ(properties.RemoveProperty("a"), KOVAResultCode::kSuccess);
  EXPECT_EQ(get("a"), KOVAString("2"));  // the second of that name
  EXPECT_EQ(properties.RemoveProperty("none"), KOVAResultCode::kFailure);
  EXPECT_EQ(properties.GetPropertyContainer()->GetPropertyCount(), 5);
}
