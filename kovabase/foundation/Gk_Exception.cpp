#include "kovabase/foundation/Gk_Exception.h"

Gk_Exception::Gk_Exception(const char* message, KOVAResult result, Gk_Exception*) noexcept
    : _message(message), _result(result) {}

Gk_Exception::~Gk_Exception() = default;

Gk_IOException::Gk_IOException(const char* message, Gk_Exception* cause) noexcept
    : Gk_Exception(message, KOVAResultCode::kSuccess, cause) {}

Gk_IOException::~Gk_IOException() = default;
