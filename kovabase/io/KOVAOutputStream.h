#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"

#include <cstddef>
#include <cstring>

class KOVAString;

/// A sink for bytes and text: the base of the file, string and memory streams, and of a host's
/// own. A derived class says in `WriteBytes` where the bytes go.
///
/// A failed write is never lost. It is returned, it stays in `GetResult`, and nothing more is
/// written after it, so that no output has a hole. A stream may hold bytes back: only a `Flush`
/// that succeeds says that all of them have arrived (a full disk often shows no earlier).
///
/// One thread at a time. Not copyable.
class KOVABASE_API KOVAOutputStream {
 public:
  KOVAOutputStream() = default;
  KOVAOutputStream(const KOVAOutputStream&) = delete;
  KOVAOutputStream& operator=(const KOVAOutputStream&) = delete;
  /// Does not flush what a derived class holds back; each class does that in its own destructor.
  virtual ~KOVAOutputStream();

  /// Writes `count` bytes as they are; none may be null.
  /// @return Success, or the failure that this or an earlier write has met.
  KOVAResult Write(const void* bytes, std::size_t count) {
    if (count != 0 && count <= static_cast<std::size_t>(_putEnd - _put)) {
      std::memcpy(_put, bytes, count);
      _put += count;
      return KOVAResultCode::kSuccess;
    }
    return WriteThrough(bytes, count);
  }

  /// Writes a zero-terminated text without its terminator; null writes nothing.
  KOVAResult Write(const char* text) {
    return text != nullptr ? Write(text, std::strlen(text)) : GetResult();
  }

  /// Writes the text as UTF-8, whatever the default code page is.
  KOVAResult Write(const KOVAString& text);

  /// Passes on what is held back, as far as this process can: to the operating system for a file.
  KOVAResult Flush();

  /// Success, or the first failure since the stream was made.
  KOVAResult GetResult() const { return _result; }

  /// Why the stream has failed, in words ("No space left on device"); empty when it has not.
  /// Valid until the stream is destroyed.
  virtual const char* GetFailureReason() const;

 protected:
  /// Writes `count` > 0 bytes. Not called again once it has failed.
  virtual KOVAResult WriteBytes(const char* bytes, std::size_t count) = 0;

  /// Passes on what `WriteBytes` holds back. The base holds nothing back.
  virtual KOVAResult FlushBytes();

  /// Offers the bytes [begin, end) as a place into which `Write` copies without a call of
  /// `WriteBytes`, as long as there is room. `GetPut` tells how far it is filled.
  void SetPutArea(char* begin, char* end) {
    _put = begin;
    _putEnd = end;
  }
  char* GetPut() const { return _put; }

  /// Keeps the first failure and closes the put area. @return the failure that is kept.
  KOVAResult Fail(KOVAResult failure);

 private:
  KOVAResult WriteThrough(const void* bytes, std::size_t count);

  char* _put = nullptr;
  char* _putEnd = nullptr;
  KOVAResult _result = KOVAResultCode::kSuccess;
};
