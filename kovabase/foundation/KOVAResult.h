#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResultCodes.h"

/// The outcome of an operation: one signed 32-bit code, passed and returned by value.
///
/// A default-constructed result is Undetermined, not Success, so that an outcome that was never
/// decided shows. Results are combined with `&=` (all must succeed, the worse outcome wins) and
/// `|=` (one success is enough, mixed outcomes make a partial success).
class KOVABASE_API KOVAResult {
 public:
  constexpr KOVAResult() noexcept = default;

  /// Keeps the low 32 bits of `code`.
  constexpr KOVAResult(long code) noexcept : _code(static_cast<int>(code)) {}

  constexpr KOVAResult& operator=(long code) noexcept {
    _code = static_cast<int>(code);
    return *this;
  }

  /// The code, sign-extended.
  constexpr operator long() const noexcept { return _code; }

  /// All comparisons are of the whole code; a `long` is compared as it is, not truncated.
  constexpr bool operator==(const KOVAResult& other) const noexcept { return _code == other._code; }
  constexpr bool operator==(long code) const noexcept { return _code == code; }
  constexpr bool operator==(int code) const noexcept { return _code == code; }
  constexpr bool operator!=(const KOVAResult& other) const noexcept { return _code != other._code; }
  constexpr bool operator!=(long code) const noexcept { return _code != code; }
  constexpr bool operator!=(int code) const noexcept { return _code != code; }

  /// Success and failure look at the criticity alone (bits 24-27).
  constexpr bool IsSuccess() const noexcept { return GetCriticity() == 0; }
  constexpr bool IsFailure() const noexcept { return GetCriticity() != 0; }
  /// A success other than Partial Success.
  constexpr bool IsCompleteSuccess() const noexcept {
    return IsSuccess() && _code != KOVAResultCode::kPartialSuccess;
  }
  constexpr bool IsPartialSuccess() const noexcept {
    return _code == KOVAResultCode::kPartialSuccess;
  }
  constexpr bool IsUndetermined() const noexcept { return _code == KOVAResultCode::kUndetermined; }
  constexpr bool IsDeterminedFailure() const noexcept { return IsFailure() && !IsUndetermined(); }

  /// 0 success, 1 failure, 2 abort, 3 undetermined.
  constexpr unsigned GetCriticity() const noexcept {
    return (static_cast<unsigned>(_code) >> 24) & 0xFU;
  }
  constexpr unsigned GetDomain() const noexcept {
    return (static_cast<unsigned>(_code) >> 16) & 0xFFU;
  }
  constexpr unsigned GetNumber() const noexcept { return static_cast<unsigned>(_code) & 0xFFFFU; }

  /// The text of the code, a static string; "Unknown Result" for a code without one.
  const char* GetMessage() const noexcept;

  /// A process exit status: 0 for any success; for a failure 1 when it has a domain, else its
  /// number.
  long GetReturnCode() const noexcept;

  /// 1 for true and 0 for false: the opposite polarity of the member form, and kept so.
  static long GetReturnCode(bool ok) noexcept;

  /// "OK" or "KO".
  static const char* GetOKKOString(bool ok) noexcept;

  /// All must succeed: takes over `other` when it is the worse outcome. Not implemented
  /// on the left gives way to whatever is on the right.
  KOVAResult& operator&=(KOVAResult other) noexcept;

  /// One success is enough: a success beside a failure makes Partial Success.
  /// Undetermined `|=` Partial Success stays Undetermined; this is kept.
  /// @return a copy of the new value.
  KOVAResult operator|=(KOVAResult other) noexcept;

 private:
  int _code = KOVAResultCode::kUndetermined;
};
