// A plug-in with jobs: each reports its number, loudly for every tenth.

#include "tests/process/JobsPlugin.h"

#include "kovabase/events/KOVAMessageChannels.h"

namespace {

int g_initializations = 0;

class NumberedJob : public KOVAThreadJob {
 public:
  void Work(void* data) override {
    const int number = *static_cast<int*>(data);
    for (int line = 0; line < kLinesPerJob; ++line) {
      KOVAInfo::NoTabPrintf("job %d line %d", number, line);
    }
    if (number % 10 == 0) KOVAWarning::Printf("job %d is a tenth one", number);
  }
};

NumberedJob g_job;

}  // namespace

extern "C" __attribute__((visibility("default"))) void InitializeJobs() { ++g_initializations; }

extern "C" __attribute__((visibility("default"))) KOVAThreadJob* GetJob() {
  return g_initializations == 1 ? &g_job : nullptr;
}
