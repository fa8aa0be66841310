#include "kovabase/concurrency/KOVAThreadJob.h"

KOVAThreadJob::~KOVAThreadJob() = default;
