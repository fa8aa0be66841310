#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/foundation/KOVAUseCounted.h"
#include "kovabase/strings/KOVAString.h"

/// A failure that ends a translation, in words for its user: what was attempted, what went wrong
/// and what to do about it. Thrown by value, or held by KOVAUseCountedHolder.
class KOVABASE_API KOVAException : public KOVAUseCounted {
 public:
  /// The translators give the values their meaning.
  enum ErrorID : int {};

  /// No texts, error id 0.
  KOVAException() = default;
  KOVAException(const KOVAException& other) = default;
  /// Takes over the id and the texts; the use count stays.
  KOVAException& operator=(const KOVAException& other);
  ~KOVAException() override;

  /// The texts that go with the result; the error id is the result's number.
  explicit KOVAException(const KOVAResult& result);
  /// The same for a file, which the texts name.
  /// @param detail  closes the diagnostic of an unsupported file format.
  KOVAException(const KOVAResult& result, const KOVAString& file, const KOVAString& detail);

  KOVAException(const KOVAString& request, const KOVAString& diagnostic, const KOVAString& advice,
                int errorId, const KOVAString& drvMessageId, const KOVAString& drvCatalogue);

  /// A failed translation.
  KOVAException(ErrorID id, const KOVAString& diagnostic);

  /// What was being attempted.
  KOVAString GetRequest() const { return _request; }
  /// What went wrong.
  KOVAString GetDiagnostic() const { return _diagnostic; }
  /// What the user should do.
  KOVAString GetAdvice() const { return _advice; }
  int GetErrorId() const noexcept { return _errorId; }

  /// A message and its catalogue in a host's own message system.
  KOVAString GetDRVMessageID() const { return _drvMessageId; }
  KOVAString GetDRVMessageCatalog() const { return _drvCatalogue; }
  /// Null is the empty text.
  void SetDRVErrorContext(const char* messageId, const char* catalogue);

 private:
  int _errorId = 0;
  KOVAString _request;
  KOVAString _diagnostic;
  KOVAString _advice;
  KOVAString _drvMessageId;
  KOVAString _drvCatalogue;
};
