#include "kovabase/events/KOVAConsoleLogger.h"
#include "kovabase/events/KOVALogFileWrapper.h"
#include "kovabase/events/KOVALogger.h"
#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/events/KOVATaskEvents.h"
#include "kovabase/events/KOVATimingLogger.h"
#include "kovabase/events/KOVATrace.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/files/KOVALibrary.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/options/KOVAEnvironmentVariableScoped.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream stream(path);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

class Loggers : public testing::Test {
 protected:
  Loggers() {
    std::string name = (std::filesystem::temp_directory_path() / "kova-loggers-XXXXXX").string();
    _folder = mkdtemp(name.data());
    std::filesystem::current_path(_folder);
  }
  ~Loggers() override {
    std::filesystem::current_path("/");
    std::filesystem::remove_all(_folder);
  }

 private:
  std::string _folder;
};

// Puts '#' in the place of every number with a point and the blanks before it, and drops labels.
std::string withoutFigures(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t number = text.find_first_not_of(' ', i);
    const std::size_t end = text.find_first_not_of("0123456789.", number);
    const bool isFigure = number != std::string::npos && number > i && end > number &&
                          text.substr(number, end - number).find('.') != std::string::npos;
    if (isFigure) {
      plain += " #";
      i = end;
    } else if (text.compare(i, 10, "Message : ") == 0) {
      i += 10;
    } else {
      plain += text[i++];
    }
  }
  return plain;
}

KOVAEnvironmentVariableScoped with(const char* name, const char* value) {
  return KOVAEnvironmentVariableScoped(KOVAString(name), KOVAString(value));
}

}  // namespace

TEST_F(Loggers, TheLevelComesFromTheCallOrTheEnvironment) {
  struct {
    const char* variable;
    KOVAEventLevel asked;
    KOVAEventLevel level;
  } const table[] = {{nullptr, -1, -1},   {nullptr, 70, 70}, {"error", -1, 80},
                     {"Warning", 50, 50}, {"20", -1, 20},    {"nonsense", -1, -1}};
  for (const auto& row : table) {
    const KOVAEnvironmentVariableScoped variable =
        with("KOVALogLevel", row.variable != nullptr ? row.variable : "");
    KOVALogger logger;
    logger.Initialize(new KOVAStringOutputStream, row.asked);
    EXPECT_EQ(logger.GetLevel(), row.level) << (row.variable != nullptr ? row.variable : "none");
  }
}

TEST_F(Loggers, ALoggerKeepsItsFirstStreamAndEndsQuietly) {
  KOVALogger logger;
  auto* const first = new KOVAStringOutputStream;
  KOVAStringOutputStream refused;
  logger.Initialize(static_cast<KOVAOutputStream*>(nullptr), 50);
  EXPECT_FALSE(logger.IsInitialized());
  logger.Initialize(KOVAFilePath("absent/folder/x.log"), 50);
  EXPECT_FALSE(logger.IsInitialized());
  KOVALogger::LogInitializerNotCalled(true);
  logger.Initialize(first, 50);
  logger.Initialize(&refused, 0);
  KOVADebug::Printf("below the level");
  KOVAInfo::Printf("seen");
  EXPECT_STREQ(first->GetBytes(),
               "Warning : The translation system was not initialized before the source document "
               "was built.\nMessage : seen\n");
  logger.Finalize();
  KOVAInfo::Printf("after the end");
  EXPECT_STREQ(refused.GetBytes(), "");
  KOVALogger second;
  auto* const stream = new KOVAStringOutputStream;
  second.Initialize(stream, 50);
  EXPECT_STREQ(stream->GetBytes(), "");
}

TEST_F(Loggers, LogFilesAreNamedByTheirDirection) {
  {
    KOVALogFileWrapper reading(true);
    const KOVALogFileWrapper writing(false);
    KOVAInfo::Printf("both");
    EXPECT_EQ(reading.GetLogger().GetLevel(), -1);
  }
  EXPECT_EQ(contentOf("vexil_read.log"), "Message : both\n");
  EXPECT_EQ(contentOf("vexil_write.log"), "Message : both\n");

  std::FILE* handedIn = std::fopen("own.log", "w");
  {
    const KOVALogFileWrapper wrapper(handedIn);
    KOVAWarning::Printf("first");
    EXPECT_EQ(contentOf("own.log"), "Warning : first\n");
  }
  std::fputs("still open\n", handedIn);
  std::fclose(handedIn);
  EXPECT_EQ(contentOf("own.log"), "Warning : first\nstill open\n");
}

TEST_F(Loggers, AKilledProcessLeavesEveryWarningInWholeLines) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const KOVALogFileWrapper log(true);
    for (int i = 0; i < 20000; ++i) {
      KOVADebug::Printf("detail %d that fills the file with text", i);
      if (i % 1000 == 999) KOVAWarning::Printf("warning %d", i / 1000);
    }
    raise(SIGKILL);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  const std::string log = contentOf("vexil_read.log");
  for (int i = 0; i < 20; ++i) {
    EXPECT_NE(log.find("Warning : warning " + std::to_string(i) + "\n"), std::string::npos) << i;
  }
  EXPECT_EQ(log.back(), '\n');
}

TEST_F(Loggers, AFullDiskIsPassedOverInSilence) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "this system has no /dev/full";
  KOVALogger inMemory;
  auto stream = std::make_unique<KOVAStringOutputStream>();
  const KOVAStringOutputStream& text = *stream;
  inMemory.Initialize(stream.release(), 0);
  {
    KOVALogFileWrapper log(KOVAFilePath("/dev/full", false));
    EXPECT_TRUE(log.GetLogger().IsInitialized());
    KOVAWarning::Printf("the first that does not fit");
    for (int i = 0; i < 10000; ++i) KOVADebug::Printf("one of many that fill a block");
    KOVAWarning::Printf("the last");
  }
  // The other listeners hear everything, and nothing about the disk.
  const std::string heard = text.GetBytes();
  EXPECT_EQ(heard.find("Warning : the first that does not fit\n"), 0U);
  EXPECT_EQ(heard.substr(heard.size() - 19), "Warning : the last\n");
  EXPECT_EQ(std::count(heard.begin(), heard.end(), '\n'), 10002);
}

TEST_F(Loggers, TheConsoleSplitsByLevel) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  {
    KOVAConsoleLogger logger;
    logger.Initialize(30);
    logger.Initialize(0);
    KOVADebug::Printf("below");
    KOVAInfo::Printf("message");
    KOVAWarning::Printf("warning");
    KOVAErrorEvent::Fire("error");
    KOVAAssert::Printf("assertion");
  }
  KOVAInfo::Printf("nobody listens");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Message : message\nAssert : assertion\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Warning : warning\nError : error\n");

  const KOVAEnvironmentVariableScoped variable = with("KOVAConsoleTracesLevel", "error");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  KOVAConsoleLogger::SetUp(0);
  KOVAInfo::Printf("message");
  KOVAWarning::Printf("warning");
  KOVAErrorEvent::Fire("error");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error : error\n");
}

TEST_F(Loggers, TracesSpeakWhenTheEnvironmentNamesThem) {
  KOVALogger logger;
  auto* const stream = new KOVAStringOutputStream;
  logger.Initialize(stream, 0);
  const KOVAEnvironmentVariableScoped variable = with("KOVALoggers", "Step;Mesh");
  const KOVATrace mesh("Mesh");
  const KOVATrace other("Units");
  const KOVATrace none(nullptr);
  for (const KOVATrace* trace : {&mesh, &other, &none}) {
    trace->Printf(kKOVATraceDebug, "%s", "100%s debug");
    trace->Printf(kKOVATraceMessage, "message %d", 2);
    trace->Printf(kKOVATraceError, "error");
    trace->Printf(static_cast<KOVATraceLevel>(4), "nothing");
    trace->Printf(kKOVATraceError, nullptr);
  }
  EXPECT_STREQ(stream->GetBytes(), "100%s debug\nMessage : message 2\nError : error\n");
}

TEST_F(Loggers, TimingReportsEachTaskAndTheSum) {
  // The address sanitizer stands between the library and the loader, which then does not look
  // beside the library.
  KOVAString folder(KOVA_LIBRARY_FOLDER);
  KOVALibrary::AddDirectoryToPath(folder);
  const KOVAEnvironmentVariableScoped timing = with("KOVATaskTiming", "true");
  KOVALogger logger;
  auto* const stream = new KOVAStringOutputStream;
  logger.Initialize(stream, 50);
  KOVATimingLogger timer;
  timer.SetUp();
  timer.SetUp();
  // An end without a start.
  KOVAEndTaskEvent::Fire(KOVAResult(0), "Reading", "Read Entities", 50, true);
  for (int i = 0; i < 2; ++i) {
    KOVCConversionTaskEvent::Fire();
    KOVAEndTaskEvent::Fire(KOVAResult(0), "Conversion", "Conversion", 50, true);
  }
  timer.Finalize();
  timer.Stop();
  KOVCConversionTaskEvent::Fire();

  // The figures differ from run to run, their places do not.
  const std::string text = withoutFigures(stream->GetBytes());
  const std::string name = "KOVCConversionTaskEvent";
  std::string task = std::string(27, '*') + name + " Started" + std::string(27, '*') + "\n" +
                     std::string(27, '*') + name + " Ending" + std::string(27, '*') + "\n" +
                     "================ Start Task Performance Info ================\n";
  for (const char* label : {" Elapsed Time", " Kernel Time", " User Time", " CPU Time"}) {
    std::string line = name + label;
    line.insert(0, 50 - line.size(), ' ');
    task += line + " = # seconds\n";
  }
  task += "================= End Task Performance Info =================\n";
  const std::string summary =
      "================ Start Timing Performance Summary ================\n"
      "                # task = elapsed(s), kernel(s), user(s), cpu=kernel+user(s), #calls\n"
      "                #        elapsed= wall clock time\n"
      "                #        kernel = system calls time\n"
      "                #        user   = user code time\n"
      "                #        cpu    = actual cpu time\n" +
      std::string(50 - name.size(), ' ') + name + " = # # # #        2x\n" + std::string(28, ' ') +
      "Process total CPU Time = # seconds\n" +
      "================= End Timing Performance Summary =================\n"
      "================ Start Memory Performance Summary ================\n" +
      std::string(37, ' ') + "Memory in use = # MiB\n" + std::string(32, ' ') +
      "Peak memory in use = # MiB\n" +
      "================= End Memory Performance Summary =================\n";
  EXPECT_EQ(text.substr(text.find("Task Timing On")), "Task Timing On\n" + task + task + summary);
}
