#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/Gk_Marker.h"

/// A failure in a translator: a text and a result. Raised with `Gk_ErrMgr::raise`. Two exceptions
/// are equal, as markers, when they are of one class.
class KOVABASE_API Gk_Exception : public Gk_Marker {
 public:
  /// @param message  not copied: a static text that outlives the exception; may be null.
  /// @param cause  ignored.
  Gk_Exception(const char* message, KOVAResult result, Gk_Exception* cause = nullptr) noexcept;
  Gk_Exception(const Gk_Exception&) = default;
  Gk_Exception& operator=(const Gk_Exception&) = default;
  ~Gk_Exception() override;

  const char* getMessage() const noexcept { return _message; }
  KOVAResult getResult() const noexcept { return _result; }

 private:
  const char* _message;
  KOVAResult _result;
};

/// A failure of input or output. Its result is Success; it is told apart by its class.
class KOVABASE_API Gk_IOException : public Gk_Exception {
 public:
  /// As for Gk_Exception.
  explicit Gk_IOException(const char* message, Gk_Exception* cause = nullptr) noexcept;
  Gk_IOException(const Gk_IOException&) = default;
  Gk_IOException& operator=(const Gk_IOException&) = default;
  ~Gk_IOException() override;
};
