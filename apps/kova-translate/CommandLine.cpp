#include "apps/kova-translate/CommandLine.h"

#include "apps/kova-translate/Console.h"
#include "apps/kova-translate/Formats.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>

namespace kova::translate {

namespace {

constexpr const char* kFooter =
    R"(Without -o and -d the result is written beside its input, with the extension of its format.
Results appear under their names when they are complete. '-' as INPUT or FILE is standard input or
standard output.

Translators are looked for in the folders of KOVA_TRANSLATORS (divided by colons), then beside the
program, then where the system looks for libraries.

Exit status: 0 all translated, 1 a file failed, 2 wrong usage, 3 internal error,
130 or 143 ended by a signal.)";

// Changes of one letter that turn one word into the other; a swap of neighbours is one.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> table(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) table[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) table[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      table[i][j] =
          std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, table[i - 1][j - 1] + change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
      }
    }
  }
  return table[a.size()][b.size()];
}

// The word of `words` that the user may have meant; empty when none is near.
std::string suggest(const std::string& word, const std::vector<std::string>& words) {
  std::string best;
  std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
  for (const std::string& candidate : words) {
    // An option that is begun and not finished counts as near.
    const bool isBeginning = word.size() >= 2 && candidate.compare(0, word.size(), word) == 0;
    const std::size_t changes = isBeginning ? 1 : distance(word, candidate);
    if (changes < least) {
      least = changes;
      best = candidate;
    }
  }
  return best;
}

std::string describeUnknownOption(const CLI::App& app, const std::string& argument) {
  const std::string option = argument.substr(0, argument.find('='));
  std::string text = "unknown option " + quoteText(option);
  if (option.rfind("--", 0) == 0) {
    std::vector<std::string> names;
    for (const CLI::Option* known : app.get_options()) {
      names.insert(names.end(), known->get_lnames().begin(), known->get_lnames().end());
    }
    const std::string name = suggest(option.substr(2), names);
    if (!name.empty()) text += "; did you mean '--" + name + "'?";
  }
  return text;
}

// What is wrong with settings that are well-formed; empty when nothing is.
std::string findContradiction(Settings& settings, const std::string& statistics) {
  if (statistics == "json") {
    settings.statistics = Settings::Statistics::kJson;
  } else if (statistics == "text") {
    settings.statistics = Settings::Statistics::kText;
  } else if (!statistics.empty()) {
    return "--stats is " + quoteText(statistics) + "; it can be 'text' or 'json'";
  }
  if (settings.isList) return {};
  if (settings.inputs.empty()) return "no INPUT is given";
  if (!settings.output.empty() && !settings.outputFolder.empty()) {
    return "--output and --output-dir exclude each other";
  }
  if (!settings.output.empty() && settings.inputs.size() > 1) {
    return "--output takes the result of one INPUT; use --output-dir for several";
  }
  const auto standardInputs = std::count(settings.inputs.begin(), settings.inputs.end(), "-");
  if (standardInputs > 1) return "standard input can be read only once";
  if (standardInputs == 1 && !settings.outputFolder.empty()) {
    return "standard input has no name for a file in --output-dir; use --output";
  }
  for (const std::string& input : settings.inputs) {
    if (input.empty()) return "an INPUT is empty";
  }

  if (settings.format.empty()) {
    if (settings.output.empty() || settings.output == "-") {
      settings.format = "obj";
    } else {
      const Format* format = findFormatOfFile(settings.output);
      if (format == nullptr) {
        return "the name " + quoteText(settings.output) +
               " does not tell the format to write; give --to (" + listWrittenFormats() + ")";
      }
      settings.format = format->name;
    }
  }
  const Format* format = findFormat(settings.format);
  if (format == nullptr) {
    std::vector<std::string> names;
    for (const Format& known : kFormats) {
      if (known.isWritten) names.emplace_back(known.name);
    }
    const std::string name = suggest(settings.format, names);
    return "unknown format " + quoteText(settings.format) +
           (name.empty() ? "; " : "; did you mean '" + name + "'? ") +
           "Formats that can be written: " + listWrittenFormats();
  }
  if (!format->isWritten) {
    return "the format '" + settings.format +
           "' can only be read. Formats that can be written: " + listWrittenFormats();
  }
  return {};
}

}  // namespace

Parsed parseCommandLine(int count, char** arguments) {
  Parsed parsed;
  Settings& settings = parsed.settings;
  std::string statistics;

  CLI::App app("Translates CAD files from one format to another.", "kova-translate");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.set_version_flag("--version", "kova-translate " KOVA_VERSION, "Print the version and exit");
  app.add_option("INPUT", settings.inputs, "Files to translate");
  app.add_option("-o,--output", settings.output, "Write the result to this file")
      ->type_name("FILE");
  app.add_option("-d,--output-dir", settings.outputFolder, "Write the results into this folder")
      ->type_name("FOLDER");
  app.add_option("-t,--to", settings.format,
                 "Format to write (" + listWrittenFormats() +
                     "); without it the extension of FILE tells, else it is obj")
      ->type_name("FORMAT");
  app.add_flag("--stats{text}", statistics,
               "Print what each file holds on standard output, as a line of text or, with "
               "--stats=json, as a JSON object");
  app.add_flag("--list", settings.isList,
               "Print the translators that are found, and why others are not");
  app.add_flag("--dry-run", settings.isDryRun, "Read and check everything, write nothing");
  app.add_flag("--force", settings.isForced, "Replace results that exist already");
  app.footer(kFooter);

  std::string problem;
  try {
    app.parse(count, arguments);
    problem = findContradiction(settings, statistics);
  } catch (const CLI::CallForHelp&) {
    parsed.text = app.help();
    return parsed;
  } catch (const CLI::CallForVersion& version) {
    parsed.text = std::string(version.what()) + "\n";
    return parsed;
  } catch (const CLI::ExtrasError&) {
    const std::vector<std::string> extras = app.remaining();
    problem = describeUnknownOption(app, extras.empty() ? std::string() : extras.front());
  } catch (const CLI::ParseError& error) {
    problem = error.what();
  }
  if (!problem.empty()) {
    parsed.status = kUsage;
    parsed.text = "kova-translate: " + problem + "\nTry 'kova-translate --help'.\n";
    return parsed;
  }
  parsed.isComplete = true;
  return parsed;
}

}  // namespace kova::translate
