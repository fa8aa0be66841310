#include "apps/kova-translate/Listings.h"

#include "apps/kova-translate/Text.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/options/KOVAOptionCatalogue.h"
#include "translators/interface/OptionValues.h"

#include <algorithm>
#include <vector>

namespace kova::translate {

namespace {

// "NAME = 'VALUE'" or "NAME is not set"; the default and the meaning on lines of their own.
std::string describeVariable(const std::string& name, const std::string& standard,
                             const std::string& meaning) {
  KOVAString value;
  const bool isSet = KOVAEnvironment::GetVariable(name.c_str(), value).IsSuccess();
  return name + (isSet ? " = " + quoteText(toUtf8(value)) : " is not set") +
         "\n  when not set: " + standard + "\n  " + meaning + "\n";
}

}  // namespace

std::string listTranslators(TranslatorSet& translators) {
  std::string text;
  for (const Format& format : kFormats) {
    const TranslatorSet::Entry& entry = translators.Load(format);
    text += format.name;
    if (entry.isUsable) {
      text += std::string(format.isRead ? ", read" : "") + (format.isWritten ? ", written" : "") +
              ": " + entry.translator.description->title + " (" +
              entry.translator.description->extensions + ")\n  " + entry.path + "\n";
      continue;
    }
    text += ": no translator: " + entry.reason + "\n";
    for (const std::string& place : entry.places) text += "  tried " + place + "\n";
  }
  return text;
}

std::string listOptions(const KOVAOptions& options) {
  std::string text;
  for (const KOVAOptionCatalogue::Option& option : KOVAOptionCatalogue::GetOptions()) {
    const std::string value = toUtf8(translators::readOption(options, option.name, KOVAString()));
    const bool isText = std::string_view(option.type) == "string";
    text += std::string(option.name) + " = " + (isText ? quoteText(value) : value) + "\n  " +
            option.type + ", default " +
            (isText ? quoteText(option.standard) : std::string(option.standard)) + "\n  " +
            option.meaning + "\n";
  }
  return text;
}

std::string listEnvironment() {
  std::string text;
  std::vector<std::string> names;
  for (const KOVAOptionCatalogue::Variable& variable : KOVAOptionCatalogue::GetVariables()) {
    names.emplace_back(variable.name);
    text += describeVariable(variable.name, variable.standard, variable.meaning);
  }
  for (const KOVAOptionCatalogue::Option& option : KOVAOptionCatalogue::GetOptions()) {
    names.push_back(std::string("KOVA") + option.name);
    text += describeVariable(names.back(), std::string("the value of the option ") + option.name,
                             std::string("Overrides the option ") + option.name + ".");
  }
  const KOVAPropertyContainerHandle variables = KOVAEnvironment::GetEnv().GetPropertyContainer();
  for (int i = 0; i < variables->GetPropertyCount(); ++i) {
    const KOVAPropertyHandle variable = variables->GetProperty(i);
    const std::string name = toUtf8(variable->GetPropertyName());
    if (!name.starts_with("KOVA") || std::ranges::count(names, name) != 0) continue;
    text += quoteText(name) + " = " + quoteText(toUtf8(variable->GetPropertyValue())) +
            "\n  unknown: nothing reads it" + suggestInWords(name, names) + "\n";
  }
  return text;
}

}  // namespace kova::translate
