#pragma once

#include "kovabase/foundation/KOVAExport.h"

#include <span>

class KOVAStreamFormatter;

/// The one table of what can be set from outside: the environment variables and the options that
/// are read. Whoever reads a new one adds its line here, and writes the page of it anew.
///
/// The entries are constant and live as long as the library; any thread may read them.
class KOVABASE_API KOVAOptionCatalogue {
 public:
  /// Zero-terminated ASCII texts, none of them null. `standard` says in words what holds when the
  /// variable is not set.
  struct Variable {
    const char* name;
    const char* standard;
    const char* meaning;
  };

  /// The same for an option: its dotted name, its type as `KOVAValue::KOVAValueTypeNames` spells
  /// it, and its default as text.
  struct Option {
    const char* name;
    const char* type;
    const char* standard;
    const char* meaning;
  };

  KOVAOptionCatalogue() = delete;

  /// Sorted by name. The variables that override options, "KOVA" and the option's name, are not
  /// among them.
  static std::span<const Variable> GetVariables() noexcept;
  /// Sorted by name.
  static std::span<const Option> GetOptions() noexcept;

  /// Writes the page of all variables and options, in Markdown.
  static void WriteMarkdown(KOVAStreamFormatter& formatter);
};
