#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

class KOVAOutputStream;

/// A record of one error: a result code, a text, and the place in the source that reported it.
class KOVABASE_API KOVAError {
 public:
  /// A general failure without a description.
  KOVAError() : KOVAError(KOVAResultCode::kFailure) {}
  /// @param type  a result code; its low 32 bits are kept.
  explicit KOVAError(long type) : _type(static_cast<int>(type)) {}
  KOVAError(long type, const KOVAString& description)
      : _type(static_cast<int>(type)), _description(description) {}
  KOVAError(const KOVAError& other) = default;
  KOVAError& operator=(const KOVAError& other) = default;
  virtual ~KOVAError();

  /// @return Success, always; so does GetDescription.
  virtual KOVAResult SetDescription(KOVAString& description);
  virtual KOVAResult GetDescription(KOVAString& description) const;

  /// Writes one line: the description, or the code in decimal when there is none. Writes nothing
  /// for the code 0 and for a null stream.
  virtual void GetFormattedDescription(KOVAOutputStream* stream) const;

  /// The result code.
  int GetErrorType() const noexcept { return _type; }

  /// Notes where the error was found: `__FILE__` and `__LINE__`. A null file is the empty text.
  void SetSourceFileInfo(const char* file, int line);
  const KOVAString& GetSourceFile() const noexcept { return _sourceFile; }
  int GetSourceLine() const noexcept { return _sourceLine; }

  /// Reports a printf-style text, cut at 1023 bytes, as an error event; nothing for a null format.
  /// The event bus stands above this class: the function is defined in events/KOVAErrorReport.cpp.
  static void Printf(const char* format, ...) KOVABASE_PRINTF(1, 2);

  /// A general failure. It is never destroyed.
  static const KOVAError& FAIL_ERROR;

 private:
  int _type;
  KOVAString _description;
  KOVAString _sourceFile;
  int _sourceLine = 0;
};
