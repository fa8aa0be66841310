#pragma once

#include "apps/kova-translate/Formats.h"
#include "kovabase/files/KOVAVexilLibrary.h"
#include "translators/interface/Translator.h"

#include <map>
#include <string>
#include <vector>

namespace kova::translate {

/// A translator library that is loaded and initialised. The library manager finalises and unloads
/// it when it frees its libraries; its readers and writers must be gone by then.
struct Translator {
  const translators::Description* description = nullptr;
  decltype(&KOVATranslatorCreateReader) createReader = nullptr;
  decltype(&KOVATranslatorCreateWriter) createWriter = nullptr;
};

/// The translators of the process, by format. Loaded on the main thread; any thread may ask for
/// those that are loaded.
class TranslatorSet {
 public:
  /// What became of a format's library.
  struct Entry {
    bool isUsable = false;
    Translator translator;
    /// The file, or else why there is no translator: one reason, and every place that was tried.
    std::string path;
    std::string reason;
    std::vector<std::string> places;
  };

  /// Adds the folders of KOVA_TRANSLATORS and those beside the program to the library search.
  TranslatorSet();

  /// Loads the library of the format, unless that was tried before. What goes wrong is reported by
  /// events, too.
  const Entry& Load(const Format& format);

  /// The entry of a format that was loaded.
  const Entry& Get(const Format& format) const { return _entries.at(format.name); }

 private:
  static void Fill(Entry& entry, const Format& format);

  std::map<std::string, Entry> _entries;
};

}  // namespace kova::translate
