#include "kovabase/foundation/KOVAException.h"

#include <cstdio>

namespace {

KOVAString ascii(const char* text) { return KOVAString(text, "US-ASCII"); }

}  // namespace

KOVAException& KOVAException::operator=(const KOVAException& other) {
  if (this == &other) return *this;
  _errorId = other._errorId;
  _request = other._request;
  _diagnostic = other._diagnostic;
  _advice = other._advice;
  _drvMessageId = other._drvMessageId;
  _drvCatalogue = other._drvCatalogue;
  return *this;
}

KOVAException::~KOVAException() = default;

KOVAException::KOVAException(const KOVAResult& result)
    : KOVAException(result, KOVAString(), KOVAString()) {}

// The texts, their stops, blanks and spelling included, are known to hosts and kept.
KOVAException::KOVAException(const KOVAResult& result, const KOVAString& file,
                             const KOVAString& detail)
    : _errorId(static_cast<int>(result.GetNumber())) {
  switch (static_cast<int>(static_cast<long>(result))) {
    case KOVAResultCode::kAborted:
      _request = ascii("The operation was aborted..");
      _diagnostic = ascii("User triggered abort.");
      _advice = ascii("None.");
      break;
    case KOVAResultCode::kAlreadyInitialized:
      _request = ascii("Attempt to initialize Vexil more than once per process.");
      _diagnostic = ascii("Vexil does not allow multiple initializations per process.");
      _advice = ascii("Please change the code to only initialize Vexil once per process.");
      break;
    case KOVAResultCode::kFileFormatNotSupported:
      _request = ascii("Attempt to read the file ") + file;
      _diagnostic = ascii("Input file appears to have unsupported file format ") + detail;
      _advice = ascii("Please check the documentation for supported file formats");
      break;
    case KOVAResultCode::kInvalidFile:
      _request = ascii("Attempt to read the file ") + file;
      _diagnostic = ascii("Cannot read input file, it appears to be an invalid file");
      _advice = ascii("Please check that the input file has valid supported data in it.");
      break;
    case KOVAResultCode::kFileVersionNotSupported:
      _request = ascii("Attempt to read the file ") + file;
      _diagnostic = ascii("This data file version is not supported by this software at this time.");
      _advice = ascii("Please check the matrix of supported versions in the release notes.");
      break;
    case KOVAResultCode::kInvalidObject:
      _request = ascii("Operation failed.");
      _diagnostic = ascii("An error occured because the object was not valid.");
      _advice = ascii("Use Valid Object");
      break;
    case KOVAResultCode::kFileNotFound:
      _request = ascii("Attempt to open the file:  ") + file;
      _diagnostic = ascii("The file is not found.");
      _advice = ascii("Please check the case of file name.");
      break;
    default: {
      char number[32];
      std::snprintf(number, sizeof number, "%X", result.GetNumber());
      _request = ascii("Operation failed.");
      _diagnostic = ascii("Operation failed with result code: ") + ascii(number);
      _advice = ascii("Contact customer support.");
      break;
    }
  }
}

KOVAException::KOVAException(const KOVAString& request, const KOVAString& diagnostic,
                             const KOVAString& advice, int errorId, const KOVAString& drvMessageId,
                             const KOVAString& drvCatalogue)
    : _errorId(errorId),
      _request(request),
      _diagnostic(diagnostic),
      _advice(advice),
      _drvMessageId(drvMessageId),
      _drvCatalogue(drvCatalogue) {}

KOVAException::KOVAException(ErrorID id, const KOVAString& diagnostic)
    : KOVAException(ascii("Translation failed."), diagnostic,
                    ascii("Please contact customer support for further assistance."),
                    static_cast<int>(id), KOVAString(), KOVAString()) {}

void KOVAException::SetDRVErrorContext(const char* messageId, const char* catalogue) {
  _drvMessageId = KOVAString(messageId);
  _drvCatalogue = KOVAString(catalogue);
}
