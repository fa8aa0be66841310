#pragma once

#include "kovabase/foundation/KOVAExport.h"

struct UConverter;

namespace kova::internal {
class Codepage;
enum class CodepageKind;
}  // namespace kova::internal

/// The process-wide registry of ICU's code-page converters by name.
///
/// The registry owns every converter that it returns, for as long as the process runs: do not close
/// them. It is built on first use and may be used in the destructors of static objects. All its
/// functions may be called on any thread, but all callers that open one name share one converter:
/// two threads that convert with it at once disturb each other. Texts of KOVAString use converters
/// of their own thread instead, and are never disturbed by what is set on a shared one.
class KOVABASE_API KOVAStringCodepageConverter {
 public:
  /// The one registry; made at the first call and never destroyed.
  static KOVAStringCodepageConverter& Instance();

  KOVAStringCodepageConverter(const KOVAStringCodepageConverter&) = delete;
  KOVAStringCodepageConverter& operator=(const KOVAStringCodepageConverter&) = delete;

  /// The converter that is shared under this name, reset to the begin of a text.
  /// @param name  any name or alias that ICU knows, at most 60 characters; null or empty is the
  ///   default code page. Names are told apart byte by byte: aliases have converters of their own.
  /// @return null when the name is unknown or memory is exhausted.
  UConverter* Open(const char* name) noexcept;
  /// The same, but the default code page's converter for an unknown name.
  UConverter* GetBestCodepageConverter(const char* name) noexcept;

 private:
  friend class kova::internal::Codepage;
  struct Entry;
  struct Table;

  KOVAStringCodepageConverter();
  ~KOVAStringCodepageConverter() = delete;

  Entry* findOrOpen(const char* name, bool& isUnknown) noexcept;
  /// A converter that the caller owns and closes; null as in Open().
  UConverter* openOwn(const char* name, kova::internal::CodepageKind& kind,
                      bool& isUnknown) noexcept;

  Table* _table;
};
