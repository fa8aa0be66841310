#pragma once

#include "apps/kova-translate/Formats.h"
#include "translators/interface/Translator.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kova::translate {

/// A translator library that is loaded and initialised; it is finalised and unloaded with this
/// object. Its readers and writers must be gone by then.
class Translator {
 public:
  Translator(const Translator&) = delete;
  Translator& operator=(const Translator&) = delete;
  ~Translator();

  /// Loads the library at `path`.
  /// @param reason  receives why that is no translator for this program.
  /// @return null on failure.
  static std::unique_ptr<Translator> Load(const std::string& path, std::string& reason);

  const std::string& GetPath() const { return _path; }
  const translators::Description& GetDescription() const { return *_description; }
  bool IsReader() const { return _createReader != nullptr; }
  bool IsWriter() const { return _createWriter != nullptr; }
  /// Null when the library has none.
  std::unique_ptr<translators::Reader> CreateReader() const;
  std::unique_ptr<translators::Writer> CreateWriter() const;

 private:
  Translator() = default;

  std::string _path;
  void* _module = nullptr;
  const translators::Description* _description = nullptr;
  decltype(&KOVATranslatorCreateReader) _createReader = nullptr;
  decltype(&KOVATranslatorCreateWriter) _createWriter = nullptr;
  decltype(&KOVATranslatorFinalize) _finalize = nullptr;
};

/// The translators of the process, loaded by the name of their format when they are first asked
/// for.
class TranslatorSet {
 public:
  TranslatorSet();

  /// @param problem  receives every place that was tried, with the reason, one on each line.
  /// @return null when no library for the format can be used.
  const Translator* Find(const Format& format, std::string& problem);

 private:
  struct Entry {
    std::unique_ptr<Translator> translator;
    std::string problem;
  };

  // What stands before the name of a library: folders with their separator.
  std::vector<std::string> _places;
  std::map<std::string, Entry> _entries;
};

}  // namespace kova::translate
