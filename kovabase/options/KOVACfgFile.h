#pragma once

#include "kovabase/containers/KOVADynamicArray.h"
#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/Gk_String.h"
#include "kovabase/strings/KOVAString.h"

#include <cstdio>

class KOVAFilePath;

namespace kova::internal {
class HashIndex;
}

/// A key of a configuration file with its comma-separated values, in order.
class KOVABASE_API KOVACfgFileKey {
 public:
  explicit KOVACfgFileKey(const KOVAString& name) : _name(name) {}
  KOVACfgFileKey(const KOVACfgFileKey&) = delete;
  KOVACfgFileKey& operator=(const KOVACfgFileKey&) = delete;
  virtual ~KOVACfgFileKey();

  KOVAString GetName() const { return _name; }

  /// Appends a value as it stands, blanks included. Null is the empty text.
  void AppendValue(const char* value);
  void AppendValue(const KOVAString& value);

  int GetNumValues() const { return _values.size(); }
  /// The empty string for an index out of range.
  KOVAString GetValue(int index) const;
  /// The values joined with ","; the empty string when there are none.
  KOVAString GetAllValues() const;

 private:
  friend class KOVACfgFileSection;

  KOVAString _name;
  KOVADynamicArray<KOVAString> _values;
};

/// A section of a configuration file: its keys in the order of the file. A repeated name makes a
/// second key, and look-ups find the first.
class KOVABASE_API KOVACfgFileSection {
 public:
  explicit KOVACfgFileSection(const char* name) : _name(name) {}
  KOVACfgFileSection(const KOVACfgFileSection&) = delete;
  KOVACfgFileSection& operator=(const KOVACfgFileSection&) = delete;
  virtual ~KOVACfgFileSection();

  /// The empty text for the unnamed section.
  KOVAString GetName() const;

  int GetNumKeys() const { return _keys.size(); }
  /// Owned by the section; null when out of range.
  KOVACfgFileKey* GetKey(int index) const;
  /// The first key of exactly this name, or null. Takes constant time.
  KOVACfgFileKey* findKey(const char* name) const;
  KOVACfgFileKey* findKey(const KOVAString& name) const;
  /// Appends a key, whether or not there is one of that name. Owned by the section.
  KOVACfgFileKey* createKey(const char* name);
  KOVACfgFileKey* createKey(const KOVAString& name);

 private:
  friend class KOVACfgFile;

  Gk_String _name;
  KOVADynamicArray<KOVACfgFileKey*> _keys;
  /// Made by the first look-up and kept up to date from then on.
  mutable kova::internal::HashIndex* _index = nullptr;
};

/// A configuration file: lines "key = value, value" (or "key: value") under "[section]" headers.
///
/// Keys before the first header belong to the unnamed section "". Lines that begin with '#' or ';'
/// are comments. Blanks around lines, names and the whole value go; there is no quoting. The '='
/// is looked for on the whole line before the ':'. A line longer than 1,023 bytes is read as
/// several lines. Syntax errors never stop the reading: they are collected as messages, and so are
/// values that a typed getter cannot convert.
///
/// A file that begins with a UTF-8 byte-order mark is read as UTF-8, others in the default code
/// page. Names are case-sensitive. One object belongs to one thread at a time.
class KOVABASE_API KOVACfgFile {
 public:
  KOVACfgFile();
  KOVACfgFile(const KOVACfgFile&) = delete;
  KOVACfgFile& operator=(const KOVACfgFile&) = delete;
  virtual ~KOVACfgFile();

  /// Reads the file and adds its sections and keys to what is there already.
  /// @return Success when no error is in the list, also from before; Failure when one is, with
  ///   everything else loaded; InvalidArgument for an invalid path; FileOpenError for what cannot
  ///   be opened or read, a directory included.
  KOVAResult Load(const KOVAFilePath& path);
  /// The same from a stream, read to its end and left open. InvalidArgument for null.
  KOVAResult Load(FILE* stream);

  int GetErrorCount() const { return _errors.size(); }
  /// Owned by this object; null when out of range.
  const char* GetErrorMessage(int index) const;

  /// The section of exactly this name, or null. Null and "" name the unnamed section, which exists
  /// once something was loaded.
  KOVACfgFileSection* findSection(const char* name) const;

  /// In all of these a null section is the unnamed one. An absent section or key gives false (or 0)
  /// without a message.
  bool ExistKey(const char* key, const char* section = nullptr) const;
  /// The number of values.
  int GetArraySize(const char* key, const char* section = nullptr) const;
  /// The value at `index`; the empty text when there is none at it.
  bool GetString(const char* key, KOVAString& value, int index = 0,
                 const char* section = nullptr) const;
  /// These convert the value at `index`; when it does not convert, the output is unchanged, the
  /// answer is false and a message is collected. Logical takes 0, 1, true and false in any case.
  bool GetInt(const char* key, int& value, int index = 0, const char* section = nullptr);
  bool GetDouble(const char* key, double& value, int index = 0, const char* section = nullptr);
  bool GetBool(const char* key, bool& value, int index = 0, const char* section = nullptr);
  bool GetLogical(const char* key, int& value, int index = 0, const char* section = nullptr);

 protected:
  /// The section of that name, made when there is none. Owned by this object.
  KOVACfgFileSection* createSection(const char* name);
  /// Collects a message, at its full length.
  void flagError(const char* format, ...) KOVABASE_PRINTF(2, 3);
  /// Strips tabs, blanks, carriage returns and line feeds from both ends, in place. Ignores null.
  static void removeWhiteSpaces(char* text);

 private:
  class Parser;

  bool read(FILE* stream);
  const KOVACfgFileKey* findKey(const char* key, const char* section) const;

  KOVADynamicArray<KOVACfgFileSection*> _sections;
  KOVADynamicArray<Gk_String> _errors;
  kova::internal::HashIndex* _index = nullptr;
};
