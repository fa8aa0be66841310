#pragma once

#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Console.h"
#include "apps/kova-translate/Statistics.h"
#include "apps/kova-translate/TranslatorSet.h"

#include <map>
#include <string>

namespace kova::translate {

/// Runs the translations of one call of the program, one file after the other.
class Translation {
 public:
  /// All must live as long as the object.
  Translation(const Settings& settings, TranslatorSet& translators, Console& console)
      : _settings(settings), _translators(translators), _console(console) {}

  /// Translates one input. What goes wrong has been told when this returns.
  /// @return whether the result stands where it belongs; in a dry run, whether it could.
  bool Run(const std::string& input);

 private:
  class FileReport;

  bool Translate(const std::string& input, FileReport& report, Statistics& statistics);
  bool Read(const std::string& input, const std::string& target, FileReport& report,
            translators::Model& model);
  bool Write(const std::string& target, FileReport& report, const translators::Model& model);
  std::string GetTarget(const std::string& input) const;
  bool MayWrite(const std::string& input, const std::string& target, FileReport& report);
  const Translator* FindTranslator(const Format& format, FileReport& report);

  const Settings& _settings;
  TranslatorSet& _translators;
  Console& _console;
  // The results of this run, each with its input.
  std::map<std::string, std::string> _targets;
};

}  // namespace kova::translate
