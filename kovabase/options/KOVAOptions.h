#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/options/KOVAOption.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdio>

class KOVACfgFile;
class KOVAOptionToken;
class KOVAStreamFormatter;

/// A set of options, filed under dotted names: the last part is the option's own name, the parts
/// before it (at most six) are contexts, most general first. A look-up finds the most specific
/// option that applies to a context: a part that is not filed, or "*", falls back to a wildcard.
/// Names compare part by part, ignoring case.
///
/// The set owns copies of what is added. Options that it hands out belong to it and live until
/// `RemoveAll`, assignment or destruction. Copies of a set are deep. One set belongs to one thread
/// at a time; walking and reading a const set from several threads is safe.
class KOVABASE_API KOVAOptions {
 public:
  KOVAOptions();
  KOVAOptions(const KOVAOptions& other);
  KOVAOptions& operator=(const KOVAOptions& other);
  ~KOVAOptions();

  /// Files a copy; an option of the same name is replaced.
  /// @return InvalidArgument for null and for a name without parts or with more than seven;
  ///   NotInitialized for an option without a type; Failure for an empty part.
  KOVAResult AddOption(const KOVAOption* option);
  KOVAResult AddOption(const KOVAOption& option);

  /// Makes an option with that default and current value and files it.
  KOVAResult AddOption(const KOVAString& name, const KOVAString& value);
  KOVAResult AddOption(const KOVAString& name, const char* value);
  KOVAResult AddOption(const KOVAString& name, int value);
  KOVAResult AddOption(const KOVAString& name, double value);
  KOVAResult AddOption(const KOVAString& name, bool value);

  /// Files a string option with the text, without the double quotes around it.
  KOVAResult AddOptionParseValue(const KOVAString& name, const KOVAString& text);

  /// Files the other set's options: all of them with `overwrite`, else those whose exact name this
  /// set does not hold. The first form starts the other set's iteration anew. @return Success.
  KOVAResult AddOptions(KOVAOptions& other, bool overwrite);
  KOVAResult AddOptions(const KOVAOptions& other, bool overwrite);

  /// Finds the option that applies to the name: at each context, from the first on, the exact part
  /// comes before the wildcard.
  /// @return Failure, `option` null, when there is none; InvalidArgument for a name without parts
  ///   or with more than seven.
  KOVAResult GetOption(const KOVAString& name, KOVAOption*& option) const;

  /// Whether an option is filed under exactly that option's name, wildcards aside.
  bool HasOption(const KOVAOption& option) const;

  /// Walks the set: named parts in the order of their filing, the wildcard after them.
  /// @return Failure, `option` null, at the end; the next call starts anew.
  KOVAResult GetNext(KOVAOption*& option);
  void ResetIteration() noexcept;

  /// The number of successful additions, replacements included.
  int GetCount() const noexcept { return _count; }

  /// Destroys all options; pointers to them are void then. @return Success.
  KOVAResult RemoveAll();

  /// Adds the keys of a configuration file that stand before its first section. A key whose name
  /// cannot be filed is passed over; a file with syntax errors adds nothing.
  /// @return InvalidArgument for an empty path or a null stream; FileOpenError; Failure for syntax
  ///   errors. The stream stays open.
  KOVAResult ReadFromFile(const KOVAString& path);
  KOVAResult ReadFromFile(FILE* stream);

  /// Reports every option, private ones too, as messages.
  /// @param header, footer  reported before and after, unless null.
  /// @param format  a printf format with two %s, name and value; null is "%s = %s". A text that
  ///   takes other arguments is not used: the default stands in for it.
  void Dump(const char* header, const char* format, const char* footer);
  void Dump(const char* header, const char* format, const char* footer) const;

  /// Writes a line "name = value" for every option.
  void DumpOptions(KOVAStreamFormatter& formatter);
  void DumpOptions(KOVAStreamFormatter& formatter) const;

 private:
  KOVAResult takeKeys(const KOVACfgFile& file, KOVAResult loaded);

  KOVAOptionToken* _root;
  /// The node of the option that `GetNext` gave last; null before the first.
  const KOVAOptionToken* _cursor = nullptr;
  int _count = 0;
};
