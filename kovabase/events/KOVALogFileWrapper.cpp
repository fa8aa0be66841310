#include "kovabase/events/KOVALogFileWrapper.h"

#include "kovabase/files/KOVAFilePath.h"

namespace {

constexpr KOVAEventLevel kLevelFromEnvironment = -1;

}  // namespace

KOVALogFileWrapper::KOVALogFileWrapper(bool reading)
    : KOVALogFileWrapper(KOVAFilePath(reading ? "vexil_read.log" : "vexil_write.log")) {}

KOVALogFileWrapper::KOVALogFileWrapper(std::FILE* file) {
  _logger.Initialize(file, kLevelFromEnvironment);
}

KOVALogFileWrapper::KOVALogFileWrapper(const KOVAFilePath& path) {
  _logger.Initialize(path, kLevelFromEnvironment);
}

KOVALogFileWrapper::~KOVALogFileWrapper() { _logger.Finalize(); }
