#include "kovabase/events/KOVAMessageChannels.h"
#include "tests/events/EventRecorder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

using kova::test::EventRecorder;
using Texts = std::vector<std::string>;

// Every test starts without indentation, in whatever order they run.
class ChannelsTest : public testing::Test {
 protected:
  ChannelsTest() { _KOVAInfoTab = _KOVAWarningTab = _KOVAVerboseTab = 0; }
};

TEST_F(ChannelsTest, EachChannelFiresItsEventAtItsOwnDepth) {
  EventRecorder recorder;
  KOVAInfo::Tab();
  KOVAInfo::Tab();
  KOVAWarning::Tab();
  KOVAInfo::Printf("a");
  KOVAInfo::NoTabPrintf("%s", "b");
  KOVAInfo::PrintfAsItIs("c%d", 1);
  KOVAInfo::PrintfRaw("d%d");
  KOVAWarning::Printf("%s", "%d");
  KOVADebug::Printf("f");
  KOVAVerbose::Untab();
  KOVAVerbose::Printf("g");
  KOVATest::Printf("h");
  KOVAAssert::Printf("i%d", 9);
  KOVAInfo::Untab();
  KOVAInfo::Printf("%s", "");
  EXPECT_EQ(recorder.texts,
            (Texts{"Message :       a\n", "Message : b\n", "      c1\n", "d%d\n",
                   "Warning :    %d\n", "f\n", "g\n", "h\n", "Assert : i9\n", "Message :    \n"}));
  EXPECT_EQ(recorder.levels, (std::vector<KOVAEventLevel>{50, 50, 50, 50, 70, 10, 30, 20, 30, 50}));
}

TEST_F(ChannelsTest, NullFormatsAndTextsDoNothing) {
  const char* const none = nullptr;
  EventRecorder recorder;
  KOVAInfo::Printf(none);
  KOVAInfo::NoTabPrintf(none);
  KOVAInfo::PrintfAsItIs(none);
  KOVAInfo::PrintfRaw(none);
  KOVAWarning::Printf(none);
  KOVATest::NoTabPrintf(none);
  KOVAAssert::Printf(none);
  KOVAInfo::Print3x3Matrix(nullptr);
  KOVAInfo::Print3x4Matrix(nullptr);
  KOVAInfo::Print4x4Matrix(nullptr);
  KOVAInfo::PrintPointArray(nullptr, 3);
  const float point[3] = {1.0F, 2.0F, 3.0F};
  KOVAInfo::PrintPointArray(point, 0);
  KOVAInfo::PrintPointArray(point, -1);
  EXPECT_EQ(recorder.texts, Texts{});
}

TEST_F(ChannelsTest, OnlyInfoPrintfHasASecondPassWhichUndoublesPercentSigns) {
  EventRecorder recorder;
  KOVAInfo::Printf("%%%% 100%% %s", "%s%n%%d%%%");
  KOVAInfo::PrintfAsItIs("%%%% %s", "%s%%");
  KOVAInfo::NoTabPrintf("%%%% %s", "%s%%");
  KOVAWarning::Printf("%%%% %s", "%s%%");
  EXPECT_EQ(recorder.texts, (Texts{"Message : % 100% %s%n%d%%\n", "%% %s%%\n",
                                   "Message : %% %s%%\n", "Warning : %% %s%%\n"}));
}

TEST_F(ChannelsTest, LongTextsAreCutAndOnlyInfoPrintfSaysSo) {
  constexpr const char* kNotice =
      "Message : Warning: The following option has been truncated to 1023 characters!\n";
  const std::string fits(1023, 'x');
  const std::string longText(2000, 'x');
  EventRecorder recorder;
  KOVAInfo::Printf("%s", fits.c_str());
  KOVAInfo::Printf("%s", longText.c_str());
  KOVAInfo::NoTabPrintf("%s", longText.c_str());
  KOVAInfo::PrintfAsItIs("%s", longText.c_str());
  KOVAInfo::PrintfRaw(longText.c_str());
  KOVADebug::Printf("%s", longText.c_str());
  // The indentation counts.
  KOVAInfo::Tab();
  KOVAInfo::Printf("%s", fits.c_str());
  _KOVAInfoTab = 1000000000;
  KOVAInfo::Printf("lost");
  EXPECT_EQ(recorder.texts, (Texts{"Message : " + fits + "\n", kNotice, "Message : " + fits + "\n",
                                   "Message : " + fits + "\n", fits + "\n", longText + "\n",
                                   fits + "\n", kNotice, "Message :    " + fits.substr(3) + "\n",
                                   kNotice, "Message : " + std::string(1023, ' ') + "\n"}));
}

TEST_F(ChannelsTest, MatricesAndPointsAreRowsOfInfo) {
  const float matrix[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, -16.5F};
  const double placement[12] = {1, 0, 0, 0.0625, 0, 1, 0, -2, 0, 0, 1, 1e6};
  EventRecorder recorder;
  KOVAInfo::Print3x3Matrix(matrix);
  KOVAInfo::Print3x4Matrix(placement);
  KOVAInfo::Print4x4Matrix(matrix);
  KOVAInfo::PrintPointArray(matrix, 2);
  EXPECT_EQ(
      recorder.texts,
      (Texts{"Message : [1.000, 2.000, 3.000]\n\n", "Message : [4.000, 5.000, 6.000]\n\n",
             "Message : [7.000, 8.000, 9.000]\n\n", "Message : [1.000, 0.000, 0.000, 0.062]\n\n",
             "Message : [0.000, 1.000, 0.000, -2.000]\n\n",
             "Message : [0.000, 0.000, 1.000, 1000000.000]\n\n",
             "Message : [ 1.000,  2.000,  3.000,  4.000]\n\n",
             "Message : [ 5.000,  6.000,  7.000,  8.000]\n\n",
             "Message : [ 9.000, 10.000, 11.000, 12.000]\n\n",
             "Message : [13.000, 14.000, 15.000, -16.500]\n\n",
             "Message : { 1.000,  2.000,  3.000}\n\n", "Message : { 4.000,  5.000,  6.000}\n\n"}));
}

TEST_F(ChannelsTest, TheDebugTimerGivesMilliseconds) {
  void* const timer = KOVADebug::StartTimer();
  const auto start = std::chrono::steady_clock::now();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const float elapsed = KOVADebug::StopTimer(timer);
  const auto all =
      std::chrono::duration<float, std::milli>(std::chrono::steady_clock::now() - start);
  EXPECT_GE(elapsed, 20.0F);
  EXPECT_LE(elapsed, all.count() + 5.0F);
  EXPECT_EQ(KOVADebug::StopTimer(nullptr), 0.0F);
}
