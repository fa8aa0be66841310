#pragma once

#include "kovabase/events/KOVAEventLevel.h"
#include "kovabase/events/KOVCEventListener.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/io/KOVAOutputStream.h"

#include <cstdio>
#include <memory>

class KOVAFilePath;

/// Writes the description of every event at or above a level to a stream. It never fails visibly:
/// without a stream, or with one that has failed, events are passed over.
///
/// Each description is handed to the stream in one piece. Warnings and errors (level 70 and above)
/// and the ends of tasks are flushed to the system at once, so that a killed process leaves them,
/// in whole lines.
///
/// Initialised, used and destroyed on the thread that delivers events.
class KOVABASE_API KOVALogger : public KOVCEventListener {
 public:
  KOVALogger();
  KOVALogger(const KOVALogger&) = delete;
  KOVALogger& operator=(const KOVALogger&) = delete;
  /// As `Finalize`.
  ~KOVALogger() override;

  void HandleEvent(KOVCEvent& event) override;

  /// Starts to write to a file, which is created or emptied; does nothing when it cannot be opened
  /// or when there is a stream already.
  /// @param level  events below it are passed over. With -1 the variable "KOVALogLevel" decides, if
  ///   it is set to a level; else every event is written.
  virtual void Initialize(const KOVAFilePath& path, KOVAEventLevel level);
  /// The same over a C stream, which is never closed; null does nothing.
  virtual void Initialize(std::FILE* file, KOVAEventLevel level);
  /// The same over a stream, which is the logger's from then on. It stays the caller's when it is
  /// refused: see `IsInitialized`.
  virtual void Initialize(KOVAOutputStream* stream, KOVAEventLevel level);

  /// Stops listening and destroys the stream.
  virtual void Finalize();

  bool IsInitialized() const noexcept { return _stream != nullptr; }
  KOVAEventLevel GetLevel() const noexcept { return _level; }

  /// Says that a document was built before the translation system was initialised; the next logger
  /// that is initialised warns of it, once.
  /// @param isSource  whether it is the source document; else the target.
  static void LogInitializerNotCalled(bool isSource);

 private:
  void Start(std::unique_ptr<KOVAOutputStream> stream, KOVAEventLevel level);

  KOVAEventLevel _level;
  std::unique_ptr<KOVAOutputStream> _stream;
};
