#pragma once

#include "kovabase/io/KOVAFileOutputStream.h"
#include "translators/interface/Report.h"

#include <string>
#include <string_view>

namespace kova::translate {

/// A name or other text of a user as it may stand in a message: in single quotes, control
/// characters as "\xNN", so that no name can move the cursor of a terminal.
std::string quoteText(std::string_view text);

/// Standard output and standard error. Messages always go to standard error.
class Console {
 public:
  Console() : _output(1), _errors(2) {}

  void Print(const std::string& text) { _output.Write(text.data(), text.size()); }
  void PrintError(const std::string& text) { _errors.Write(text.data(), text.size()); }

  /// "kova-translate: error: 'part.stl', line 7: TEXT". An empty file name is left out.
  void TellError(const std::string& file, translators::Place place, const std::string& text);
  void TellWarning(const std::string& file, translators::Place place, const std::string& text);

  KOVAOutputStream& GetOutput() { return _output; }

 private:
  void Tell(const char* kind, const std::string& file, translators::Place place,
            const std::string& text);

  KOVAFileOutputStream _output;
  KOVAFileOutputStream _errors;
};

}  // namespace kova::translate
