#include "apps/kova-translate/Options.h"

#include "apps/kova-translate/CommandLine.h"
#include "apps/kova-translate/Text.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/options/KOVACfgFile.h"
#include "kovabase/options/KOVAEnvironment.h"
#include "kovabase/options/KOVAOptionCatalogue.h"
#include "kovabase/units/KOVAUnitValue.h"
#include "translators/interface/OptionValues.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <vector>

namespace kova::translate {

namespace {

using Declared = KOVAOptionCatalogue::Option;

// What a value must be beyond its type.
struct Rule {
  const char* name;
  // The words that it may be, divided by " or "; null when it is no word.
  const char* words;
  // A number must be above 0 and not above this; 0 when it is no number.
  double most;
};

constexpr Rule kRules[] = {
    {"Ply.Write.Form", "little or big or ascii", 0.0},
    {"Step.Read.Angle", nullptr, 90.0},
    {"Step.Read.Tolerance", nullptr, 1e6},
    {"Stl.Write.Form", "binary or ascii", 0.0},
};

constexpr const char* kUnitOptions[] = {"Translate.Unit", "Translate.UnitWhenUnspecified"};

bool isAmong(const std::string& word, std::string_view words) {
  constexpr std::string_view kDivider = " or ";
  for (std::size_t start = 0; start < words.size();) {
    const std::size_t end = std::min(words.find(kDivider, start), words.size());
    if (words.substr(start, end - start) == word) return true;
    start = end + kDivider.size();
  }
  return false;
}

void fileDefault(const Declared& declared, KOVAOptions& options) {
  const std::string_view type = declared.type;
  const std::string_view standard = declared.standard;
  if (type == "double") {
    options.AddOption(declared.name, std::strtod(declared.standard, nullptr));
  } else if (type == "int") {
    options.AddOption(declared.name, std::atoi(declared.standard));
  } else if (type == "bool") {
    options.AddOption(declared.name, standard == "true");
  } else {
    options.AddOption(declared.name, declared.standard);
  }
}

KOVAOption& findOption(const KOVAOptions& options, const char* name) {
  KOVAOption* option = nullptr;
  options.GetOption(name, option);
  return *option;
}

// What is wrong with the option's value; empty when nothing is.
std::string findFault(const char* name, const KOVAOption& option) {
  KOVAString value;
  option.GetValue(value);
  const std::string text = toUtf8(value);
  for (const char* unitOption : kUnitOptions) {
    KOVAUnit unit = KOVAUnitUnknown;
    if (std::string_view(name) == unitOption && !text.empty() &&
        KOVAUnitValue::GetUnitFromString(unit, value).IsFailure()) {
      return "the unit " + quoteText(text) +
             " is unknown; units are mm, cm, deci, m, km, um, nm, in, ft, mi, mil, uin and their "
             "names";
    }
  }
  for (const Rule& rule : kRules) {
    if (std::string_view(name) != rule.name) continue;
    if (rule.words != nullptr && !isAmong(text, rule.words)) {
      return "the value of '" + std::string(name) + "' is " + quoteText(text) + "; it can be " +
             rule.words;
    }
    double number = 0.0;
    option.GetValue(number);
    if (rule.words == nullptr && !(number > 0.0 && number <= rule.most)) {
      char limit[32];
      std::snprintf(limit, sizeof limit, "%g", rule.most);
      return "the value of '" + std::string(name) + "' is " + text +
             "; it must be above 0 and at most " + limit;
    }
  }
  return {};
}

// Sets every option to which the name applies.
bool assign(const std::string& name, const KOVAString& text, KOVAOptions& options,
            std::string& problem) {
  KOVAOptions asked;
  const bool isName = asked.AddOptionParseValue(fromUtf8(name), text).IsSuccess();
  bool isUsed = false;
  for (const Declared& declared : KOVAOptionCatalogue::GetOptions()) {
    KOVAOption* given = nullptr;
    if (!isName || asked.GetOption(declared.name, given).IsFailure()) continue;
    isUsed = true;
    KOVAValue value;
    given->GetValue(value);
    KOVAOption& option = findOption(options, declared.name);
    if (option.SetValue(value).IsFailure()) {
      problem = "the value " + quoteText(toUtf8(text)) + " of '" + declared.name + "' is no " +
                declared.type;
      return false;
    }
    problem = findFault(declared.name, option);
    if (!problem.empty()) return false;
  }
  if (isUsed) return true;
  std::vector<std::string> names;
  for (const Declared& declared : KOVAOptionCatalogue::GetOptions()) {
    names.emplace_back(declared.name);
  }
  problem = "there is no option " + quoteText(name) + suggestInWords(name, names);
  return false;
}

bool readFile(const std::string& path, KOVAOptions& options, std::string& problem) {
  KOVACfgFile file;
  errno = 0;
  const KOVAResult result = file.Load(KOVAFilePath(toPathText(path)));
  const std::string prefix = "the configuration file " + quoteText(path);
  if (file.GetErrorCount() > 0) {
    problem = prefix + ": " + file.GetErrorMessage(0);
    return false;
  }
  const KOVACfgFileSection* const section = file.findSection("");
  if (result.IsFailure() || section == nullptr) {
    problem = prefix + " cannot be read";
    if (errno != 0) problem += ": " + std::error_code(errno, std::generic_category()).message();
    return false;
  }
  for (int i = 0; i < section->GetNumKeys(); ++i) {
    const KOVACfgFileKey& key = *section->GetKey(i);
    if (assign(toUtf8(key.GetName()), key.GetAllValues(), options, problem)) continue;
    problem.insert(0, prefix + ": ");
    return false;
  }
  return true;
}

// Reads the option with its variable, which warns, and keeps what comes of it.
template <typename Value>
void overrideValue(KOVAOption& option) {
  Value value{};
  if (option.GetValue(value, true).IsSuccess()) option.SetValue(value);
}

}  // namespace

bool gatherOptions(const Settings& settings, KOVAOptions& options, std::string& problem) {
  for (const Declared& declared : KOVAOptionCatalogue::GetOptions()) fileDefault(declared, options);
  for (const std::string& path : settings.configurations) {
    if (!readFile(path, options, problem)) return false;
  }
  for (const auto& [name, value] : settings.assignments) {
    if (!assign(name, fromUtf8(value), options, problem)) return false;
  }
  return true;
}

bool applyEnvironment(KOVAOptions& options, std::string& problem) {
  for (const Declared& declared : KOVAOptionCatalogue::GetOptions()) {
    const std::string variable = std::string("KOVA") + declared.name;
    KOVAString text;
    if (KOVAEnvironment::GetVariable(variable.c_str(), text).IsFailure()) continue;
    KOVAOption& option = findOption(options, declared.name);
    const std::string_view type = declared.type;
    bool isOfType = true;
    if (type == "double") {
      double number = 0.0;
      isOfType = KOVAEnvironment::GetVariable(variable.c_str(), number).IsSuccess();
      overrideValue<double>(option);
    } else if (type == "int") {
      int number = 0;
      isOfType = KOVAEnvironment::GetVariable(variable.c_str(), number).IsSuccess();
      overrideValue<int>(option);
    } else if (type == "bool") {
      overrideValue<bool>(option);
    } else {
      overrideValue<KOVAString>(option);
    }
    if (!isOfType) {
      KOVAWarningEvent::Fire("%s overrides nothing: %s is no %s", variable.c_str(),
                             quoteText(toUtf8(text)).c_str(), declared.type);
    }
    problem = findFault(declared.name, option);
    if (problem.empty()) continue;
    problem.insert(0, "the variable " + variable + ": ");
    return false;
  }
  return true;
}

void setUnits(const KOVAOptions& options) {
  KOVAUnit unit = KOVAUnitUnknown;
  const KOVAString none;
  if (KOVAUnitValue::GetUnitFromString(unit,
                                       translators::readOption(options, kUnitOptions[0], none))
          .IsSuccess()) {
    KOVAUnitValue::SetWriteUnit(unit);
  }
  if (KOVAUnitValue::GetUnitFromString(unit,
                                       translators::readOption(options, kUnitOptions[1], none))
          .IsSuccess()) {
    KOVAUnitValue::SetUnitWhenUnspecified(unit);
  }
}

}  // namespace kova::translate
