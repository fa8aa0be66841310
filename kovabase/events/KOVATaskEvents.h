#pragma once

#include "kovabase/events/KOVAEndTaskEvent.h"
#include "kovabase/events/KOVCTaskEvent.h"

#include <ctime>

/// The tasks of a translation that work on documents. The identifier pairs the start and the end of
/// a task; all of them are of level 50.

/// A whole conversion starts; task "Conversion".
class KOVABASE_API KOVCConversionTaskEvent : public KOVCStartTaskEvent {
 public:
  KOVCConversionTaskEvent();
  KOVCConversionTaskEvent(const KOVCConversionTaskEvent& other);
  static void Fire();
  KOVCEvent* Clone() const override;
};

/// Task "Read Entities". The event's name lacks a letter; kept, since listeners match on it.
class KOVABASE_API KOVAStartReadEntitiesTaskEvent : public KOVCStartTaskEvent {
 public:
  KOVAStartReadEntitiesTaskEvent();
  KOVAStartReadEntitiesTaskEvent(const KOVAStartReadEntitiesTaskEvent& other);
  static void Fire();
  KOVCEvent* Clone() const override;
};

/// Task "Read Entities".
class KOVABASE_API KOVAEndReadEntitiesTaskEvent : public KOVAEndTaskEvent {
 public:
  explicit KOVAEndReadEntitiesTaskEvent(KOVAResult result);
  KOVAEndReadEntitiesTaskEvent(const KOVAEndReadEntitiesTaskEvent& other);
  static void Fire(const KOVAResult& result);
  KOVCEvent* Clone() const override;
};

/// Task "Source Document Preprocessing" or "Target Document Preprocessing".
class KOVABASE_API KOVAStartPreprocessDocumentEvent : public KOVCStartTaskEvent {
 public:
  explicit KOVAStartPreprocessDocumentEvent(bool isSource);
  KOVAStartPreprocessDocumentEvent(const KOVAStartPreprocessDocumentEvent& other);
  static void Fire(bool isSource);
  KOVCEvent* Clone() const override;
};

/// Task "Source Document Preprocessing" or "Target Document Preprocessing".
class KOVABASE_API KOVAEndPreprocessDocumentEvent : public KOVAEndTaskEvent {
 public:
  KOVAEndPreprocessDocumentEvent(KOVAResult result, bool isSource);
  KOVAEndPreprocessDocumentEvent(const KOVAEndPreprocessDocumentEvent& other);
  static void Fire(const KOVAResult& result, bool isSource);
  KOVCEvent* Clone() const override;
};

/// Task "Target Document Postprocessing".
class KOVABASE_API KOVAStartPostprocessDocumentEvent : public KOVCStartTaskEvent {
 public:
  KOVAStartPostprocessDocumentEvent();
  KOVAStartPostprocessDocumentEvent(const KOVAStartPostprocessDocumentEvent& other);
  static void Fire();
  KOVCEvent* Clone() const override;
};

/// Task "Target Document Postprocessing".
class KOVABASE_API KOVAEndPostprocessDocumentEvent : public KOVAEndTaskEvent {
 public:
  explicit KOVAEndPostprocessDocumentEvent(KOVAResult result);
  KOVAEndPostprocessDocumentEvent(const KOVAEndPostprocessDocumentEvent& other);
  static void Fire(const KOVAResult& result);
  KOVCEvent* Clone() const override;
};

/// Task "Options", which has no start event.
class KOVABASE_API KOVAEndOptionsTaskEvent : public KOVAEndTaskEvent {
 public:
  explicit KOVAEndOptionsTaskEvent(KOVAResult result);
  KOVAEndOptionsTaskEvent(const KOVAEndOptionsTaskEvent& other);
  static void Fire(const KOVAResult& result);
  KOVCEvent* Clone() const override;
};

/// A translation has ended; task "Translation". Its finish time is that of its construction.
class KOVABASE_API KOVAEndTranslationTaskEvent : public KOVAEndTaskEvent {
 public:
  /// The count of failed entities when nobody has counted them.
  static constexpr unsigned kUnknownCount = 0xFFFFFFFFU;

  /// @param isPartDefinitionInAssembly  the document was the definition of a part in an assembly.
  KOVAEndTranslationTaskEvent(KOVAResult result, bool isPartDefinitionInAssembly,
                              unsigned failedEntities = kUnknownCount);
  KOVAEndTranslationTaskEvent(const KOVAEndTranslationTaskEvent& other);

  static void Fire(const KOVAResult& result, bool isPartDefinitionInAssembly,
                   unsigned failedEntities = kUnknownCount);
  /// @param resultCode  a `KOVAResult` code; its low 32 bits are kept.
  static void Fire(long resultCode, bool isPartDefinitionInAssembly,
                   unsigned failedEntities = kUnknownCount);

  unsigned GetFailedEntities() const noexcept { return _failedEntities; }
  bool IsPartDefinitionInAssembly() const noexcept { return _isPartDefinitionInAssembly; }
  /// Local time.
  const std::tm& GetFinishTime() const noexcept { return _finishTime; }

  void GetFormattedDescription(KOVAOutputStream* stream) override;
  KOVCEvent* Clone() const override;

 private:
  unsigned _failedEntities;
  bool _isPartDefinitionInAssembly;
  std::tm _finishTime{};
};
