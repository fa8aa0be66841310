// Writes a log file, and has the tasks of a translation timed.
// Usage: log_timing FOLDER   (where the optional library "KOVAPerf" is)

#include <kovabase/KOVABase.h>

#include <cstdio>

namespace {

// Times and amounts of memory differ from run to run: " #" stands for a number and the blanks
// before it.
void show(const char* name) {
  std::FILE* file = std::fopen(name, "r");
  if (file == nullptr) return;
  int blanks = 0;
  bool isInNumber = false;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
    if ((c >= '0' && c <= '9') || (isInNumber && c == '.')) {
      if (!isInNumber) std::fputs(" #", stdout);
      isInNumber = true;
      blanks = 0;
    } else if (c == ' ') {
      isInNumber = false;
      ++blanks;
    } else {
      isInNumber = false;
      for (; blanks > 0; --blanks) std::putchar(' ');
      std::putchar(c);
    }
  }
  std::fclose(file);
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
