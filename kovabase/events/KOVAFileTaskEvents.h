#pragma once

#include "kovabase/events/KOVAEndTaskEvent.h"
#include "kovabase/events/KOVCTaskEvent.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/strings/KOVAString.h"

class KOVAFileHeader;

/// The tasks of a translation that work on files. The identifier pairs the start and the end of a
/// task; all of them are of level 50.

/// Task "Read File".
class KOVABASE_API KOVAStartReadFileTaskEvent : public KOVCStartTaskEvent {
 public:
  /// The name is kept in the default code page; '*' stands for each character that it lacks.
  explicit KOVAStartReadFileTaskEvent(const KOVAString& fileName);
  explicit KOVAStartReadFileTaskEvent(const char* fileName);
  KOVAStartReadFileTaskEvent(const KOVAStartReadFileTaskEvent& other);

  static void Fire(const KOVAString& fileName);
  static void Fire(const char* fileName);

  /// Null when the name is empty; valid as long as the event is.
  const char* GetFileName() const noexcept { return _fileName.Get(); }

  KOVCEvent* Clone() const override;

 private:
  KOVAEventText _fileName;
};

/// Task "Read File". Describes what the header of the file holds.
class KOVABASE_API KOVAEndReadFileTaskEvent : public KOVAEndTaskEvent {
 public:
  /// @param header  not owned, may be null. It must outlive the event, and in the parallel mode of
  ///   the bus the return to the single-threaded mode.
  KOVAEndReadFileTaskEvent(KOVAResult result, KOVAFileHeader* header);
  KOVAEndReadFileTaskEvent(const KOVAEndReadFileTaskEvent& other);

  static void Fire(const KOVAResult& result, KOVAFileHeader* header);

  KOVAFileHeader* GetFileHeader() const noexcept { return _header; }

  /// Makes each configuration of the header the active one in turn, and the first one at the end.
  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 private:
  KOVAFileHeader* _header;
};

/// Task "File Write".
class KOVABASE_API KOVAStartWriteFileTaskEvent : public KOVCStartTaskEvent {
 public:
  explicit KOVAStartWriteFileTaskEvent(const KOVAFilePath& path);
  KOVAStartWriteFileTaskEvent(const KOVAStartWriteFileTaskEvent& other);

  static void Fire(const KOVAFilePath& path);

  const KOVAFilePath& GetFilePath() const noexcept { return _path; }

  KOVCEvent* Clone() const override;

 private:
  KOVAFilePath _path;
};

/// Task "File Write".
class KOVABASE_API KOVAEndWriteFileTaskEvent : public KOVAEndTaskEvent {
 public:
  KOVAEndWriteFileTaskEvent(KOVAResult result, const KOVAString& fileName);
  KOVAEndWriteFileTaskEvent(const KOVAEndWriteFileTaskEvent& other);

  static void Fire(const KOVAResult& result, const KOVAString& fileName);

  const KOVAString& GetFileName() const noexcept { return _fileName; }

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 private:
  KOVAString _fileName;
};
