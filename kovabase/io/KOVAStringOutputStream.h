#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/io/KOVAOutputStream.h"

#include <cstddef>

class KOVAString;

/// Gathers what is written as one text in memory. Memory exhausted throws KOVAAllocException, with
/// what was gathered intact.
class KOVABASE_API KOVAStringOutputStream : public KOVAOutputStream {
 public:
  KOVAStringOutputStream() = default;
  ~KOVAStringOutputStream() override;

  /// The bytes written so far, read as text of a code page: by default UTF-8, in which
  /// `KOVAString`s are written. A copy.
  KOVAString GetString(const char* codepage = "UTF-8") const;

  /// The bytes themselves, zero-terminated, never null; valid until the next write, `Clear` or
  /// destruction. They may hold zeros: `GetByteCount` tells how many there are.
  const char* GetBytes() const;
  std::size_t GetByteCount() const { return static_cast<std::size_t>(GetPut() - _begin); }

  /// Drops the text; the memory is kept for the next.
  void Clear();

 protected:
  KOVAResult WriteBytes(const char* bytes, std::size_t count) override;

 private:
  char* _begin = nullptr;
  std::size_t _capacity = 0;
};
