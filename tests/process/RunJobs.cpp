// A whole run in a process of its own: loads a plug-in by name, runs its jobs on the pool in the
// parallel mode, and looks for every event, in order, in the log file that is left.

#include "kovabase/KOVABase.h"
#include "tests/process/JobsPlugin.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kJobs = 1000;

int fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  return 1;
}

// Each job's lines come in the order in which it fired them, and none is missing or double.
int checkLog() {
  std::ifstream log("vexil_read.log");
  std::vector<int> lines(kJobs, 0);
  std::vector<int> warnings(kJobs, 0);
  bool hasStarted = false;
  int stray = 0;
  for (std::string text; std::getline(log, text);) {
    int number = -1;
    int line = -1;
    if (std::sscanf(text.c_str(), "Message : job %d line %d", &number, &line) == 2) {
      if (!hasStarted) return fail("a job's event stands before the start: " + text);
      if (number < 0 || number >= kJobs || lines[static_cast<std::size_t>(number)]++ != line) {
        return fail("out of order: " + text);
      }
    } else if (std::sscanf(text.c_str(), "Warning : job %d is", &number) == 1) {
      if (lines[static_cast<std::size_t>(number)] != kLinesPerJob)
        return fail("too early: " + text);
      ++warnings[static_cast<std::size_t>(number)];
    } else if (text == "Message : start") {
      hasStarted = true;
    } else if (text != "Message : end") {
      ++stray;
    }
  }
  for (int i = 0; i < kJobs; ++i) {
    const auto job = static_cast<std::size_t>(i);
    if (lines[job] != kLinesPerJob || warnings[job] != (i % 10 == 0 ? 1 : 0)) {
      return fail("not every event of job " + std::to_string(i) + " is in the log");
    }
  }
  if (stray != 0) return fail("lines that nobody fired");
  std::printf("%d jobs, %d workers: every event is there, in order\n", kJobs,
              KOVASingletonThreadPool::GetThreadCount());
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return fail("usage: run_jobs FOLDER-OF-THE-PLUG-IN");
  KOVAString folder(arguments[1]);
  KOVALibrary::AddDirectoryToPath(folder);
  KOVASingletonThreadPool::Initialize(true);
  {
    const KOVALogFileWrapper log(true);
    KOVAVexilLibrary plugin(KOVAString("kova_jobs_plugin"), KOVAString("InitializeJobs"),
                            KOVAString());
    void* function = nullptr;
    if (plugin.GetFunction(KOVAString("GetJob"), function).IsFailure()) return fail("no plug-in");
    KOVAThreadJob* const job = reinterpret_cast<KOVAThreadJob* (*)()>(function)();
    if (job == nullptr) return fail("the plug-in was not initialised once");

    std::vector<int> numbers(kJobs);
    KOVAInfo::Printf("start");
    KOVAMTEventBus::SetParallelMode();
    for (int i = 0; i < kJobs; ++i) {
      int& number = numbers[static_cast<std::size_t>(i)];
      number = i;
      KOVASingletonThreadPool::Enqueue(job, &number);
    }
    KOVASingletonThreadPool::WaitForAllCurrentJobs();
    KOVAMTEventBus::SetSingleThreadedMode();
    KOVAInfo::Printf("end");
  }
  const int status = checkLog();
  KOVASingletonThreadPool::Shutdown();
  return status;
}
