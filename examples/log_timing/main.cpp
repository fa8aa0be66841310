// Writes a log file, and has the tasks of a translation timed.
// Usage: log_timing FOLDER   (where the optional library "KOVAPerf" is)

#include <kovabase/KOVABase.h>

#include <cstdio>
#include <regex>
#include <string>

namespace {

// Times and amounts of memory differ from run to run: " #" stands for each number.
void show(const char* name) {
  std::FILE* file = std::fopen(name, "r");
  if (file == nullptr) return;
  std::string text;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
  std::fclose(file);
  std::fputs(std::regex_replace(text, std::regex(" +[0-9.]+"), " #").c_str(), stdout);
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2) KOVALibrary::AddDirectoryToPath(arguments[1]);

  {
    // [variables]
    KOVAEnvironment::PutVariable("KOVATaskTiming", "true");
    KOVAEnvironment::PutVariable("KOVALogLevel", "message");
    // [variables]

    // [set-up]
    const KOVALogFileWrapper log(KOVAFilePath("run.log"));
    KOVATimingLogger timing;
    timing.SetUp();  // times tasks when KOVATaskTiming is true
    // [set-up]

    // [task]
    KOVAStartReadFileTaskEvent::Fire("housing.step");
    KOVAInfo::Printf("%d faces", 6);
    KOVAEndReadFileTaskEvent::Fire(KOVAResultCode::kSuccess, nullptr);
    // [task]

    // [totals]
    timing.Finalize();
    // [totals]
  }

  show("run.log");
  return 0;
}
