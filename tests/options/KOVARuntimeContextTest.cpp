#include "kovabase/options/KOVACurrentlyRunningTest.h"
#include "kovabase/options/KOVARuntimeContext.h"

#include <gtest/gtest.h>

TEST(KOVARuntimeContext, ResolvesRelativePathsAgainstTheRightDirectory) {
  const auto path = [](const char* text) { return KOVAFilePath(text, false); };
  const auto same = [](const KOVAFilePath& a, const KOVAFilePath& b) {
    return a.GetPath() == b.GetPath();
  };
  KOVARuntimeContext context;
  const KOVAFilePath current = KOVAFilePath::GetCurrentWorkingDirectory();
  EXPECT_TRUE(same(context.ResolveOutput(path("a.obj")),
                   KOVAFilePath(current.GetPath(), KOVAString("a.obj"))));

  EXPECT_EQ(context.SetWorkingDirectory(KOVAFilePath()), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(context.SetOutputDirectory(KOVAFilePath()), KOVAResultCode::kInvalidArgument);
  EXPECT_EQ(context.SetWorkingDirectory(path("/data")), KOVAResultCode::kSuccess);
  EXPECT_EQ(context.SetOutputDirectory(path("out/obj")), KOVAResultCode::kSuccess);
  EXPECT_TRUE(same(context.ResolveInput(path("in/a.stl")), path("/data/in/a.stl")));
  EXPECT_TRUE(same(context.ResolveInput(path("/else/a.stl")), path("/else/a.stl")));
  EXPECT_TRUE(same(context.ResolveOutput(path("a.obj")), path("/data/out/obj/a.obj")));
  EXPECT_FALSE(context.ResolveOutput(KOVAFilePath()).IsValid());

  {
    const KOVACurrentlyRunningTest::Scope_t outer(KOVAString("bolts"));
    {
      const KOVACurrentlyRunningTest::Scope_t inner(KOVAString("nuts"));
      EXPECT_TRUE(same(context.ResolveOutput(path("a.obj")), path("/data/out/obj/nuts/a.obj")));
    }
    EXPECT_TRUE(same(context.GetOutputDirectory(), path("/data/out/obj/bolts")));
    EXPECT_TRUE(same(context.ResolveInput(path("a.stl")), path("/data/a.stl")));
  }
  EXPECT_FALSE(KOVACurrentlyRunningTest::IsRunning());
}
