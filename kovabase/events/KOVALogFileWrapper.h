#pragma once

#include "kovabase/events/KOVALogger.h"
#include "kovabase/foundation/KOVAExport.h"

#include <cstdio>

class KOVAFilePath;

/// A logger with its log file, for as long as it lives. The variable "KOVALogLevel" decides what is
/// written; without it everything is. A file that cannot be opened is passed over in silence.
class KOVABASE_API KOVALogFileWrapper {
 public:
  /// Writes "vexil_read.log", respectively "vexil_write.log", in the current directory.
  explicit KOVALogFileWrapper(bool reading);
  /// Writes to a stream that stays the caller's and must outlive this object.
  explicit KOVALogFileWrapper(std::FILE* file);
  explicit KOVALogFileWrapper(const KOVAFilePath& path);
  /// A name would be taken for a truth value.
  explicit KOVALogFileWrapper(const char*) = delete;
  KOVALogFileWrapper(const KOVALogFileWrapper&) = delete;
  KOVALogFileWrapper& operator=(const KOVALogFileWrapper&) = delete;
  /// Finalises the logger, which closes a file of its own.
  ~KOVALogFileWrapper();

  KOVALogger& GetLogger() noexcept { return _logger; }

 private:
  KOVALogger _logger;
};
