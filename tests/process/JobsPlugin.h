#pragma once

#include "kovabase/concurrency/KOVAThreadJob.h"

/// What the plug-in of numbered jobs and the program that runs it agree on.
inline constexpr int kLinesPerJob = 3;

extern "C" {
void InitializeJobs();
/// The job, which takes a pointer to its number; null unless the library was initialised once.
KOVAThreadJob* GetJob();
}
